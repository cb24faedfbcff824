#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace tavo {

namespace names {

// Whether the `Word`s at two places are equal.
template <typename Word>
[[nodiscard]] inline bool isSame(const char* left, const char* right) {
  Word one;
  Word other;
  std::memcpy(&one, left, sizeof one);
  std::memcpy(&other, right, sizeof other);
  return one == other;
}

// The same of `size` bytes, as many as a `Word` at least: the last word may overlap the one before.
template <typename Word>
[[nodiscard]] inline bool isSame(const char* left, const char* right, std::size_t size) {
  std::size_t at = 0;
  for (; at + sizeof(Word) < size; at += sizeof(Word)) {
    if (!isSame<Word>(left + at, right + at)) return false;
  }
  return isSame<Word>(left + size - sizeof(Word), right + size - sizeof(Word));
}

}  // namespace names

// Whether two names are equal, byte for byte. Names are short, and those that differ mostly differ
// in length or in their first character: a call for each would cost more than the comparison.
[[nodiscard]] inline bool isSameName(std::string_view left, std::string_view right) {
  const std::size_t size = left.size();
  if (size != right.size()) return false;
  if (size == 0) return true;
  if (left.front() != right.front()) return false;
  if (size >= 8) return names::isSame<std::uint64_t>(left.data(), right.data(), size);
  if (size >= 4) return names::isSame<std::uint32_t>(left.data(), right.data(), size);
  return left.back() == right.back() && left[size / 2] == right[size / 2];
}

}  // namespace tavo
