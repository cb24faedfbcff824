#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

namespace tavo {

// A place among the markup characters of a text, which are given as one bit per byte (MarkupScan).
// The bit behind the text's last byte is set too: it is the end. A cursor is two words, so that it
// can be handed around by value and lives in registers.
class MarkupCursor {
 public:
  // Stands on the first markup character, or on the end.
  explicit MarkupCursor(const std::uint64_t* bits) : word_(bits), rest_(*bits) { settle(); }

  // The offset of the current character, where `bits` is what the cursor was made with.
  [[nodiscard]] std::size_t position(const std::uint64_t* bits) const {
    return static_cast<std::size_t>(word_ - bits) * 64 +
           static_cast<std::size_t>(std::countr_zero(rest_));
  }

  // Goes to the next one. There must be one: the cursor may not stand on the end.
  void advance() {
    rest_ &= rest_ - 1;
    settle();
  }

 private:
  void settle() {
    while (rest_ == 0) {
      rest_ = *++word_;
    }
  }

  const std::uint64_t* word_;
  std::uint64_t rest_;  // the current word without the bits before the current one; never 0
};

}  // namespace tavo
