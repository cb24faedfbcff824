#include "AdController/AdGenerator/MraidParameters.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "Values/Text.h"

namespace tavo {

namespace {

// `text` from its number on: no blanks, and no plus sign, which std::from_chars does not take.
std::string_view numberAtStart(std::string_view text) {
  text = trimmed(text);
  const bool plus = text.size() > 1 && text[0] == '+' && text[1] != '-';
  return plus ? text.substr(1) : text;
}

}  // namespace

std::string_view valueOf(const MraidParameters& parameters, std::string_view key) {
  const auto found = parameters.find(key);
  return found == parameters.end() ? std::string_view{} : std::string_view{found->second};
}

std::int64_t leadingInteger(std::string_view text) {
  using Limit = std::numeric_limits<std::int64_t>;
  const auto number = numberAtStart(text);
  std::int64_t value = 0;
  const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
  if (result.ec != std::errc::result_out_of_range) return value;
  return number.front() == '-' ? Limit::min() : Limit::max();
}

float leadingFloat(std::string_view text) {
  constexpr double largest = std::numeric_limits<float>::max();
  const auto number = numberAtStart(text);
  double value = 0;
  const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
  if (result.ec != std::errc{} || !std::isfinite(value)) return 0;
  return static_cast<float>(std::clamp(value, -largest, largest));
}

std::int64_t truncated(double number) {
  using Limit = std::numeric_limits<std::int64_t>;
  if (std::isnan(number)) return 0;
  if (number >= static_cast<double>(Limit::max())) return Limit::max();
  if (number <= static_cast<double>(Limit::min())) return Limit::min();
  return static_cast<std::int64_t>(number);
}

}  // namespace tavo
