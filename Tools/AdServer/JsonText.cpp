#include "AdServer/JsonText.h"

#include "Gtk/GPtr.h"

namespace tavo::adserver {

namespace {

void appendControlCharacter(std::string& json, char character) {
  constexpr std::string_view digits = "0123456789abcdef";
  const auto code = static_cast<unsigned char>(character);
  json += "\\u00";
  json += digits[code >> 4U];
  json += digits[code & 15U];
}

void appendEscaped(std::string& json, char character) {
  switch (character) {
    case '"':
      json += "\\\"";
      break;
    case '\\':
      json += "\\\\";
      break;
    case '\n':
      json += "\\n";
      break;
    case '\r':
      json += "\\r";
      break;
    case '\t':
      json += "\\t";
      break;
    default:
      if (static_cast<unsigned char>(character) < 0x20) {
        appendControlCharacter(json, character);
      } else {
        json += character;
      }
  }
}

}  // namespace

std::string jsonEscaped(std::string_view text) {
  std::string json;
  json.reserve(text.size() + text.size() / 8);
  for (const char character : text) {
    appendEscaped(json, character);
  }
  return json;
}

std::string jsonString(std::string_view text) {
  const gtk::GText valid{g_utf8_make_valid(text.data(), static_cast<gssize>(text.size()))};
  return '"' + jsonEscaped(valid.get()) + '"';
}

}  // namespace tavo::adserver
