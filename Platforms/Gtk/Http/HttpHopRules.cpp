#include "Gtk/Http/HttpHopRules.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "Values/Text.h"

namespace tavo::gtk {

namespace {

bool isOneOf(const HttpHeader& header, const auto& names) {
  return std::any_of(names.begin(), names.end(),
                     [&](std::string_view name) { return equalsIgnoringCase(header.name, name); });
}

constexpr std::array<std::string_view, 2> secretHeaders{"Cookie", "Authorization"};
constexpr std::array<std::string_view, 5> bodyHeaders{
    "Content-Type", "Content-Length", "Content-Encoding", "Content-Language", "Transfer-Encoding"};

bool mayCarrySecrets(const Url& madeFor, const Url& hop) {
  const bool falls =
      equalsIgnoringCase(madeFor.scheme(), "https") && !equalsIgnoringCase(hop.scheme(), "https");
  return equalsIgnoringCase(madeFor.host(), hop.host()) && !falls;
}

}  // namespace

bool isRedirect(int status) {
  return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

void applyRedirect(HttpRequest& request, int status) {
  const bool repeats = status == 307 || status == 308;
  if (repeats || request.method == "GET" || request.method == "HEAD") return;
  if (status != 303 && request.method != "POST") return;
  request.method = "GET";
  request.body.clear();
  std::erase_if(request.headers,
                [](const HttpHeader& header) { return isOneOf(header, bodyHeaders); });
}

std::vector<HttpHeader> hopHeaders(const HttpRequest& request, const Url& url,
                                   const CookieStore& cookies) {
  std::vector<HttpHeader> headers = request.headers;
  if (!mayCarrySecrets(request.url, url)) {
    std::erase_if(headers, [](const HttpHeader& header) { return isOneOf(header, secretHeaders); });
  }
  // A request with cookies of its own has chosen what may be sent; the store adds nothing, not on
  // other hosts either.
  const bool choseCookies = request.header("Cookie") != nullptr;
  if (request.cookies == CookieHandling::onlyOwnHeader || choseCookies) return headers;
  const auto stored = cookies.cookiesFor(url);
  if (!stored.empty()) headers.push_back({"Cookie", cookieHeader(stored)});
  return headers;
}

}  // namespace tavo::gtk
