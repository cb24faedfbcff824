#include "UserInterface/NativeView/VideoClickThrough.h"

#include "ClickThrough/AppStore.h"
#include "ClickThrough/OpenSheets.h"
#include "ErrorHandler/ExtendNSLog.h"
#include "Runtime/Relay.h"
#include "Services/Application.h"
#include "Services/Device.h"
#include "Utilities/XUserAgent.h"

namespace tavo {

void VideoClickThrough::open(const Url& url, const XAdSlotConfiguration* slot) {
  if (url.empty()) return;
  resolution_.forget();
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
  resolution_.follow(environment_->shared<XUserAgent>().getUserAgentForUrl(url),
                     [this, url](const HttpResult& result) { resolved(url, result); });
}

void VideoClickThrough::resolved(const Url& url, const HttpResult& result) {
  const auto held = shared_from_this();
  if (result.response) platformLog(result.response->url.text());
  const auto application = storeApplication(result, environment_->shared<AppStoreConfiguration>(),
                                            environment_->platform().device->contractVersion());
  if (application) return storeSheet().show(*application);
  presentBrowser(url);
}

void VideoClickThrough::presentBrowser(const Url& url) {
  const auto& platform = environment_->platform();
  ViewController* presenter = events_.presenter();
  if (presenter == nullptr || browser_ || !canShow(url)) return;
  const auto held = shared_from_this();
  const auto browser = makeBrowser();
  presenter->presentViewController(browser, Animated::yes);
  if (browser->presentingViewController() == nullptr) return;  // something else is in front
  browser_ = browser;
  browser->setURL(url);
  // Quirk: this one version lays the browser out below a status bar that it cannot see.
  if (platform.device->contractVersion() == "7.0") {
    platform.application->setStatusBarHidden(true, StatusBarAnimation::fade);
  }
  events_.willOpenInAppBrowser();
}

// A page of the web needs no other application.
bool VideoClickThrough::canShow(const Url& url) const {
  return url.isHttp() || environment_->platform().application->canOpenUrl(url);
}

std::shared_ptr<XInAppBrowser> VideoClickThrough::makeBrowser() {
  const Relay relay{*this};
  browserEvents_ = std::make_shared<XInAppBrowserDelegate>(XInAppBrowserDelegate{
      .XInAppBrowserClose = relay.call(&VideoClickThrough::browserClosed),
      .XInAppBrowserWillLeaveApplication = relay.call(&VideoClickThrough::willLeaveApplication),
      .XInAppBrowserDidFailLoadWithError = [](XInAppBrowser&, const Error& error) {
        platformLog("In-app browser: " + error.description, LogLevel::warning);
      }});
  return XInAppBrowser::create(environment_, browserEvents_);
}

void VideoClickThrough::forget() {
  resolution_.forget();
  if (store_) store_->forget();
}

bool VideoClickThrough::closeBrowser() {
  forget();
  const auto browser = std::exchange(browser_, nullptr);
  if (browser) browser->delegate.set(nullptr);
  dismissSheet(browser, Animated::yes);
  return browser != nullptr;
}

StorePresenter& VideoClickThrough::storeSheet() {
  if (!store_) {
    const Relay relay{*this};
    store_ = StorePresenter::create(environment_,
                                    {.presenter = events_.storePresenter,
                                     .closed = relay.call(&VideoClickThrough::storeSheetFinished)});
  }
  return *store_;
}

void VideoClickThrough::storeSheetFinished() { events_.storeFinished(); }

}  // namespace tavo
