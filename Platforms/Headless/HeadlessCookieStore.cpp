#include "Headless/HeadlessCookieStore.h"

#include <algorithm>

#include "Rules/CookieRules.h"
#include "Values/Text.h"

namespace tavo::headless {

namespace {
bool isOneWord(std::string_view domain) { return !contains(domain, "."); }
}  // namespace

std::vector<Cookie> HeadlessCookieStore::cookiesFor(const Url& url) const {
  const std::scoped_lock lock{mutex_};
  std::vector<Cookie> matching;
  for (const auto& cookie : cookies_) {
    if (cookieMatches(cookie, url, runLoop_->today())) matching.push_back(cookie);
  }
  std::stable_sort(matching.begin(), matching.end(), [](const Cookie& left, const Cookie& right) {
    return left.path.size() > right.path.size();
  });
  return matching;
}

void HeadlessCookieStore::store(const Cookie& cookie, const Url& url) {
  Cookie bounded = completed(cookie, url);
  if (!maySet(bounded, url, isOneWord, limits_)) return;
  boundLife(bounded, runLoop_->today(), limits_);
  const std::scoped_lock lock{mutex_};
  put(bounded, url);
}

void HeadlessCookieStore::storeFromHeaders(const std::vector<HttpHeader>& headers, const Url& url) {
  const auto cookies = cookiesSetBy(headers, url, runLoop_->today(), isOneWord, limits_);
  const std::scoped_lock lock{mutex_};
  for (const auto& cookie : cookies) put(cookie, url);
}

void HeadlessCookieStore::put(const Cookie& cookie, const Url& url) {
  const auto protects = [&](const Cookie& stored) { return mustStay(stored, cookie, url); };
  if (std::any_of(cookies_.begin(), cookies_.end(), protects)) return;
  std::erase_if(cookies_, [&](const Cookie& stored) { return isSameCookie(cookie, stored); });
  if (!hasExpired(cookie, runLoop_->today())) cookies_.push_back(cookie);
}

}  // namespace tavo::headless
