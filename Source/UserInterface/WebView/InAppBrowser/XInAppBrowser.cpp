#include "UserInterface/WebView/InAppBrowser/XInAppBrowser.h"

#include <tavo/Runtime.h>
#include <tavo/XGlobalConfiguration.h>

#include "ClickToAction/AppStore.h"
#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "RequestEnrichment/ScreenAndVisibility.h"
#include "Scene/LayoutView.h"
#include "Services/Application.h"
#include "Services/Composers.h"
#include "Services/Device.h"
#include "Services/WebViewFactory.h"
#include "UserInterface/Pictures/Pictures.h"
#include "Values/Text.h"

namespace tavo {

namespace {

constexpr Seconds loadTimeout{10};  // without any progress
constexpr Seconds progressPeriod{0.1};
constexpr double progressHeight = 3;
constexpr Color progressColor{0.20F, 0.52F, 0.90F, 1};
constexpr float disabledAlpha = 0.35F;
constexpr Seconds storeSheetDelay{0.5};
constexpr std::size_t longestTitle = 500;  // bytes; more than anybody listens to

}  // namespace

std::shared_ptr<XInAppBrowser> XInAppBrowser::create(
    const std::shared_ptr<const XInAppBrowserDelegate>& delegate) {
  const OperationLog log{"-[XInAppBrowser initWithDelegate:]"};
  std::shared_ptr<XInAppBrowser> browser{new XInAppBrowser};
  browser->delegate.set(delegate);
  return browser;
}

XInAppBrowser::XInAppBrowser()
    : browserConfig{XGlobalConfiguration::sharedInstance().browserConfiguration} {
  if (!browserConfig) browserConfig = std::make_shared<XBrowserConfiguration>();
}

XInAppBrowser::~XInAppBrowser() {
  if (webView_) webView_->setClient({});
}

void XInAppBrowser::setURL(const Url& url) {
  const OperationLog log{"-[XInAppBrowser setURL:]"};
  url_ = url;
  load();
}

void XInAppBrowser::load() {
  const OperationLog log{"-[XInAppBrowser load]"};
  if (!isViewLoaded() || url_.empty()) return;
  webView_->loadUrlIgnoringCache(url_);
  followProgress();
}

bool XInAppBrowser::canShowToolBarButton(unsigned button) const {
  return isButtonShown(*browserConfig, static_cast<BrowserButton>(button));
}

std::vector<XBrowserConfiguration::ToolbarDetail> XInAppBrowser::hasPublisherSetImage(
    unsigned button) const {
  return hostImages(*browserConfig, static_cast<BrowserButton>(button));
}

std::shared_ptr<View> XInAppBrowser::loadView() {
  // The masks below need a size to start from; they alone move a toolbar at the top.
  auto view = std::make_shared<LayoutView>(XDeviceScreenBounds());
  view->onLayout = [weak = weak_from_this()] {
    const auto self = std::static_pointer_cast<XInAppBrowser>(weak.lock());
    if (self) self->didRotateFromInterfaceOrientation(InterfaceOrientation::unknown);
  };
  return view;
}

void XInAppBrowser::viewDidLoad() {
  const OperationLog log{"-[XInAppBrowser viewDidLoad]"};
  view()->setAutoresizingMask(flexibleAll);
  view()->setBackgroundColor(colors::white);
  makeToolbar();
  makeWebView();
  view()->addSubview(webView_);
  if (toolbar_->items().empty()) {
    toolbar_.reset();
    webView_->setFrame(view()->bounds());
  } else {
    view()->addSubview(toolbar_);
  }
  progressBar_ = std::make_shared<View>();
  progressBar_->setBackgroundColor(progressColor);
  progressBar_->setUserInteractionEnabled(false);
  progressBar_->setHidden(true);
  view()->addSubview(progressBar_);
}

void XInAppBrowser::makeToolbar() {
  const Rect all = view()->bounds();
  toolbar_ = std::make_shared<Toolbar>(Rect{0, 0, all.width, Toolbar::standardHeight});
  toolbar_->setAutoresizingMask(flexibleWidth | flexibleTopMargin);
  placeToolbar();
  applyAppearance();
  toolbar_->setItems(createToolbarItems());
}

void XInAppBrowser::applyAppearance() {
  toolbar_->setBarStyle(browserConfig->barStyle);
  if (browserConfig->toolbarBGColor) toolbar_->setBackgroundColor(browserConfig->toolbarBGColor);
  if (browserConfig->toolbarBGImageName) {
    toolbar_->setBackgroundPattern(namedPicture(*browserConfig->toolbarBGImageName));
  }
}

void XInAppBrowser::makeWebView() {
  const Rect all = view()->bounds();
  // Quirk: below a toolbar the page begins one point lower than the toolbar ends, and reaches one
  // point beyond the view.
  const double top = isToolbarOnTop() ? Toolbar::standardHeight + 1 : 0;
  // Somebody else's page may do what it likes to its process; the creative has another one.
  webView_ = Runtime::current().platform().webViews->create(
      {0, top, all.width, all.height - Toolbar::standardHeight}, {.ownProcess = true});
  webView_->setAutoresizingMask(flexibleWidth | flexibleHeight);
  webView_->setClipsToBounds(true);
  webView_->allowsInlineMediaPlayback = true;
  webView_->mediaPlaybackRequiresUserAction = true;
  webView_->setClient(std::static_pointer_cast<XInAppBrowser>(shared_from_this()));
}

void XInAppBrowser::placeToolbar() {
  if (!toolbar_) return;
  const Rect all = view()->bounds();
  const double top = isToolbarOnTop() ? 0 : all.height - Toolbar::standardHeight;
  toolbar_->setFrame({0, top, all.width, Toolbar::standardHeight});
}

void XInAppBrowser::didRotateFromInterfaceOrientation(InterfaceOrientation /*from*/) {
  const OperationLog log{"-[XInAppBrowser didRotateFromInterfaceOrientation:]"};
  placeToolbar();
  showProgress();
}

std::vector<std::shared_ptr<Button>> XInAppBrowser::createToolbarItems() {
  const OperationLog log{"-[XInAppBrowser createToolbarItems]"};
  std::vector<std::shared_ptr<Button>> items;
  for (const auto button : browserButtons) {
    if (!isButtonShown(*browserConfig, button)) continue;
    items.push_back(makeButton(button));
    if (button == BrowserButton::back) backButton_ = items.back();
    if (button == BrowserButton::forward) forwardButton_ = items.back();
  }
  updateHistoryButtons();
  return items;
}

std::shared_ptr<Button> XInAppBrowser::makeButton(BrowserButton number) {
  auto button = std::make_shared<Button>();
  const auto images = hostImages(*browserConfig, number);
  Image image = images.empty() ? Image{} : namedPicture(images.front()[1]);
  if (image.empty()) {
    const bool onDark = toolbar_ && toolbar_->isDark();
    image =
        tinted(namedPicture(builtInImageName(number)), onDark ? colors::white : colors::darkGray);
  }
  button->setImage(std::move(image));
  button->setAccessibilityLabel(std::string{buttonLabel(number)});
  button->setAction([this, number] { pressed(number); });
  return button;
}

void XInAppBrowser::pressed(BrowserButton button) {
  switch (button) {
    case BrowserButton::close:
      return closeButtonItemClicked();
    case BrowserButton::back:
      return backButtonItemClicked();
    case BrowserButton::forward:
      return forwardButtonItemClicked();
    case BrowserButton::reload:
      return reloadButtonItemClicked();
    case BrowserButton::action:
      return actionButtonItemClicked();
  }
}

void XInAppBrowser::closeButtonItemClicked() {
  const OperationLog log{"-[XInAppBrowser closeButtonItemClicked:]"};
  log.debug("\n\nClose button clicked. Dismissing the app browser");
  dismissBrowser();
}

void XInAppBrowser::backButtonItemClicked() {
  const OperationLog log{"-[XInAppBrowser backButtonItemClicked:]"};
  log.debug("\n\nMoving to previous page");
  webView_->goBack();
}

void XInAppBrowser::forwardButtonItemClicked() {
  const OperationLog log{"-[XInAppBrowser forwardButtonItemClicked:]"};
  log.debug("\n\nMoving to next page");
  webView_->goForward();
}

void XInAppBrowser::reloadButtonItemClicked() {
  const OperationLog log{"-[XInAppBrowser reloadButtonItemClicked:]"};
  log.debug("\n\nReloading the page");
  webView_->reload();
}

void XInAppBrowser::actionButtonItemClicked() {
  const OperationLog log{"-[XInAppBrowser actionButtonItemClicked:]"};
  log.debug("\n\nOpening the action URL in an external browser");
  const auto held = shared_from_this();
  const Url page = webView_->url();
  delegate.tell(&XInAppBrowserDelegate::XInAppBrowserWillLeaveApplication, *this);
  platformLog("Webview URL: " + page.text());
  Runtime::current().platform().application->openUrl(page);
}

bool XInAppBrowser::cancelOperation() {
  closeButtonItemClicked();
  return true;
}

void XInAppBrowser::dismissBrowser() {
  const auto held = shared_from_this();
  dismissViewController(Animated::yes, [this] {
    const OperationLog log{"-[XInAppBrowser dismissed]"};
    log.debug("\n\nApp Browser dismissed");
    delegate.tell(&XInAppBrowserDelegate::XInAppBrowserClose, *this);
  });
}

void XInAppBrowser::viewDidDisappear(Animated /*animated*/) {
  progressTimer_.invalidate();
  storeDelay_.invalidate();
  webView_->stopLoading();
}

void XInAppBrowser::updateHistoryButtons() {
  const auto update = [](const std::shared_ptr<Button>& button, bool enabled) {
    if (!button) return;
    button->setEnabled(enabled);
    button->setAlpha(enabled ? 1 : disabledAlpha);
  };
  update(backButton_, webView_ && webView_->canGoBack());
  update(forwardButton_, webView_ && webView_->canGoForward());
}

void XInAppBrowser::followProgress() {
  auto& runLoop = *Runtime::current().platform().runLoop;
  lastProgress_ = 0;
  lastProgressAt_ = runLoop.now();
  timedOut_ = false;
  progressTimer_ = runLoop.every(progressPeriod, [this] { showProgress(); });
  showProgress();
}

void XInAppBrowser::showProgress() {
  if (!webView_ || !progressBar_) return;
  const bool loading = webView_->isLoading();
  const double progress = webView_->estimatedProgress();
  const auto now = Runtime::current().platform().runLoop->now();
  const double edge = !toolbar_          ? 0
                      : isToolbarOnTop() ? toolbar_->frame().bottom()
                                         : toolbar_->frame().y - progressHeight;
  progressBar_->setHidden(!loading);
  progressBar_->setFrame({0, edge, view()->bounds().width * progress, progressHeight});
  if (progress != lastProgress_) {
    lastProgress_ = progress;
    lastProgressAt_ = now;
  } else if (now - lastProgressAt_ >= loadTimeout) {
    progressTimer_.invalidate();
    timedOut_ = loading;
    if (loading) webView_->stopLoading();
  }
}

void XInAppBrowser::webViewDidStartLoad(WebView& /*webView*/) { followProgress(); }

void XInAppBrowser::webViewDidFinishLoad(WebView& webView) {
  const OperationLog log{"-[XInAppBrowser webViewDidFinishLoad:]"};
  progressTimer_.invalidate();
  showProgress();
  updateHistoryButtons();
  // The engine passes the title on after the end of the load; its script knows it now.
  webView.evaluate("document.title", [weak = weak_from_this()](const std::string& title) {
    const auto self = std::static_pointer_cast<XInAppBrowser>(weak.lock());
    if (self) self->view()->setAccessibilityLabel(validUtf8(title.substr(0, longestTitle)));
  });
}

void XInAppBrowser::webViewDidFailLoad(WebView& /*webView*/, const Error& error) {
  const OperationLog log{"-[XInAppBrowser webView:didFailLoadWithError:]"};
  progressTimer_.invalidate();
  showProgress();
  updateHistoryButtons();
  const auto reason =
      timedOut_ ? makeError(TransportError::timedOut, "The page did not load in time.") : error;
  timedOut_ = false;
  delegate.tell(&XInAppBrowserDelegate::XInAppBrowserDidFailLoadWithError, *this, reason);
}

// The page is gone; the toolbar is still there to reload it or to leave.
void XInAppBrowser::webViewProcessDidTerminate(WebView& webView, const Error& error) {
  webViewDidFailLoad(webView, error);
}

bool XInAppBrowser::webViewShouldStartLoad(WebView& /*webView*/, const Navigation& navigation) {
  const OperationLog log{"-[XInAppBrowser webView:shouldStartLoadWithRequest:navigationType:]"};
  if (!endsWithAppStoreHost(navigation.url)) return true;
  openStorePage(navigation.url);
  return false;
}

void XInAppBrowser::openStorePage(const Url& url) {
  const auto& platform = Runtime::current().platform();
  if (!hasStoreSheet(platform.device->systemVersion())) {
    const auto held = shared_from_this();
    delegate.tell(&XInAppBrowserDelegate::XInAppBrowserWillLeaveApplication, *this);
    platform.application->openUrl(url);
    return;
  }
  const auto identifier = applicationIdentifier(url);
  if (!identifier) {
    platformLog("TAVOSDK: " + std::string{url.host()} + " error: couldn't locate id.");
    return;
  }
  if (!platform.composers) return;
  const auto sheet = platform.composers->storeSheet(
      {.identifier = *identifier, .page = productPage(*identifier)}, [weak = weak_from_this()] {
        const auto self = std::static_pointer_cast<XInAppBrowser>(weak.lock());
        if (self) self->productViewControllerDidFinish();
      });
  storeSheet_ = sheet;
  storeDelay_ =
      platform.runLoop->after(storeSheetDelay, [this, sheet] { loadAfterADelayWithData(sheet); });
}

void XInAppBrowser::loadAfterADelayWithData(const std::shared_ptr<ViewController>& sheet) {
  const OperationLog log{"-[XInAppBrowser loadAfterADelayWithData:]"};
  presentViewController(sheet, Animated::yes);
}

void XInAppBrowser::productViewControllerDidFinish() {
  const OperationLog log{"-[XInAppBrowser productViewControllerDidFinish:]"};
  const auto held = shared_from_this();
  const auto sheet = storeSheet_.lock();
  if (!sheet || presentedViewController() != sheet.get()) return;
  dismissViewController(Animated::yes, [this] {
    platformLog("AppStore dismissed");
    dismissBrowser();
  });
}

}  // namespace tavo
