#include "Headless/HeadlessCookieStore.h"

#include <algorithm>

#include "Values/Text.h"

namespace tavo::headless {

namespace {

bool domainMatches(std::string_view host, std::string_view domain) {
  if (domain.starts_with('.')) domain.remove_prefix(1);
  return host == domain || (host.size() > domain.size() && host.ends_with(domain) &&
                            host[host.size() - domain.size() - 1] == '.');
}

// Reads one "Set-Cookie" value: the pair, then the attributes that matter in memory.
std::optional<Cookie> readCookie(std::string_view header, const Url& url) {
  Cookie cookie;
  cookie.domain = std::string{url.host()};
  bool first = true;
  while (!header.empty()) {
    const auto end = std::min(header.find(';'), header.size());
    const auto piece = trimmed(header.substr(0, end));
    header.remove_prefix(std::min(end + 1, header.size()));
    const auto equals = piece.find('=');
    const auto name = piece.substr(0, equals);
    const auto value =
        equals == std::string_view::npos ? std::string_view{} : piece.substr(equals + 1);
    if (first) {
      if (equals == std::string_view::npos || name.empty()) return std::nullopt;
      cookie.name = std::string{name};
      cookie.value = std::string{value};
      first = false;
    } else if (equalsIgnoringCase(name, "Domain")) {
      cookie.domain = std::string{value};
    } else if (equalsIgnoringCase(name, "Path")) {
      cookie.path = std::string{value};
    } else if (equalsIgnoringCase(name, "Secure")) {
      cookie.secure = true;
    } else if (equalsIgnoringCase(name, "Max-Age") && value.starts_with("0")) {
      cookie.expires = Date{};
    }
  }
  return first ? std::nullopt : std::optional{cookie};
}

}  // namespace

std::vector<Cookie> HeadlessCookieStore::cookiesFor(const Url& url) const {
  const std::scoped_lock lock{mutex_};
  std::vector<Cookie> matching;
  for (const auto& cookie : cookies_) {
    if (domainMatches(url.host(), cookie.domain) &&
        (cookie.path == "/" || url.path().starts_with(cookie.path)) &&
        (!cookie.secure || equalsIgnoringCase(url.scheme(), "https"))) {
      matching.push_back(cookie);
    }
  }
  return matching;
}

void HeadlessCookieStore::store(const Cookie& cookie, const Url& url) {
  if (!domainMatches(url.host(), cookie.domain)) return;
  const std::scoped_lock lock{mutex_};
  std::erase_if(cookies_, [&](const Cookie& stored) {
    return stored.name == cookie.name && stored.domain == cookie.domain &&
           stored.path == cookie.path;
  });
  const bool expired = cookie.expires && *cookie.expires < std::chrono::system_clock::now();
  if (!expired) cookies_.push_back(cookie);
}

void HeadlessCookieStore::storeFromHeaders(const std::vector<HttpHeader>& headers, const Url& url) {
  for (const auto& header : headers) {
    if (!equalsIgnoringCase(header.name, "Set-Cookie")) continue;
    if (const auto cookie = readCookie(header.value, url)) store(*cookie, url);
  }
}

}  // namespace tavo::headless
