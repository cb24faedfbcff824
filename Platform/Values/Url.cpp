#include <algorithm>
#include <array>

#include <tavo/Url.h>

#include "Values/Text.h"

namespace tavo {

namespace {

constexpr bool isAlpha(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Bytes that stand for themselves anywhere in a URL. "%" and the brackets depend on their place.
constexpr std::array<bool, 256> makeLegalBytes() {
  std::array<bool, 256> legal{};
  for (int c = 0; c < 128; ++c) {
    const auto letter = static_cast<char>(c);
    legal[static_cast<std::size_t>(c)] =
        isAlpha(letter) || isDigit(letter) ||
        std::string_view{"-._~:/?#@!$&'()*+,;="}.find(letter) != std::string_view::npos;
  }
  return legal;
}
constexpr auto legalBytes = makeLegalBytes();

constexpr bool isLegal(char c) { return legalBytes[static_cast<unsigned char>(c)]; }

// How many bytes from `at` on stand for themselves. Nearly every URL is made of nothing else, so
// eight are judged at a time.
std::size_t legalRun(std::string_view text, std::size_t at) {
  const std::size_t start = at;
  for (; at + 8 <= text.size(); at += 8) {
    bool legal = true;
    for (std::size_t i = 0; i < 8; ++i) legal &= isLegal(text[at + i]);
    if (!legal) break;
  }
  while (at < text.size() && isLegal(text[at])) ++at;
  return at - start;
}

// The first of the delimiters "/?#" from `at` on, or the end.
std::size_t endOfAuthority(std::string_view text, std::size_t at) {
  while (at < text.size() && text[at] != '/' && text[at] != '?' && text[at] != '#') ++at;
  return at;
}

constexpr int hexValue(char c) {
  if (isDigit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

bool startsEscape(std::string_view text, std::size_t at) {
  return text[at] == '%' && at + 2 < text.size() && hexValue(text[at + 1]) >= 0 &&
         hexValue(text[at + 2]) >= 0;
}

// The half-open range in which brackets are legal: the authority of "scheme://authority/...".
struct Range {
  std::size_t start = 0;
  std::size_t end = 0;
  [[nodiscard]] bool has(std::size_t at) const { return at >= start && at < end; }
};

Range authorityOf(std::string_view text) {
  const auto slashes = text.find("//");
  if (slashes == std::string_view::npos || (slashes > 0 && text[slashes - 1] != ':')) return {};
  return {slashes + 2, endOfAuthority(text, slashes + 2)};
}

bool standsForItself(std::string_view text, std::size_t at, const Range& authority) {
  const char c = text[at];
  if (c == '[' || c == ']') return authority.has(at);
  return isLegal(c) || startsEscape(text, at);
}

bool isScheme(std::string_view text) {
  return !text.empty() && isAlpha(text.front()) &&
         std::all_of(text.begin(), text.end(), [](char c) {
           return isAlpha(c) || isDigit(c) || c == '+' || c == '-' || c == '.';
         });
}

// Longer texts are no URLs; the bound also keeps the pieces' offsets within 32 bits.
constexpr std::size_t longestUrl = 16U << 20U;

}  // namespace

std::string percentEscaped(std::string_view text) {
  static constexpr std::string_view digits = "0123456789ABCDEF";
  const Range authority = authorityOf(text);
  std::string escaped;
  escaped.reserve(text.size() + 16);
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto run = legalRun(text, at);
    escaped.append(text, at, run);
    at += run;
    if (at == text.size()) break;
    const char c = text[at];
    if (standsForItself(text, at, authority)) {
      escaped.push_back(c);
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    escaped.push_back('%');
    escaped.push_back(digits[byte >> 4U]);
    escaped.push_back(digits[byte & 15U]);
  }
  return escaped;
}

std::string percentDecoded(std::string_view text) {
  std::string decoded;
  decoded.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (!startsEscape(text, at)) {
      decoded.push_back(text[at]);
      continue;
    }
    decoded.push_back(static_cast<char>(hexValue(text[at + 1]) * 16 + hexValue(text[at + 2])));
    at += 2;
  }
  return decoded;
}

Url Url::parse(std::string text) {
  if (text.size() > longestUrl) return {};
  std::size_t at = legalRun(text, 0);
  const Range authority = at < text.size() ? authorityOf(text) : Range{};
  for (; at < text.size(); at += 1 + legalRun(text, at + 1)) {
    if (!standsForItself(text, at, authority)) return {};
  }
  return made(std::move(text));
}

Url Url::made(std::string text) {
  Url url;
  url.text_ = std::move(text);
  url.split();
  return url;
}

Url Url::fromText(std::string_view text) { return parse(percentEscaped(trimmed(text))); }

Url Url::fromText(std::string&& text) {
  if (text.size() <= longestUrl && legalRun(text, 0) == text.size()) return made(std::move(text));
  return fromText(std::string_view{text});
}

void Url::split() {
  const std::string_view text = text_;
  const auto piece = [](std::size_t start, std::size_t end) {
    return Piece{static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(end - start)};
  };
  std::size_t at = 0;
  const auto colon = text.find(':');
  if (colon != std::string_view::npos && isScheme(text.substr(0, colon))) {
    scheme_ = piece(0, colon);
    at = colon + 1;
  }
  if (text.substr(at, 2) == "//") {
    const auto end = endOfAuthority(text, at + 2);
    splitAuthority(at + 2, end);
    at = end;
  }
  const auto hash = std::min(text.find('#', at), text.size());
  const auto mark = std::min(text.find('?', at), hash);
  path_ = piece(at, mark);
  if (mark < hash) query_ = piece(mark + 1, hash);
  if (hash < text.size()) fragment_ = piece(hash + 1, text.size());
}

void Url::splitAuthority(std::size_t start, std::size_t end) {
  const auto authority = std::string_view{text_}.substr(start, end - start);
  const auto at = authority.rfind('@');
  auto host = at == std::string_view::npos ? authority : authority.substr(at + 1);
  if (host.starts_with('[')) {
    host = host.substr(1, host.find(']') - 1);
  } else {
    host = host.substr(0, host.find(':'));
  }
  host_ = {static_cast<std::uint32_t>(host.data() - text_.data()),
           static_cast<std::uint32_t>(host.size())};
}

std::string_view Url::view(Piece piece) const {
  return std::string_view{text_}.substr(piece.start, piece.length);
}

std::string_view Url::scheme() const { return view(scheme_); }
std::string_view Url::host() const { return view(host_); }
std::string_view Url::path() const { return view(path_); }
std::string_view Url::query() const { return view(query_); }
std::string_view Url::fragment() const { return view(fragment_); }

std::string_view Url::parameterString() const {
  const auto semicolon = path().find(';');
  return semicolon == std::string_view::npos ? std::string_view{} : path().substr(semicolon + 1);
}

bool Url::isHttp() const {
  return equalsIgnoringCase(scheme(), "http") || equalsIgnoringCase(scheme(), "https");
}

namespace {

// A URL in the pieces that RFC 3986 puts together again, delimiters included.
struct Reference {
  explicit Reference(const Url& url) {
    const std::string_view text = url.text();
    const auto pathStart = static_cast<std::size_t>(url.path().data() - text.data());
    const auto pathEnd = pathStart + url.path().size();
    const auto hash = std::min(text.find('#', pathEnd), text.size());
    scheme = url.scheme();
    authority = text.substr(0, pathStart);
    if (!scheme.empty()) authority.remove_prefix(scheme.size() + 1);
    path = url.path();
    query = text.substr(pathEnd, hash - pathEnd);
    fragment = text.substr(hash);
  }

  std::string_view scheme;  // the only one without its delimiter
  std::string_view authority;
  std::string_view path;
  std::string_view query;
  std::string_view fragment;
};

// Without the steps "." and "..".
std::string withoutDots(std::string_view path) {
  std::string clean;
  while (!path.empty()) {
    const auto end = std::min(path.find('/', 1), path.size());
    const auto step = path.substr(0, end);
    path.remove_prefix(end);
    const auto name = step.substr(step.starts_with('/') ? 1 : 0);
    if (name == "..") clean.erase(std::min(clean.rfind('/'), clean.size()));
    if (name != "." && name != "..") {
      clean.append(step);
    } else if (path.empty()) {
      clean.push_back('/');
    }
  }
  return clean;
}

std::string mergedPath(const Reference& base, const Reference& to) {
  if (to.path.starts_with('/')) return withoutDots(to.path);
  if (to.path.empty()) return std::string{base.path};
  if (!base.authority.empty() && base.path.empty()) return withoutDots("/" + std::string{to.path});
  const auto slash = base.path.rfind('/');
  const auto folder = base.path.substr(0, slash == std::string_view::npos ? 0 : slash + 1);
  return withoutDots(std::string{folder} + std::string{to.path});
}

}  // namespace

Url resolved(const Url& base, const Url& reference) {
  if (!reference || base.scheme().empty()) return {};
  const Reference from{base};
  const Reference to{reference};
  const bool hasOwnServer = !to.scheme.empty() || !to.authority.empty();
  const auto scheme = to.scheme.empty() ? from.scheme : to.scheme;
  const auto authority = hasOwnServer ? to.authority : from.authority;
  const auto path = hasOwnServer ? withoutDots(to.path) : mergedPath(from, to);
  const bool keepsQuery = !hasOwnServer && to.path.empty() && to.query.empty();
  // Such a path would be taken for a server's name.
  if (authority.empty() && path.starts_with("//")) return {};
  std::string text{scheme};
  text.append(":").append(authority).append(path);
  text.append(keepsQuery ? from.query : to.query).append(to.fragment);
  return Url::parse(std::move(text));
}

}  // namespace tavo
