#include "UserInterface/NativeView/VideoClickThrough.h"

#include "ClickToAction/AppStore.h"
#include "ClickToAction/ClickActionsView.h"
#include "ErrorHandler/ExtendNSLog.h"
#include "Runtime/Relay.h"
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
  auto& application = *environment_->platform().application;
  if (!application.canOpenUrl(url)) return;
  const auto held = shared_from_this();
  events_.willLeaveApplication();
  application.openUrl(url);
}

void VideoClickThrough::resolve(const Url& url) {
  HttpRequest request = environment_->shared<XUserAgent>().getUserAgentForUrl(url);
  request.idleTimeout = request.deadline = environment_->limits().clickThroughTimeout;
  request.maximumBodyBytes = 1;  // where the page finally is matters; what it says is not read
  environment_->platform().http->send(
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
  const auto& platform = environment_->platform();
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
  const Relay relay{*this};
  browserEvents_ = std::make_shared<XInAppBrowserDelegate>(XInAppBrowserDelegate{
      .XInAppBrowserClose = relay.call(&VideoClickThrough::browserClosed),
      .XInAppBrowserWillLeaveApplication = relay.call(&VideoClickThrough::willLeaveApplication),
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
  const auto& platform = environment_->platform();
  const auto sheet =
      platform.composers->storeSheet({.identifier = application, .page = productPage(application)},
                                     Relay{*this}.call(&VideoClickThrough::storeSheetFinished));
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
