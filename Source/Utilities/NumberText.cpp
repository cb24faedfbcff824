#include "Utilities/NumberText.h"

#include <array>
#include <charconv>
#include <cstdlib>

namespace tavo {

namespace {

// 309 digits before the point, or some 325 behind it.
using Buffer = std::array<char, 400>;

std::string written(double value, std::chars_format format) {
  Buffer buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format).ptr;
  return {buffer.data(), end};
}

}  // namespace

std::string numberText(double value) {
  std::string text = written(value, std::chars_format::scientific);
  const auto mark = text.find('e');
  if (mark == std::string::npos) return text;  // not a number, or no finite one
  const int exponent = std::atoi(text.c_str() + mark + 1);
  return exponent < -4 || exponent >= 16 ? text : plainNumberText(value);
}

std::string plainNumberText(double value) { return written(value, std::chars_format::fixed); }

}  // namespace tavo
