#include "Utilities/NumberText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
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

bool isDigit(char letter) { return letter >= '0' && letter <= '9'; }

// `text` from its number on, without a plus sign, which std::from_chars does not take; empty when
// it begins with none. The words for infinity, which std::from_chars would take, are none.
std::string_view numberAtStart(std::string_view text) {
  text = trimmed(text);
  const auto digits = text.substr(text.starts_with('+') || text.starts_with('-') ? 1 : 0);
  if (digits.empty() || (digits.front() != '.' && !isDigit(digits.front()))) return {};
  return text.front() == '-' ? text : digits;
}

template <typename Number>
Number clampedTo(double value) {
  using Limit = std::numeric_limits<Number>;
  if (std::isnan(value)) return 0;
  if (value >= static_cast<double>(Limit::max())) return Limit::max();
  if (value <= static_cast<double>(Limit::lowest())) return Limit::lowest();
  return static_cast<Number>(value);
}

}  // namespace

std::string numberText(double value) {
  std::string text = written(value, std::chars_format::scientific);
  const auto mark = text.find('e');
  if (mark == std::string::npos) return text;  // not a number, or no finite one
  const auto exponent = leadingInteger(std::string_view{text}.substr(mark + 1));
  return exponent < -4 || exponent >= 16 ? text : plainNumberText(value);
}

std::string plainNumberText(double value) { return written(value, std::chars_format::fixed); }

double leadingNumber(std::string_view text) {
  const auto number = numberAtStart(text);
  double value = 0;
  const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
  return result.ec == std::errc{} && std::isfinite(value) ? value : 0;
}

float leadingFloat(std::string_view text) { return clampedTo<float>(leadingNumber(text)); }

std::int64_t leadingInteger(std::string_view text) {
  using Limit = std::numeric_limits<std::int64_t>;
  const auto number = numberAtStart(text);
  std::int64_t value = 0;
  const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
  if (result.ec != std::errc::result_out_of_range) return value;
  return number.front() == '-' ? Limit::min() : Limit::max();
}

int leadingWholeNumber(std::string_view text) {
  using Limit = std::numeric_limits<int>;
  return static_cast<int>(
      std::clamp<std::int64_t>(leadingInteger(text), Limit::min(), Limit::max()));
}

std::int64_t truncated(double value) { return clampedTo<std::int64_t>(value); }

int integerPart(double value) { return clampedTo<int>(value); }

}  // namespace tavo
