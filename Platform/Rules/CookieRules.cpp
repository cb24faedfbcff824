#include "Rules/CookieRules.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <string>

#include "Values/Text.h"

namespace tavo {

namespace {

using std::chrono::seconds;

bool isHttps(const Url& url) { return equalsIgnoringCase(url.scheme(), "https"); }

bool endsWithDomain(std::string_view host, std::string_view domain) {
  if (equalsIgnoringCase(host, domain)) return true;
  if (isAddress(host) || host.size() <= domain.size()) return false;
  const auto rest = host.size() - domain.size();
  return host[rest - 1] == '.' && equalsIgnoringCase(host.substr(rest), domain);
}

std::string_view withoutDot(std::string_view domain) {
  return domain.substr(domain.starts_with('.') ? 1 : 0);
}

// A host with a leading dot is none, and would read as all the hosts below it.
bool domainCovers(std::string_view domain, std::string_view host) {
  if (host.empty() || host.starts_with('.')) return false;
  if (!domain.starts_with('.')) return equalsIgnoringCase(domain, host);
  return endsWithDomain(host, domain.substr(1));
}

bool pathCovers(std::string_view cookiePath, std::string_view path) {
  if (path.empty()) path = "/";
  if (!path.starts_with(cookiePath)) return false;
  return path.size() == cookiePath.size() || cookiePath.ends_with('/') ||
         path[cookiePath.size()] == '/';
}

std::string defaultPath(const Url& url) {
  const auto slash = url.path().rfind('/');
  if (!url.path().starts_with('/') || slash == 0) return "/";
  return std::string{url.path().substr(0, slash)};
}

bool isClean(std::string_view text, std::string_view separators) {
  return std::none_of(text.begin(), text.end(), [&](char c) {
    return isControl(c) || separators.find(c) != std::string_view::npos;
  });
}

bool keepsPromiseOfName(const Cookie& cookie) {
  const auto promises = [&](std::string_view prefix) {
    return equalsIgnoringCase(std::string_view{cookie.name}.substr(0, prefix.size()), prefix);
  };
  if (promises("__Secure-")) return cookie.secure;
  if (!promises("__Host-")) return true;
  return cookie.secure && cookie.path == "/" && !cookie.domain.starts_with('.');
}

// Takes what stands before the next `mark` off the front of `text`.
std::string_view takeUpTo(std::string_view& text, char mark) {
  const auto end = std::min(text.find(mark), text.size());
  const auto piece = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return piece;
}

// The clock counts in nanoseconds and so reaches some centuries only; times beyond stand for its
// ends.
Date dateAt(seconds sinceEpoch) {
  constexpr auto first = duration_cast<seconds>(Date::min().time_since_epoch());
  constexpr auto last = duration_cast<seconds>(Date::max().time_since_epoch());
  return Date{std::clamp(sinceEpoch, first, last)};
}

Date laterBy(Date now, std::int64_t count) {
  if (count <= 0) return Date::min();
  const auto start = duration_cast<seconds>(now.time_since_epoch()).count();
  const auto room = std::numeric_limits<std::int64_t>::max() - std::max<std::int64_t>(start, 0);
  return dateAt(seconds{start + std::min(count, room)});
}

std::optional<std::int64_t> maxAge(std::string_view text) {
  const bool negative = text.starts_with('-');
  const auto digits = text.substr(negative ? 1 : 0);
  if (digits.empty() || digits.find_first_not_of("0123456789") != std::string_view::npos) {
    return std::nullopt;
  }
  std::int64_t value = std::numeric_limits<std::int64_t>::max();  // what more digits stand for
  std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return negative ? -value : value;
}

// What the attributes of one header say, the last of each kind.
struct Attributes {
  std::string_view domain;
  std::string_view path;
  std::optional<std::int64_t> maxAge;
  std::optional<Date> expires;
  bool secure = false;
  bool httpOnly = false;
};

void readAttribute(Attributes& attributes, std::string_view text) {
  const auto name = trimmed(takeUpTo(text, '='));
  const auto value = trimmed(text);
  if (equalsIgnoringCase(name, "Domain")) {
    attributes.domain = withoutDot(value);
  } else if (equalsIgnoringCase(name, "Path")) {
    attributes.path = value;
  } else if (equalsIgnoringCase(name, "Max-Age")) {
    if (const auto age = maxAge(value)) attributes.maxAge = age;
  } else if (equalsIgnoringCase(name, "Expires")) {
    if (const auto date = readCookieDate(value)) attributes.expires = date;
  } else if (equalsIgnoringCase(name, "Secure")) {
    attributes.secure = true;
  } else if (equalsIgnoringCase(name, "HttpOnly")) {
    attributes.httpOnly = true;
  }
}

// The parts of a date, found in whatever order and between whatever separators they come.
struct DateParts {
  std::optional<int> day;
  std::optional<int> month;
  std::optional<int> year;
  std::optional<seconds> time;
};

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// The number at the front of `text`, taken off it, when it has as many digits as allowed.
std::optional<int> takeNumber(std::string_view& text, std::size_t least, std::size_t most) {
  std::size_t count = 0;
  int number = 0;
  for (; count < text.size() && isDigit(text[count]); ++count) {
    if (count == most) return std::nullopt;
    number = number * 10 + (text[count] - '0');
  }
  if (count < least) return std::nullopt;
  text.remove_prefix(count);
  return number;
}

std::optional<seconds> readTime(std::string_view text) {
  std::array<int, 3> parts{};
  for (std::size_t part = 0; part < parts.size(); ++part) {
    if (part > 0 && !text.starts_with(':')) return std::nullopt;
    if (part > 0) text.remove_prefix(1);
    const auto number = takeNumber(text, 1, 2);
    if (!number) return std::nullopt;
    parts[part] = *number;
  }
  if (parts[0] > 23 || parts[1] > 59 || parts[2] > 59) return std::nullopt;
  return seconds{parts[0] * 3600 + parts[1] * 60 + parts[2]};
}

std::optional<int> readMonth(std::string_view text) {
  constexpr std::string_view months = "janfebmaraprmayjunjulaugsepoctnovdec";
  if (text.size() < 3) return std::nullopt;
  const auto at = months.find(lowerCased(text.substr(0, 3)));
  if (at == std::string_view::npos || at % 3 != 0) return std::nullopt;
  return static_cast<int>(at / 3 + 1);
}

// Two digits stand for the years 1970 to 2069.
std::optional<int> readYear(std::string_view text) {
  const auto number = takeNumber(text, 2, 4);
  if (!number || *number >= 100) return number;
  return *number + (*number >= 70 ? 1900 : 2000);
}

void readDatePart(DateParts& parts, std::string_view token) {
  std::string_view rest = token;
  if (const auto time = parts.time ? std::nullopt : readTime(token)) {
    parts.time = time;
  } else if (const auto day = parts.day ? std::nullopt : takeNumber(rest, 1, 2)) {
    parts.day = day;
  } else if (const auto month = parts.month ? std::nullopt : readMonth(token)) {
    parts.month = month;
  } else if (const auto year = parts.year ? std::nullopt : readYear(token)) {
    parts.year = year;
  }
}

bool separatesDateParts(char c) {
  return c != ':' && !isDigit(c) && !(c >= 'a' && c <= 'z') && !(c >= 'A' && c <= 'Z');
}

}  // namespace

std::string hostOf(const Url& url) { return lowerCased(percentDecoded(url.host())); }

bool isAddress(std::string_view host) {
  return host.find(':') != std::string_view::npos ||
         host.find_first_not_of("0123456789.") == std::string_view::npos;
}

std::optional<Date> readCookieDate(std::string_view text) {
  DateParts parts;
  while (!text.empty()) {
    const auto* const end = std::find_if(text.begin(), text.end(), separatesDateParts);
    const auto length = static_cast<std::size_t>(end - text.begin());
    if (length > 0) readDatePart(parts, text.substr(0, length));
    text.remove_prefix(std::min(length + 1, text.size()));
  }
  if (!parts.day || !parts.month || !parts.year || !parts.time) return std::nullopt;
  using namespace std::chrono;
  const year_month_day date{year{*parts.year}, month{static_cast<unsigned>(*parts.month)},
                            day{static_cast<unsigned>(*parts.day)}};
  if (!date.ok() || *parts.year < 1601) return std::nullopt;
  const auto days = sys_days{date}.time_since_epoch();
  return dateAt(duration_cast<seconds>(days) + *parts.time);
}

std::optional<Cookie> readSetCookie(std::string_view header, const Url& url, Date now) {
  const auto breaks = [](char c) { return isControl(c) && c != '\t'; };
  if (std::any_of(header.begin(), header.end(), breaks)) return std::nullopt;
  std::string_view value = takeUpTo(header, ';');
  if (value.find('=') == std::string_view::npos) return std::nullopt;
  Cookie cookie;
  cookie.name = trimmed(takeUpTo(value, '='));
  cookie.value = trimmed(value);
  if (cookie.name.empty()) return std::nullopt;
  Attributes attributes;
  while (!header.empty()) readAttribute(attributes, takeUpTo(header, ';'));
  const std::string host = hostOf(url);
  const bool forHostAlone =
      attributes.domain.empty() || (isAddress(host) && equalsIgnoringCase(attributes.domain, host));
  cookie.domain = forHostAlone ? host : "." + lowerCased(attributes.domain);
  cookie.path = attributes.path.starts_with('/') ? attributes.path : defaultPath(url);
  cookie.secure = attributes.secure;
  cookie.httpOnly = attributes.httpOnly;
  cookie.expires = attributes.maxAge ? laterBy(now, *attributes.maxAge) : attributes.expires;
  return cookie;
}

bool isStorable(const Cookie& cookie, const Limits& limits) {
  return cookie.name.size() + cookie.value.size() <= limits.cookieBytes && !cookie.name.empty() &&
         isClean(cookie.name, ";=") && isClean(cookie.value, ";") && isClean(cookie.path, ";") &&
         isClean(cookie.domain, ";");
}

Cookie completed(Cookie cookie, const Url& url) {
  if (cookie.domain.empty()) cookie.domain = hostOf(url);
  return cookie;
}

bool maySet(const Cookie& cookie, const Url& url, const IsPublicSuffix& isPublicSuffix,
            const Limits& limits) {
  if (!url.isHttp() || !isStorable(cookie, limits) || !keepsPromiseOfName(cookie)) return false;
  if (cookie.secure && !isHttps(url)) return false;
  if (!domainCovers(cookie.domain, hostOf(url))) return false;
  return !cookie.domain.starts_with('.') || !isPublicSuffix(cookie.domain.substr(1));
}

void boundLife(Cookie& cookie, Date now, const Limits& limits) {
  if (!cookie.expires) return;
  const auto life = static_cast<std::int64_t>(limits.cookieLife.count());
  cookie.expires = std::min(*cookie.expires, laterBy(now, life));
}

bool hasExpired(const Cookie& cookie, Date now) { return cookie.expires && *cookie.expires <= now; }

bool cookieMatches(const Cookie& cookie, const Url& url, Date now) {
  return url.isHttp() && !hasExpired(cookie, now) && domainCovers(cookie.domain, hostOf(url)) &&
         pathCovers(cookie.path, url.path()) && (!cookie.secure || isHttps(url));
}

void boundHeader(std::vector<Cookie>& cookies) {
  std::size_t room = std::size_t{60} * 1024;
  std::erase_if(cookies, [&](const Cookie& cookie) {
    const std::size_t size = cookie.name.size() + cookie.value.size() + 3;
    if (size > room || !isClean(cookie.name, {}) || !isClean(cookie.value, {})) return true;
    room -= size;
    return false;
  });
}

bool isSameCookie(const Cookie& cookie, const Cookie& stored) {
  return cookie.name == stored.name && cookie.path == stored.path &&
         equalsIgnoringCase(cookie.domain, stored.domain);
}

bool mustStay(const Cookie& stored, const Cookie& cookie, const Url& url) {
  return stored.secure && !isHttps(url) && stored.name == cookie.name &&
         (domainCovers(stored.domain, withoutDot(cookie.domain)) ||
          domainCovers(cookie.domain, withoutDot(stored.domain))) &&
         pathCovers(stored.path, cookie.path);
}

std::vector<Cookie> cookiesSetBy(const std::vector<HttpHeader>& headers, const Url& url, Date now,
                                 const IsPublicSuffix& isPublicSuffix, const Limits& limits) {
  std::vector<Cookie> cookies;
  for (const auto& header : headers) {
    if (!equalsIgnoringCase(header.name, "Set-Cookie")) continue;
    if (cookies.size() == limits.cookiesPerAnswer) break;
    auto cookie = readSetCookie(header.value, url, now);
    if (!cookie || !maySet(*cookie, url, isPublicSuffix, limits)) continue;
    boundLife(*cookie, now, limits);
    cookies.push_back(std::move(*cookie));
  }
  return cookies;
}

}  // namespace tavo
