#include "ClickToAction/WebClickThrough.h"

#include <tavo/Runtime.h>

#include "ClickToAction/AppStore.h"
#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "Services/Application.h"
#include "Services/Composers.h"
#include "Services/Device.h"

namespace tavo {

namespace {

constexpr Seconds storeSheetDelay{0.5};

// `url`, or else the same with a web scheme in front, whichever the system can open; empty: none.
Url openableForm(const Url& url, const Application& application) {
  for (const char* const prefix : {"", "http://", "https://"}) {
    auto form = Url::fromText(prefix + url.text());
    if (!form.empty() && application.canOpenUrl(form)) return form;
  }
  return {};
}

}  // namespace

std::shared_ptr<WebClickThrough> WebClickThrough::create(ClickActionsView& view) {
  return std::shared_ptr<WebClickThrough>{new WebClickThrough{view}};
}

WebClickThrough::~WebClickThrough() {
  if (resolving_) resolving_->cancel();
}

void WebClickThrough::makeBrowser() {
  browserEvents_ = std::make_shared<XInAppBrowserDelegate>(
      XInAppBrowserDelegate{.XInAppBrowserClose =
                                [weak = weak_from_this()](XInAppBrowser&) {
                                  if (const auto self = weak.lock()) self->browserClosed();
                                },
                            .XInAppBrowserWillLeaveApplication =
                                [weak = weak_from_this()](XInAppBrowser&) {
                                  const auto self = weak.lock();
                                  const auto held = self ? self->view_.hold() : nullptr;
                                  if (held) self->view_.willLeaveApplication();
                                },
                            .XInAppBrowserDidFailLoadWithError =
                                [](XInAppBrowser&, const Error& error) {
                                  platformLog("In-app browser: " + error.description);
                                }});
  appBrowser_ = XInAppBrowser::create(browserEvents_);
}

void WebClickThrough::openUrlInBrowser(const Url& url) {
  const OperationLog log{"-[XAdView openUrlInBrowser:]"};
  const auto self = shared_from_this();
  const auto held = view_.hold();
  const auto slot = view_.slotConfiguration();
  if (!held || !slot) return;
  // Quirk: the ad counts as expanded even when the page opens outside.
  view_.setAdExpanded(true);
  if (!slot->shouldOpenClickThroughURLInAppBrowser) return openOutside(url);
  // A browser that is on the screen keeps its place; its presenter has no room for a second one.
  if (!appBrowserOpen()) makeBrowser();
  resolve(url);
}

void WebClickThrough::openOutside(const Url& url) {
  auto& application = *Runtime::current().platform().application;
  if (!application.canOpenUrl(url) || !application.openUrl(url)) return;
  view_.willLeaveApplication();
}

void WebClickThrough::resolve(const Url& url) {
  if (resolving_) resolving_->cancel();
  auto& runtime = Runtime::current();
  HttpRequest request{.url = url};
  request.idleTimeout = runtime.limits().clickThroughTimeout;
  request.deadline = runtime.limits().clickThroughTimeout;
  request.maximumBodyBytes = 1;  // the last answer's headers say all; the browser fetches the page
  resolving_ = runtime.platform().http->send(
      std::move(request),
      [weak = weak_from_this(), url, click = ++click_](const HttpResult& result) {
        const auto self = weak.lock();
        if (self && self->click_ == click) self->resolved(result, url);
      });
}

void WebClickThrough::resolved(const HttpResult& result, const Url& url) {
  resolving_.reset();
  const auto held = view_.hold();
  if (!held) return;
  if (const auto identifier = storeApplication(result)) return showStoreSheet(*identifier);
  presentInAppBrowserWithViewController(browserPresenter(), url);
}

void WebClickThrough::showStoreSheet(std::int64_t identifier) {
  const auto& platform = Runtime::current().platform();
  if (!platform.composers) return;
  const auto sheet = platform.composers->storeSheet(
      {.identifier = identifier, .page = productPage(identifier)}, [weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->productViewControllerDidFinish();
      });
  storeSheet_ = sheet;
  storeDelay_ = platform.runLoop->after(storeSheetDelay, [this, sheet] {
    const auto held = view_.hold();
    auto* controller = held ? presenter() : nullptr;
    if (controller != nullptr) controller->presentViewController(sheet, Animated::yes);
  });
}

void WebClickThrough::productViewControllerDidFinish() {
  const OperationLog log{"-[XAdView productViewControllerDidFinish:]"};
  dismissSheet(storeSheet_, Animated::yes);
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
  const auto& platform = Runtime::current().platform();
  const Url page = openableForm(url, *platform.application);
  platformLog("Can Open URL: " + (page.empty() ? url : page).text() + ", " +
              (page.empty() ? "0" : "1"));
  if (page.empty() || controller == nullptr) return;
  const auto browser = appBrowser_;
  const auto held = controller->shared_from_this();
  view_.willOpenInInAppBrowser();
  // Quirk: this one version lays the browser out below a status bar that it cannot see.
  if (platform.device->systemVersion() == "7.0") {
    platform.application->setStatusBarHidden(true, StatusBarAnimation::fade);
  }
  held->presentViewController(browser, Animated::yes);
  browser->setURL(page);
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
  view_.setAdExpanded(false);
  view_.appBrowserClosed();
}

}  // namespace tavo
