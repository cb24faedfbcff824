#pragma once

#include <string>

namespace tavo::gtk {

// A text that a C library handed out, copied. Every one of them may be null, also where the
// library's papers do not say so; null reads as the empty text.
[[nodiscard]] inline std::string textOf(const char* text) {
  return text == nullptr ? std::string{} : std::string{text};
}

}  // namespace tavo::gtk
