#pragma once

#include <string>
#include <string_view>

namespace tavo::adserver {

// The text as it stands between the quotes of a JSON string. Bytes above 127 pass unchanged.
[[nodiscard]] std::string jsonEscaped(std::string_view text);

// The text as a whole JSON string, quotes included. Bytes that are not UTF-8 are replaced, so that
// one odd header does not make a whole document unreadable.
[[nodiscard]] std::string jsonString(std::string_view text);

}  // namespace tavo::adserver
