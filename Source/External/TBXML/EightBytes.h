#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tavo {

// Some of eight bytes, as the highest bit of each.
class BytePlaces {
 public:
  explicit constexpr BytePlaces(std::uint64_t highest) : highest_{highest} {}

  friend constexpr BytePlaces operator|(BytePlaces left, BytePlaces right) {
    return BytePlaces{left.highest_ | right.highest_};
  }
  [[nodiscard]] constexpr bool any() const { return highest_ != 0; }
  // The first of them; there must be one.
  [[nodiscard]] constexpr std::size_t first() const {
    return static_cast<std::size_t>(std::countr_zero(highest_)) / 8;
  }
  // Bit n for byte n. The factor moves the bit of byte n to bit 56 + n, and no two sums meet on
  // their way there.
  [[nodiscard]] constexpr std::uint64_t bits() const {
    return (highest_ >> 7) * 0x0102040810204080 >> 56;
  }

 private:
  std::uint64_t highest_;
};

// Eight bytes of a text at once, in one register of any processor: what the readers use where there
// are no vector instructions to count on. Byte n of the text is byte n from the register's low end,
// whatever the machine's order.
class EightBytes {
 public:
  explicit EightBytes(const char* text) {
    std::memcpy(&bytes_, text, sizeof bytes_);
    if constexpr (std::endian::native == std::endian::big) {
      bytes_ = __builtin_bswap64(bytes_);
    }
  }

  // Where `c`, which is ASCII, stands. Sums of seven bits never reach the next byte, so there are
  // no false finds beside true ones.
  [[nodiscard]] BytePlaces where(char c) const { return nowhere(((bytes_ & low) ^ each(c)) + low); }
  // Where a byte is `c` or less; `c` is ASCII.
  [[nodiscard]] BytePlaces whereAtMost(char c) const {
    return nowhere((bytes_ & low) + (low - each(c)));
  }

 private:
  static constexpr std::uint64_t low = 0x7f7f7f7f7f7f7f7f;
  static constexpr std::uint64_t each(char c) {
    return static_cast<unsigned char>(c) * std::uint64_t{0x0101010101010101};
  }
  // The bytes whose highest bit is in neither `others` nor the text.
  [[nodiscard]] BytePlaces nowhere(std::uint64_t others) const {
    return BytePlaces{~(others | bytes_) & ~low};
  }

  std::uint64_t bytes_;
};

}  // namespace tavo
