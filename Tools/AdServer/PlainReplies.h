#pragma once

#include <string>
#include <string_view>

#include "AdServer/Reply.h"

namespace tavo::adserver {

// What servers of ads answer, whatever they serve.

// By the ending of a file's name.
[[nodiscard]] std::string contentTypeOf(std::string_view file);

[[nodiscard]] Reply madeReply(std::string contentType, std::string body);
// A line of text.
[[nodiscard]] Reply plainReply(unsigned status, std::string text);
// One transparent pixel, which the `img` of a creative loads as gladly as a bare ping does.
[[nodiscard]] Reply pixelReply();
// Where a click leads.
[[nodiscard]] Reply landingReply(std::string_view title);

}  // namespace tavo::adserver
