#include "ClickToAction/WebClickThrough.h"

#include <utility>

#include "ClickThrough/AppStore.h"
#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "Runtime/Relay.h"
#include "Services/Application.h"
#include "Services/Device.h"

namespace tavo {

namespace {

// `url`, or else the same with a web scheme in front, whichever can be opened: by the browser of
// this library, which needs no other program for pages, or by the system. Empty: none.
Url openableForm(const Url& url, const Application& application) {
  for (const char* const prefix : {"", "http://", "https://"}) {
    auto form = Url::fromText(prefix + url.text());
    if (form.isHttp() || (!form.empty() && application.canOpenUrl(form))) return form;
  }
  return {};
}

}  // namespace

WebClickThrough::WebClickThrough(std::shared_ptr<Environment> environment, ClickActionsView& view)
    : environment_{std::move(environment)}, view_{view}, resolution_{environment_} {}

std::shared_ptr<WebClickThrough> WebClickThrough::create(std::shared_ptr<Environment> environment,
                                                         ClickActionsView& view) {
  std::shared_ptr<WebClickThrough> click{new WebClickThrough{std::move(environment), view}};
  const Relay relay{*click};
  click->store_ = StorePresenter::create(
      click->environment_,
      {.presenter = relay.call(&WebClickThrough::storePresenter),
       .closed = relay.call(&WebClickThrough::productViewControllerDidFinish)});
  return click;
}

void WebClickThrough::makeBrowser() {
  const Relay relay{*this};
  browserEvents_ = std::make_shared<XInAppBrowserDelegate>(XInAppBrowserDelegate{
      .XInAppBrowserClose = relay.call(&WebClickThrough::browserClosed),
      .XInAppBrowserWillLeaveApplication = relay.call(&WebClickThrough::willLeaveApplication),
      .XInAppBrowserDidFailLoadWithError = [](XInAppBrowser&, const Error& error) {
        platformLog("In-app browser: " + error.description, LogLevel::warning);
      }});
  appBrowser_ = XInAppBrowser::create(environment_, browserEvents_);
}

void WebClickThrough::willLeaveApplication() {
  if (const auto held = view_.hold()) view_.willLeaveApplication();
}

void WebClickThrough::openUrlInBrowser(const Url& url) {
  const OperationLog log{"-[XAdView openUrlInBrowser:]"};
  const auto self = shared_from_this();
  const auto held = view_.hold();
  const auto slot = view_.slotConfiguration();
  if (!held || !slot) return;
  if (!slot->shouldOpenClickThroughURLInAppBrowser) return openOutside(url);
  // A browser that is on the screen keeps its place; its presenter has no room for a second one.
  if (!appBrowserOpen()) makeBrowser();
  resolution_.follow({.url = url}, [this, url](const HttpResult& result) {
    const auto turn = shared_from_this();
    resolved(result, url);
  });
}

void WebClickThrough::openOutside(const Url& url) {
  auto& application = *environment_->platform().application;
  if (!application.canOpenUrl(url) || !application.openUrl(url)) return;
  view_.willLeaveApplication();
}

void WebClickThrough::resolved(const HttpResult& result, const Url& url) {
  const auto held = view_.hold();
  if (!held) return;
  const auto application = storeApplication(result, environment_->shared<AppStoreConfiguration>(),
                                            environment_->platform().device->contractVersion());
  if (application) return store_->show(*application);
  presentInAppBrowserWithViewController(browserPresenter(), url);
}

ViewController* WebClickThrough::storePresenter() {
  const auto held = view_.hold();
  return held ? presenter() : nullptr;
}

void WebClickThrough::productViewControllerDidFinish() {
  const OperationLog log{"-[XAdView productViewControllerDidFinish:]"};
}

ViewController* WebClickThrough::presenter() {
  if (view_.state() == MRAIDState::expanded) return view_.expandedViewController();
  switch (view_.mobileAdSubTypes()) {
    case MobileAdSubTypes::image:
    case MobileAdSubTypes::richMediaInterstitial:
    case MobileAdSubTypes::redirectImageBanner:
    case MobileAdSubTypes::redirectInterstitial:
      return view_.currentViewController();
    default:
      return view_.windowRootViewController();
  }
}

ViewController* WebClickThrough::browserPresenter() {
  const auto state = view_.state();
  const bool ownPresenter = state != MRAIDState::resized && state != MRAIDState::expanded &&
                            view_.placementType() == PlacementType::interstitial;
  return ownPresenter ? view_.currentViewController() : presenter();
}

void WebClickThrough::presentInAppBrowserWithViewController(ViewController* controller,
                                                            const Url& url) {
  const OperationLog log{"-[XAdView presentInAppBrowserWithViewController:withURL:]"};
  if (!appBrowser_) return;
  const auto& platform = environment_->platform();
  const Url page = openableForm(url, *platform.application);
  platformLog("Can Open URL: " + (page.empty() ? url : page).text() + ", " +
              (page.empty() ? "0" : "1"));
  if (page.empty() || controller == nullptr) return;
  const auto browser = appBrowser_;
  const auto held = controller->shared_from_this();
  view_.willOpenInInAppBrowser();
  // Quirk: this one version lays the browser out below a status bar that it cannot see.
  if (platform.device->contractVersion() == "7.0") {
    platform.application->setStatusBarHidden(true, StatusBarAnimation::fade);
  }
  sheets_.present(*held, browser);
  browser->setURL(page);
}

void WebClickThrough::end() {
  resolution_.forget();
  store_->end();
  sheets_.dismissAll();
}

bool WebClickThrough::appBrowserOpen() const {
  return appBrowser_ && appBrowser_->isViewLoaded() && appBrowser_->view()->superview() != nullptr;
}

void WebClickThrough::browserClosed() {
  const OperationLog log{"-[XAdView XInAppBrowserClose:]"};
  const auto held = view_.hold();
  const auto browser = std::move(appBrowser_);
  appBrowser_ = nullptr;
  if (!held) return;
  view_.appBrowserClosed();
}

}  // namespace tavo
