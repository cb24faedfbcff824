#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <tavo/Date.h>
#include <tavo/Limits.h>
#include <tavo/Url.h>

#include "Services/CookieStore.h"

namespace tavo {

// What RFC 6265 says of one cookie. A domain with a leading dot stands for the host and all below
// it, one without for the host alone.

// Whether a name such as "com" or "co.uk" is shared by sites that have nothing to do with each
// other.
using IsPublicSuffix = std::function<bool(std::string_view domain)>;

// The host as its server is looked up: in small letters, without escapes.
[[nodiscard]] std::string hostOf(const Url& url);

// Whether the host is a numeric address, which has no domains above it.
[[nodiscard]] bool isAddress(std::string_view host);

// Reads the value of one "Set-Cookie" header of an answer from `url`; none when it holds no cookie.
[[nodiscard]] std::optional<Cookie> readSetCookie(std::string_view header, const Url& url,
                                                  Date now);

// Reads a date as servers write it, in any of its forms; none when it is none.
[[nodiscard]] std::optional<Date> readCookieDate(std::string_view text);

// Whether the cookie can be written into a header and read back: no control characters, and none of
// the separators where they would end the name or the value. It is also no larger than allowed.
[[nodiscard]] bool isStorable(const Cookie& cookie, const Limits& limits);

// A cookie that names no domain belongs to the host that set it, alone.
[[nodiscard]] Cookie completed(Cookie cookie, const Url& url);

// Whether an answer from `url` may set the cookie: its domain covers the host and is no public
// suffix, it is storable, it is secure only over https, and it keeps the promises that the prefixes
// "__Secure-" and "__Host-" of its name make.
[[nodiscard]] bool maySet(const Cookie& cookie, const Url& url,
                          const IsPublicSuffix& isPublicSuffix, const Limits& limits);

// No cookie outlives Limits::cookieLife.
void boundLife(Cookie& cookie, Date now, const Limits& limits);

[[nodiscard]] bool hasExpired(const Cookie& cookie, Date now);

// Whether a request for `url` carries the cookie.
[[nodiscard]] bool cookieMatches(const Cookie& cookie, const Url& url, Date now);

// Drops what must not be written into one "Cookie" header: what could be read as a second header,
// and what would make it larger than servers read.
void boundHeader(std::vector<Cookie>& cookies);

// Whether `cookie` takes the place of `stored`.
[[nodiscard]] bool isSameCookie(const Cookie& cookie, const Cookie& stored);

// Whether `stored` must neither be replaced nor shadowed by `cookie`: what came over https is safe
// from answers that came without.
[[nodiscard]] bool mustStay(const Cookie& stored, const Cookie& cookie, const Url& url);

// The cookies in the "Set-Cookie" headers of an answer from `url` that it may set, bounded in
// number and life. An expired one stands for a removal.
[[nodiscard]] std::vector<Cookie> cookiesSetBy(const std::vector<HttpHeader>& headers,
                                               const Url& url, Date now,
                                               const IsPublicSuffix& isPublicSuffix,
                                               const Limits& limits);

}  // namespace tavo
