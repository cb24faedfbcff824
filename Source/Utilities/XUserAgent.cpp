#include "Utilities/XUserAgent.h"

#include <future>

#include "ErrorHandler/OperationLog.h"
#include "Services/RunLoop.h"
#include "Services/WebViewFactory.h"

namespace tavo {

XUserAgent::XUserAgent(const Environment& environment)
    : limits_{environment.limits()},
      runLoop_{environment.platform().runLoop},
      webViews_{environment.platform().webViews} {}

XUserAgent& XUserAgent::sharedProvider(Environment& environment) {
  const OperationLog log{"+[XUserAgent sharedProvider]"};
  return environment.shared<XUserAgent>();
}

void XUserAgent::whenKnown(std::function<void()> then) {
  if (!known().empty()) return then();
  webViews_->findUserAgent([weak = std::weak_ptr{self_}, then = std::move(then)] {
    const auto self = weak.lock();
    if (!self) return;
    if ((*self)->known().empty()) (*self)->setUserAgentFromNavigator();
    then();
  });
}

std::string XUserAgent::userAgent() {
  const OperationLog log{"-[XUserAgent userAgent]"};
  if (auto text = known(); !text.empty()) return text;
  if (runLoop_->isMainThread()) {
    setUserAgentFromNavigator();
    return known();
  }
  const auto found = std::make_shared<std::promise<void>>();
  auto isFound = found->get_future();
  runLoop_->post([this, found] {
    if (known().empty()) setUserAgentFromNavigator();
    found->set_value();
  });
  isFound.wait();
  return known();
}

HttpRequest XUserAgent::getUserAgentForUrl(const Url& url) {
  const OperationLog log{"-[XUserAgent getUserAgentForUrl:]"};
  return buildConfiguredURLRequestWithURL(url);
}

HttpRequest XUserAgent::buildConfiguredURLRequestWithURL(const Url& url) {
  const OperationLog log{"-[XUserAgent buildConfiguredURLRequestWithURL:]"};
  HttpRequest request = buildURL(url);
  request.cookies = CookieHandling::attachStored;
  request.setHeader("User-Agent", userAgent());
  request.cachePolicy = CachePolicy::reloadIgnoringLocalCacheData;
  request.idleTimeout = limits_.requestIdleTimeout;
  request.deadline = limits_.requestDeadline;
  request.maximumBodyBytes = limits_.answerBytes;
  return request;
}

HttpRequest XUserAgent::requestWithin(const Url& url, Seconds timeout) {
  HttpRequest request = getUserAgentForUrl(url);
  request.idleTimeout = request.deadline = timeout;
  return request;
}

HttpRequest XUserAgent::buildURL(const Url& url) {
  const OperationLog log{"-[XUserAgent buildURL:]"};
  HttpRequest request;
  request.url = url;
  return request;
}

void XUserAgent::setUserAgentFromNavigator() {
  const OperationLog log{"-[XUserAgent setUserAgentFromNavigator]"};
  auto text = webViews_->userAgent();
  log.debug("\n\nUser-Agent: ", text);
  const std::scoped_lock lock{mutex_};
  userAgent_ = std::move(text);
}

std::string XUserAgent::known() const {
  const std::scoped_lock lock{mutex_};
  return userAgent_;
}

}  // namespace tavo
