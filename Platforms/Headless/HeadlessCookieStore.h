#pragma once

#include <mutex>
#include <vector>

#include "Services/CookieStore.h"

namespace tavo::headless {

// Cookies in memory. Domains match by suffix, paths by prefix; expiry counts only when it is in the
// past at the moment of storing.
class HeadlessCookieStore : public CookieStore {
 public:
  [[nodiscard]] std::vector<Cookie> cookiesFor(const Url& url) const override;
  void store(const Cookie& cookie, const Url& url) override;
  void storeFromHeaders(const std::vector<HttpHeader>& headers, const Url& url) override;

 private:
  mutable std::mutex mutex_;
  std::vector<Cookie> cookies_;
};

}  // namespace tavo::headless
