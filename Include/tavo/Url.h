#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <tavo/Export.h>

namespace tavo {

// A URL in the generic syntax of RFC 3986, kept as the text it was made from: letters are not
// lower-cased and escapes are not decoded, because creatives put command names into the host.
// An empty Url stands for "no URL".
class TAVO_EXPORT Url {
 public:
  Url() = default;

  // Takes the text as it stands. Empty when it holds a character that may not appear in a URL
  // (blanks, control characters, bytes outside ASCII, one of "<>\^`{|}), a "%" that starts no
  // escape, or brackets outside the host.
  [[nodiscard]] static Url parse(std::string text);

  // For text out of ads, servers and documents: drops white space around it, percent-escapes what
  // may not appear in a URL (see percentEscaped) and parses the result.
  [[nodiscard]] static Url fromText(std::string_view text);
  [[nodiscard]] static Url fromText(const char* text) { return fromText(std::string_view{text}); }
  // The same for a text that its holder gives away: one that needs no change is not copied.
  [[nodiscard]] static Url fromText(std::string&& text);

  [[nodiscard]] bool empty() const { return text_.empty(); }
  explicit operator bool() const { return !empty(); }

  // The whole URL; the empty text for no URL.
  [[nodiscard]] const std::string& text() const { return text_; }

  // The pieces, without their delimiters; empty when absent. They live as long as the Url.
  [[nodiscard]] std::string_view scheme() const;
  [[nodiscard]] std::string_view host() const;  // without user information, port and brackets
  [[nodiscard]] std::string_view path() const;
  [[nodiscard]] std::string_view query() const;
  [[nodiscard]] std::string_view fragment() const;
  // What follows the first ";" of the path.
  [[nodiscard]] std::string_view parameterString() const;

  // True for the schemes "http" and "https" in any letter case.
  [[nodiscard]] bool isHttp() const;

  friend bool operator==(const Url& left, const Url& right) { return left.text_ == right.text_; }

 private:
  struct Piece {
    std::uint32_t start = 0;
    std::uint32_t length = 0;
  };

  // Splits a text that is known to be a URL.
  [[nodiscard]] static Url made(std::string text);
  void split();
  void splitAuthority(std::size_t start, std::size_t end);
  [[nodiscard]] std::string_view view(Piece piece) const;

  std::string text_;
  Piece scheme_;
  Piece host_;
  Piece path_;
  Piece query_;
  Piece fragment_;
};

// Where `reference`, which may be relative, leads from `base` (RFC 3986, 5.2). Empty when one of
// them is, when `base` has no scheme, and where the result would read as another URL than it is.
[[nodiscard]] TAVO_EXPORT Url resolved(const Url& base, const Url& reference);

// `text` with every byte that may not appear in a URL written as "%XX". Delimiters stay, and so
// does a "%" that starts a valid escape: text that was escaped before is not escaped twice.
[[nodiscard]] TAVO_EXPORT std::string percentEscaped(std::string_view text);

// `text` with every escape "%XX" decoded; a "%" that starts no escape stays.
[[nodiscard]] TAVO_EXPORT std::string percentDecoded(std::string_view text);

}  // namespace tavo
