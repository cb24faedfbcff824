#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "Runtime/Environment.h"
#include "Services/HttpClient.h"

namespace tavo {

// Knows the web engine's user-agent text and makes the requests that carry it.
class XUserAgent {
 public:
  // The one provider of the environment. Any thread.
  [[nodiscard]] static XUserAgent& sharedProvider(Environment& environment);

  explicit XUserAgent(const Environment& environment);
  XUserAgent(const XUserAgent&) = delete;
  XUserAgent& operator=(const XUserAgent&) = delete;

  // Calls `then` once the text is known, inside this call when it is known already: nobody waits
  // for the engine. Calls keep their order. Main thread only.
  void whenKnown(std::function<void()> then);

  // The engine's text, found out on the first call and kept. Any thread; the first call on another
  // thread than the main one waits until the main thread has found it out, so the main thread must
  // not be waiting for the caller.
  [[nodiscard]] std::string userAgent();

  // The request for an ad: the user agent, cookies handled, no local cache, and the time-outs and
  // the size of Limits.
  [[nodiscard]] HttpRequest getUserAgentForUrl(const Url& url);
  // The same with a time-out of its own, for what somebody waits for.
  [[nodiscard]] HttpRequest requestWithin(const Url& url, Seconds timeout);
  // As getUserAgentForUrl; both names are in use.
  [[nodiscard]] HttpRequest buildConfiguredURLRequestWithURL(const Url& url);

  // A plain request for the URL.
  [[nodiscard]] static HttpRequest buildURL(const Url& url);

  // Asks the web engine for its text. Main thread only.
  void setUserAgentFromNavigator();

 private:
  [[nodiscard]] std::string known() const;

  const Limits& limits_;  // the environment's, which owns the provider
  const std::shared_ptr<RunLoop> runLoop_;
  const std::shared_ptr<WebViewFactory> webViews_;
  mutable std::mutex mutex_;
  std::string userAgent_;  // empty until asked for
  const std::shared_ptr<XUserAgent*> self_ = std::make_shared<XUserAgent*>(this);
};

}  // namespace tavo
