#include "Gtk/Web/ScriptText.h"

namespace tavo::gtk {

std::string quotedForScript(std::string_view text) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string literal = "\"";
  for (const char letter : text) {
    const auto code = static_cast<unsigned char>(letter);
    if (code < 0x20 || letter == '"' || letter == '\\' || letter == '<') {
      literal += "\\x";
      literal += digits[code >> 4U];
      literal += digits[code & 0xFU];
    } else {
      literal += letter;
    }
  }
  return literal + '"';
}

}  // namespace tavo::gtk
