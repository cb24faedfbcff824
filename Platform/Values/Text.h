#pragma once

#include <string>
#include <string_view>

namespace tavo {

// Text helpers over bytes; letters are the ASCII letters, as in the protocols that need them.

[[nodiscard]] bool equalsIgnoringCase(std::string_view left, std::string_view right);

// Whether `c` is a control character; bytes outside ASCII are none.
[[nodiscard]] constexpr bool isControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < 0x20 || byte == 0x7f;
}

[[nodiscard]] std::string lowerCased(std::string_view text);

// `text` without the ASCII blanks, tabs and line ends around it.
[[nodiscard]] std::string_view trimmed(std::string_view text);

[[nodiscard]] inline bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

// How often `part` occurs in `text`, counted without overlap.
[[nodiscard]] std::size_t occurrences(std::string_view text, std::string_view part);

// `text` decoded as UTF-8: each ill-formed sequence becomes U+FFFD, so that the result is always
// valid whatever a server sent.
[[nodiscard]] std::string validUtf8(std::string_view text);

// `text` as it is written into a page or an XML document, also between quotation marks. Control
// characters, which neither can hold, become question marks; blanks stay.
[[nodiscard]] std::string asMarkup(std::string_view text);

}  // namespace tavo
