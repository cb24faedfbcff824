#include "UserInterface/NativeView/VideoTime.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

#include "Values/Text.h"

namespace tavo {

namespace {

constexpr int secondsPerMinute = 60;
constexpr int secondsPerHour = 3600;

// The piece of `text` number `index` between separators; empty when there are fewer.
std::string_view piece(std::string_view text, char separator, int index) {
  for (; index > 0; --index) {
    const auto end = text.find(separator);
    if (end == std::string_view::npos) return {};
    text.remove_prefix(end + 1);
  }
  return text.substr(0, text.find(separator));
}

bool beginsNumber(std::string_view text) {
  if (!text.empty() && text.front() == '-') text.remove_prefix(1);
  return !text.empty() && (text.front() == '.' || (text.front() >= '0' && text.front() <= '9'));
}

}  // namespace

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

double secondsWithString(std::string_view text) {
  constexpr double fractionDivisor = 100;
  const double whole =
      static_cast<double>(leadingWholeNumber(piece(text, ':', 0))) * secondsPerHour +
      static_cast<double>(leadingWholeNumber(piece(text, ':', 1))) * secondsPerMinute +
      leadingWholeNumber(piece(text, ':', 2));
  return whole + leadingNumber(piece(text, '.', 1)) / fractionDivisor;
}

double skipOffset(std::string_view percent, std::string_view duration) {
  constexpr double whole = 100;
  return leadingNumber(duration) * (leadingNumber(percent) / whole);
}

std::string convertIntToHHSS(int seconds) {
  const int rest = seconds % secondsPerHour;
  if (rest < 1) return {};
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%02d:%02d", rest / secondsPerMinute,
                rest % secondsPerMinute);
  return text.data();
}

}  // namespace tavo
