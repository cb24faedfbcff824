#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tavo {

// Numbers as text and back, the same in every locale.

// The number with the fewest digits that read back as the same number: plain ("0.5", "1000") from
// 0.0001 to below 1e16, otherwise as "1e+20".
[[nodiscard]] std::string numberText(double value);

// The same digits, always plain: "0.00001".
[[nodiscard]] std::string plainNumberText(double value);

// The readers take the number that `text` begins with, after blanks and one sign, and ignore what
// follows it: "12px" is 12, "px" is 0. What comes from outside is never out of range.

// With fraction and exponent; 0 for what is too large, and for the words for infinity.
[[nodiscard]] double leadingNumber(std::string_view text);
// The same, within the range of a float.
[[nodiscard]] float leadingFloat(std::string_view text);
// Digits only ("1e3" is 1), or the nearest number that there is.
[[nodiscard]] std::int64_t leadingInteger(std::string_view text);
// The same, within the range of an int.
[[nodiscard]] int leadingWholeNumber(std::string_view text);

// `value` without its fraction, or the nearest number that there is; 0 for what is no number.
[[nodiscard]] std::int64_t truncated(double value);
// The same, within the range of an int.
[[nodiscard]] int integerPart(double value);

}  // namespace tavo
