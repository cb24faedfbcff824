#include "UserInterface/NativeView/VideoClickThrough.h"

#include <tavo/Runtime.h>

#include "ClickToAction/AppStore.h"
#include "ClickToAction/ClickActionsView.h"
#include "ErrorHandler/ExtendNSLog.h"
#include "Services/Application.h"
#include "Services/Composers.h"
#include "Services/Device.h"
#include "Utilities/XUserAgent.h"

namespace tavo {

namespace {
constexpr Seconds storeSheetDelay{0.5};
}  // namespace

void VideoClickThrough::open(const Url& url, const XAdSlotConfiguration* slot) {
  if (url.empty()) return;
  ++click_;
  if (slot != nullptr && slot->shouldOpenClickThroughURLInAppBrowser) {
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
  request.maximumBodyBytes = 1;  // where the page finally is matters; what it says is not read
  runtime.platform().http->send(
      std::move(request), [weak = weak_from_this(), url, click = click_](const HttpResult& result) {
        const auto self = weak.lock();
        if (self && self->click_ == click) self->resolved(url, result);
      });
}

void VideoClickThrough::resolved(const Url& url, const HttpResult& result) {
  if (result.response) platformLog(result.response->url.text());
  if (const auto application = storeApplication(result)) return showStoreSheet(*application);
  presentBrowser(url);
}

void VideoClickThrough::presentBrowser(const Url& url) {
  const auto& platform = Runtime::current().platform();
  ViewController* presenter = events_.presenter();
  if (presenter == nullptr || browser_ || !platform.application->canOpenUrl(url)) return;
  const auto held = shared_from_this();
  const auto browser = makeBrowser();
  presenter->presentViewController(browser, Animated::yes);
  if (browser->presentingViewController() == nullptr) return;  // something else is in front
  browser_ = browser;
  browser->setURL(url);
  // Quirk: this one version lays the browser out below a status bar that it cannot see.
  if (platform.device->systemVersion() == "7.0") {
    platform.application->setStatusBarHidden(true, StatusBarAnimation::fade);
  }
  events_.willOpenInAppBrowser();
}

std::shared_ptr<XInAppBrowser> VideoClickThrough::makeBrowser() {
  const auto relay = [weak = weak_from_this()](std::function<void()> Events::*event) {
    return [weak, event](XInAppBrowser&) {
      if (const auto self = weak.lock()) (self->events_.*event)();
    };
  };
  browserEvents_ = std::make_shared<XInAppBrowserDelegate>(XInAppBrowserDelegate{
      .XInAppBrowserClose = relay(&Events::browserClosed),
      .XInAppBrowserWillLeaveApplication = relay(&Events::willLeaveApplication),
      .XInAppBrowserDidFailLoadWithError = [](XInAppBrowser&, const Error& error) {
        platformLog("In-app browser: " + error.description);
      }});
  return XInAppBrowser::create(browserEvents_);
}

bool VideoClickThrough::closeBrowser() {
  const auto browser = std::exchange(browser_, nullptr);
  dismissSheet(browser, Animated::yes);
  return browser != nullptr;
}

void VideoClickThrough::showStoreSheet(std::int64_t application) {
  const auto& platform = Runtime::current().platform();
  const auto sheet = platform.composers->storeSheet(
      {.identifier = application, .page = productPage(application)}, [weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->storeSheetFinished();
      });
  storeSheet_ = sheet;
  storeDelay_ = platform.runLoop->after(storeSheetDelay, [this, sheet] {
    if (auto* presenter = events_.presenter()) {
      presenter->presentViewController(sheet, Animated::yes);
    }
  });
}

void VideoClickThrough::storeSheetFinished() {
  dismissSheet(storeSheet_, Animated::yes);
  events_.storeFinished();
}

}  // namespace tavo
