#include "AdController/AdGenerator/MraidCommandText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "Values/Text.h"

namespace tavo {

namespace {

constexpr std::string_view bodyMark = "&body=";

bool isUnreserved(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
         c == '_' || c == '.' || c == '~';
}

std::string escapedForParameter(std::string_view text) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string escaped;
  escaped.reserve(text.size() * 3);
  for (const char c : text) {
    if (isUnreserved(c)) {
      escaped.push_back(c);
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    escaped.append({'%', digits[byte >> 4U], digits[byte & 15U]});
  }
  return escaped;
}

void addPair(MraidParameters& parameters, std::string_view piece) {
  const auto key = piece.substr(0, piece.find('='));
  const auto value = piece.substr(piece.rfind('=') + 1);  // npos + 1 is the whole piece
  parameters.insert_or_assign(std::string{key}, validUtf8(percentDecoded(value)));
}

std::string sixDecimals(double number) {
  constexpr double largest = std::numeric_limits<double>::max();
  std::array<char, std::numeric_limits<double>::max_exponent10 + 12> digits{};
  const double finite = std::isnan(number) ? 0 : std::clamp(number, -largest, largest);
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), finite,
                                 std::chars_format::fixed, 6);
  return {digits.data(), end.ptr};
}

}  // namespace

MraidCommand mraidCommandFromUrl(const Url& url) {
  return {std::string{url.host()}, dictionaryFromQueryString(url.query())};
}

MraidParameters dictionaryFromQueryString(std::string_view query) {
  MraidParameters parameters;
  if (query.empty()) return parameters;
  std::size_t start = 0;
  for (auto end = query.find('&'); end != std::string_view::npos; end = query.find('&', start)) {
    addPair(parameters, query.substr(start, end - start));
    start = end + 1;
  }
  addPair(parameters, query.substr(start));
  return parameters;
}

std::string urlWithEscapedSmsBody(std::string url) {
  const auto mark = url.find(bodyMark);
  if (mark == std::string::npos || !contains(url, "sms:")) return url;
  const auto body = mark + bodyMark.size();
  return url.substr(0, body) + escapedForParameter(std::string_view{url}.substr(body));
}

std::string sizeChangeEventName(const Size& size) {
  return "sizeChange:width=" + sixDecimals(size.width) + ",height=" + sixDecimals(size.height);
}

}  // namespace tavo
