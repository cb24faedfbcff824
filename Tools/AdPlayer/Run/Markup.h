#pragma once

#include <string>
#include <string_view>

#include "Values/Text.h"

namespace tavo::adplayer {

// `text` as it stands in HTML or XML, quotes of attributes included. What XML cannot hold is
// replaced.
[[nodiscard]] inline std::string escapedMarkup(std::string_view text) {
  std::string escaped;
  for (const char letter : validUtf8(text)) {
    const auto code = static_cast<unsigned char>(letter);
    if (letter == '<') {
      escaped += "&lt;";
    } else if (letter == '>') {
      escaped += "&gt;";
    } else if (letter == '&') {
      escaped += "&amp;";
    } else if (letter == '"') {
      escaped += "&quot;";
    } else if (code < ' ' && letter != '\n' && letter != '\t' && letter != '\r') {
      escaped += '?';
    } else {
      escaped += letter;
    }
  }
  return escaped;
}

}  // namespace tavo::adplayer
