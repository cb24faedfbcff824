#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <tavo/Url.h>

#include "Services/HttpClient.h"
#include "Values/Cookie.h"

namespace tavo {

// The process-wide, persistent cookie store, with the matching rules of RFC 6265 (domain, path,
// expiry, secure), public suffixes refused as domains, and the promises kept that a cookie's name
// makes. Every operation from any thread.
class CookieStore {
 public:
  virtual ~CookieStore() = default;

  // The cookies that a request for `url` would carry, longest path first.
  [[nodiscard]] virtual std::vector<Cookie> cookiesFor(const Url& url) const = 0;

  // Stores a cookie that came with an answer for `url`; one that `url` may not set, and one with
  // control characters, is dropped. An expiry in the past removes the stored one.
  virtual void store(const Cookie& cookie, const Url& url) = 0;

  // Reads every "Set-Cookie" header and stores what it holds, as above.
  virtual void storeFromHeaders(const std::vector<HttpHeader>& headers, const Url& url) = 0;

  // Whether a domain such as "com" or "co.uk" is shared by sites that have nothing to do with each
  // other.
  [[nodiscard]] virtual bool isPublicSuffix(std::string_view domain) const = 0;
};

// The value of a "Cookie" header that carries `cookies`: "a=1; b=2".
[[nodiscard]] std::string cookieHeader(const std::vector<Cookie>& cookies);

}  // namespace tavo
