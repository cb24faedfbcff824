#include "UserInterface/NativeView/VideoTime.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "Utilities/NumberText.h"

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

}  // namespace

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
