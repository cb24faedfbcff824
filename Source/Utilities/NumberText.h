#pragma once

#include <string>
#include <string_view>

namespace tavo {

// The number with the fewest digits that read back as the same number: plain ("0.5", "1000") from
// 0.0001 to below 1e16, otherwise as "1e+20". The same in every locale.
[[nodiscard]] std::string numberText(double value);

// The same digits, always plain: "0.00001".
[[nodiscard]] std::string plainNumberText(double value);

// The number that `text` begins with, after blanks: "12px" is 12, "px" is 0.
[[nodiscard]] double leadingNumber(std::string_view text);

// The same without a fraction, within the range of an int.
[[nodiscard]] int leadingWholeNumber(std::string_view text);

// `value` without its fraction, within the range of an int; 0 for what is no number.
[[nodiscard]] int integerPart(double value);

}  // namespace tavo
