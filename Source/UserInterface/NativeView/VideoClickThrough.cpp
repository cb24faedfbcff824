#include "UserInterface/NativeView/VideoClickThrough.h"

#include "ClickToAction/AppStore.h"
#include "ErrorHandler/ExtendNSLog.h"
#include "Runtime/Runtime.h"
#include "Services/Application.h"
#include "Utilities/XUserAgent.h"

namespace tavo {

namespace {

constexpr Seconds storeSheetDelay{0.5};

}  // namespace

void VideoClickThrough::open(const Url& url, const XAdSlotConfiguration* slot,
                             std::weak_ptr<VideoClickPresenter> presenter) {
  if (url.empty()) return;
  ++click_;
  presenter_ = std::move(presenter);
  const bool stays = slot != nullptr && slot->shouldOpenClickThroughURLInAppBrowser;
  if (stays && !presenter_.expired()) {
    resolve(url);
  } else {
    leaveApplication(url);
  }
}

void VideoClickThrough::leaveApplication(const Url& url) {
  auto& application = *Runtime::current().platform().application;
  if (!application.canOpenUrl(url)) return;
  const auto held = shared_from_this();
  events_.willLeaveApplication();
  application.openUrl(url);
}

void VideoClickThrough::resolve(const Url& url) {
  auto& runtime = Runtime::current();
  HttpRequest request = XUserAgent::sharedProvider().getUserAgentForUrl(url);
  request.idleTimeout = request.deadline = runtime.limits().clickThroughTimeout;
  request.maximumBodyBytes = 1;
  runtime.platform().http->send(
      std::move(request), [weak = weak_from_this(), url, click = click_](const HttpResult& result) {
        const auto self = weak.lock();
        if (self && self->click_ == click) self->resolved(url, result);
      });
}

void VideoClickThrough::resolved(const Url& url, const HttpResult& result) {
  if (result.response) platformLog(result.response->url.text());
  const auto application = storeApplication(result);
  if (!application) return presentBrowser(url);
  store_ = Runtime::current().platform().runLoop->after(storeSheetDelay, [this, id = *application] {
    if (const auto presenter = presenter_.lock()) presenter->presentStoreProduct(id);
  });
}

void VideoClickThrough::presentBrowser(const Url& url) {
  const auto presenter = presenter_.lock();
  if (!presenter || !Runtime::current().platform().application->canOpenUrl(url)) return;
  const auto held = shared_from_this();
  browserOpen_ = presenter->presentBrowser(url);
  if (browserOpen_) events_.willOpenInAppBrowser();
}

void VideoClickThrough::dismissBrowser() {
  if (const auto presenter = presenter_.lock()) presenter->dismissBrowser();
}

}  // namespace tavo
