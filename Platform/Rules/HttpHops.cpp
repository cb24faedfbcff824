#include "Rules/HttpHops.h"

#include <algorithm>
#include <array>
#include <utility>

#include "Rules/CookieRules.h"
#include "Values/Text.h"

namespace tavo {

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

// A header with control characters would be the start of a header of somebody else's.
bool isSendable(const HttpHeader& header) {
  const auto breaksName = [](char c) { return c <= ' ' || c >= '\x7f' || c == ':'; };
  return !header.name.empty() && std::none_of(header.name.begin(), header.name.end(), breaksName) &&
         std::none_of(header.value.begin(), header.value.end(), isControl);
}

// A request with a cookie header of its own has chosen what may be sent; nothing is added to it,
// not on other hosts either. One that names its extra cookies leaves the rest to the store.
bool takesStoredCookies(const HttpRequest& request) {
  if (request.cookies == CookieHandling::onlyOwnHeader) return false;
  return !request.extraCookies.empty() || request.header("Cookie") == nullptr;
}

}  // namespace

HttpHops::HttpHops(HttpRequest request, int redirectLimit)
    : request_{std::move(request)}, url_{request_.url}, redirectsLeft_{redirectLimit} {}

std::optional<HttpRequest> HttpHops::request(const CookieStore& cookies, Date now) const {
  if (!isHttpTarget(url_)) return std::nullopt;
  HttpRequest hop = request_;
  hop.url = url_;
  hop.headers = headers(cookies, now);
  return hop;
}

std::vector<HttpHeader> HttpHops::headers(const CookieStore& cookies, Date now) const {
  std::vector<HttpHeader> headers = request_.headers;
  const bool secretsStay = !mayCarrySecrets(request_.url, url_);
  std::erase_if(headers, [&](const HttpHeader& header) {
    return !isSendable(header) || (secretsStay && isOneOf(header, secretHeaders));
  });
  if (!takesStoredCookies(request_)) return headers;
  auto sent = cookies.cookiesFor(url_);
  boundHeader(sent);
  for (const auto& extra : request_.extraCookies) {
    if (cookieMatches(extra, url_, now)) sent.push_back(extra);
  }
  std::erase_if(headers,
                [](const HttpHeader& header) { return equalsIgnoringCase(header.name, "Cookie"); });
  if (!sent.empty()) headers.push_back({"Cookie", cookieHeader(sent)});
  return headers;
}

HttpHops::Next HttpHops::take(const HttpResponse& head, CookieStore& cookies) {
  cookies.storeFromHeaders(head.headers, url_);
  const auto* const location = head.header("Location");
  if (!request_.followsRedirects || !isRedirect(head.status) || location == nullptr) {
    return Next::deliver;
  }
  if (redirectsLeft_-- <= 0) return Next::giveUp;
  url_ = resolved(url_, Url::fromText(*location));
  applyRedirect(request_, head.status);
  return Next::follow;
}

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

bool isHttpTarget(const Url& url) {
  const std::string host = percentDecoded(url.host());
  return url.isHttp() && !host.empty() && !host.starts_with('.') &&
         std::none_of(host.begin(), host.end(), [](char c) { return c == ' ' || isControl(c); });
}

std::string mimeTypeOf(std::string_view contentType) {
  return lowerCased(trimmed(contentType.substr(0, contentType.find(';'))));
}

}  // namespace tavo
