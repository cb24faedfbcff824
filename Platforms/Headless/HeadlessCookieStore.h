#pragma once

#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

#include <tavo/Limits.h>

#include "Services/CookieStore.h"
#include "Services/RunLoop.h"

namespace tavo::headless {

// Cookies in memory. Without a list of public suffixes: every domain of one word is one.
class HeadlessCookieStore : public CookieStore {
 public:
  explicit HeadlessCookieStore(std::shared_ptr<RunLoop> runLoop, const Limits& limits = {})
      : runLoop_{std::move(runLoop)}, limits_{limits} {}

  [[nodiscard]] std::vector<Cookie> cookiesFor(const Url& url) const override;
  void store(const Cookie& cookie, const Url& url) override;
  void storeFromHeaders(const std::vector<HttpHeader>& headers, const Url& url) override;
  [[nodiscard]] bool isPublicSuffix(std::string_view domain) const override {
    return domain.find('.') == std::string_view::npos;
  }

 private:
  void put(const Cookie& cookie, const Url& url);  // the lock is held

  std::shared_ptr<RunLoop> runLoop_;
  Limits limits_;
  mutable std::mutex mutex_;
  std::vector<Cookie> cookies_;  // oldest first
};

}  // namespace tavo::headless
