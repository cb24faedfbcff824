#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

#include "External/TBXML/NameMatch.h"

namespace tavo {

template <typename Meaning>
struct NameEntry {
  std::string_view name;
  Meaning meaning;
};

// What the names of a fixed list mean. The compiler makes the table; a look-up goes by the ends and
// the length of a name to the entries that look alike, mostly one or none.
template <typename Meaning, std::size_t count>
class NameTable {
 public:
  // The names differ, and none is empty.
  consteval explicit NameTable(const NameEntry<Meaning> (&entries)[count])
      : entries_{std::to_array(entries)} {
    for (std::size_t index = 0; index < count; ++index) {
      Place& first = first_[slotOf(entries_[index].name)];
      next_[index] = std::exchange(first, static_cast<Place>(index + 1));
    }
  }

  [[nodiscard]] const std::array<NameEntry<Meaning>, count>& entries() const { return entries_; }

  // The meaning of exactly this name; null when the list does not have it.
  [[nodiscard]] const Meaning* find(std::string_view name) const {
    Place place = name.empty() ? nowhere : first_[slotOf(name)];
    for (; place != nowhere; place = next_[place - 1]) {
      const auto& entry = entries_[place - 1];
      if (isSameName(entry.name, name)) return &entry.meaning;
    }
    return nullptr;
  }

 private:
  using Place = std::uint8_t;  // an index plus one
  static constexpr Place nowhere = 0;
  static constexpr std::size_t slots = std::bit_ceil(4 * count);
  static_assert(count < 255);

  // Factors that keep the names of VAST apart.
  static constexpr std::size_t slotOf(std::string_view name) {
    const auto first = static_cast<unsigned char>(name.front());
    const auto last = static_cast<unsigned char>(name.back());
    return (3 * first + 2 * last + 5 * name.size()) % slots;
  }

  std::array<NameEntry<Meaning>, count> entries_;
  std::array<Place, slots> first_{};
  std::array<Place, count> next_{};
};

}  // namespace tavo
