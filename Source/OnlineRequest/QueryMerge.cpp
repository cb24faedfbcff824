#include "OnlineRequest/QueryMerge.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <memory_resource>
#include <vector>

namespace tavo {

namespace {

// Takes the next piece off the text; a text ends with its last piece, which may be empty.
class Pieces {
 public:
  explicit Pieces(std::string_view text) : rest_{text} {}

  bool next(std::string_view& piece) {
    if (done_) return false;
    const auto end = rest_.find('&');
    piece = rest_.substr(0, end);
    done_ = end == std::string_view::npos;
    if (!done_) rest_.remove_prefix(end + 1);
    return true;
  }

 private:
  std::string_view rest_;
  bool done_ = false;
};

std::uint64_t eightBytes(const char* bytes) {
  std::uint64_t value = 0;
  std::memcpy(&value, bytes, sizeof value);
  return value;
}

// A number that is the same for equal texts and mostly another for others.
std::uint64_t fingerprint(std::string_view text) {
  constexpr std::uint64_t factor = 0x9E3779B97F4A7C15U;
  std::uint64_t mixed = text.size();
  const auto mix = [&](std::uint64_t value) { mixed = std::rotl((mixed ^ value) * factor, 29); };
  if (text.size() < 8) {
    std::uint64_t value = 0;
    for (const char c : text) value = (value << 8U) | static_cast<unsigned char>(c);
    mix(value);
  } else {
    for (std::size_t at = 0; at + 8 < text.size(); at += 8) mix(eightBytes(text.data() + at));
    mix(eightBytes(text.data() + text.size() - 8));
  }
  return mixed * factor;
}

// The pieces of one query and how often each occurs, in an open hash table. Small queries, which
// means nearly all of them, stay on the stack.
class PieceList {
 public:
  explicit PieceList(std::size_t mostPieces) : slots_(std::bit_ceil(2 * mostPieces), &memory_) {
    order_.reserve(mostPieces);
  }

  void add(std::string_view text) { count(slotOf(text), text); }

  // The pieces so far are those of the query string: a keyword like one of them is not wanted.
  void endQueryString() {
    for (Slot* slot : order_) slot->inQueryString = true;
  }

  void addKeyword(std::string_view text) {
    if (auto& slot = slotOf(text); !slot.inQueryString) count(slot, text);
  }

  [[nodiscard]] std::size_t size() const { return order_.size(); }

  // Pieces that occur once, then one copy of each of the others.
  void appendTo(std::string& text) {
    const auto start = text.size();
    const auto append = [&](const Slot& slot) { text.append(slot.text).push_back('&'); };
    for (const Slot* slot : order_) {
      if (slot->occurrences == 1) append(*slot);
    }
    for (Slot* slot : order_) {
      if (slot->occurrences > 1) append(*slot);
      if (slot->occurrences > 1) slot->occurrences = 0;  // told
    }
    if (text.size() > start) text.pop_back();
  }

 private:
  struct Slot {
    std::string_view text;
    std::uint32_t occurrences = 0;
    bool inQueryString = false;
  };

  Slot& slotOf(std::string_view text) {
    const std::size_t mask = slots_.size() - 1;
    auto at = static_cast<std::size_t>(fingerprint(text) >> 32U) & mask;
    while (slots_[at].occurrences > 0 && slots_[at].text != text) at = (at + 1) & mask;
    return slots_[at];
  }

  void count(Slot& slot, std::string_view text) {
    slot.text = text;
    ++slot.occurrences;
    order_.push_back(&slot);
  }

  std::array<std::byte, 4096> stack_;
  std::pmr::monotonic_buffer_resource memory_{stack_.data(), stack_.size()};
  std::pmr::vector<Slot> slots_;
  std::pmr::vector<Slot*> order_{&memory_};
};

std::size_t countPieces(std::string_view text) {
  return 1 + static_cast<std::size_t>(std::count(text.begin(), text.end(), '&'));
}

}  // namespace

void appendMergedQuery(std::string& text, std::string_view keywords, std::string_view queryString) {
  PieceList list{countPieces(queryString) + countPieces(keywords)};
  std::string_view piece;
  if (!queryString.empty()) {
    for (Pieces pieces{queryString}; pieces.next(piece);) list.add(piece);
    list.endQueryString();
  }
  if (!keywords.empty()) {
    const auto before = list.size();
    for (Pieces pieces{keywords}; pieces.next(piece);) {
      // An empty query string has one piece, the empty one.
      if (!queryString.empty() || !piece.empty()) list.addKeyword(piece);
    }
    // Quirk: the separator before the keywords comes even when none is left to follow it; servers
    // know such URLs.
    if (list.size() == before && before > 0) list.add({});
  }
  list.appendTo(text);
}

}  // namespace tavo
