#include "Values/Text.h"

#include <glib.h>

#include <algorithm>
#include <memory>

namespace tavo {

namespace {

bool isBlank(char letter) { return letter == '\n' || letter == '\t' || letter == '\r'; }

}  // namespace

bool equalsIgnoringCase(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return g_ascii_tolower(a) == g_ascii_tolower(b); });
}

std::string lowerCased(std::string_view text) {
  std::string lower{text};
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n\f\v";
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::size_t occurrences(std::string_view text, std::string_view part) {
  std::size_t count = 0;
  for (auto at = text.find(part); at != std::string_view::npos; at = text.find(part, at)) {
    ++count;
    at += part.size();
  }
  return count;
}

std::string validUtf8(std::string_view text) {
  const auto length = static_cast<gssize>(text.size());
  if (g_utf8_validate(text.data(), length, nullptr) != FALSE) return std::string{text};
  const std::unique_ptr<char, decltype(&g_free)> valid{g_utf8_make_valid(text.data(), length),
                                                       &g_free};
  return valid.get();
}

std::string asMarkup(std::string_view text) {
  std::string markup;
  for (const char letter : validUtf8(text)) {
    switch (letter) {
      case '<':
        markup += "&lt;";
        break;
      case '>':
        markup += "&gt;";
        break;
      case '&':
        markup += "&amp;";
        break;
      case '"':
        markup += "&quot;";
        break;
      default:
        markup += isControl(letter) && !isBlank(letter) ? '?' : letter;
    }
  }
  return markup;
}

}  // namespace tavo
