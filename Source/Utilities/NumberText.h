#pragma once

#include <string>

namespace tavo {

// The number with the fewest digits that read back as the same number: plain ("0.5", "1000") from
// 0.0001 to below 1e16, otherwise as "1e+20". The same in every locale.
[[nodiscard]] std::string numberText(double value);

// The same digits, always plain: "0.00001".
[[nodiscard]] std::string plainNumberText(double value);

}  // namespace tavo
