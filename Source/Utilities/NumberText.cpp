#include "Utilities/NumberText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "Values/Text.h"

namespace tavo {

namespace {

// 309 digits before the point, or some 325 behind it.
using Buffer = std::array<char, 400>;

std::string written(double value, std::chars_format format) {
  Buffer buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format).ptr;
  return {buffer.data(), end};
}

bool beginsNumber(std::string_view text) {
  if (!text.empty() && text.front() == '-') text.remove_prefix(1);
  return !text.empty() && (text.front() == '.' || (text.front() >= '0' && text.front() <= '9'));
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

double leadingNumber(std::string_view text) {
  text = trimmed(text);
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  if (!beginsNumber(text)) return 0;  // also the words for infinity, which a reader would take
  double value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  return result.ec == std::errc{} && std::isfinite(value) ? value : 0;
}

int integerPart(double value) {
  constexpr double lowest = std::numeric_limits<int>::min();
  constexpr double highest = std::numeric_limits<int>::max();
  return std::isnan(value) ? 0 : static_cast<int>(std::clamp(value, lowest, highest));
}

int leadingWholeNumber(std::string_view text) { return integerPart(leadingNumber(text)); }

}  // namespace tavo
