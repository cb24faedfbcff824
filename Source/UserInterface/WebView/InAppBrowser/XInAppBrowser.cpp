#include "UserInterface/WebView/InAppBrowser/XInAppBrowser.h"

#include <tavo/XGlobalConfiguration.h>

#include "ClickThrough/AppStore.h"
#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "RequestEnrichment/ScreenAndVisibility.h"
#include "Runtime/Relay.h"
#include "Scene/LayoutView.h"
#include "Services/Alerts.h"
#include "Services/Application.h"
#include "Services/Device.h"
#include "Services/WebViewFactory.h"
#include "UserInterface/WebView/InAppBrowser/ErrorPage.h"
#include "Values/Text.h"
#include "Values/Translation.h"

namespace tavo {

namespace {
constexpr std::size_t longestTitle = 500;  // bytes; more than anybody listens to
}  // namespace

std::shared_ptr<XInAppBrowser> XInAppBrowser::create(
    std::shared_ptr<Environment> environment,
    const std::shared_ptr<const XInAppBrowserDelegate>& delegate) {
  const OperationLog log{"-[XInAppBrowser initWithDelegate:]"};
  std::shared_ptr<XInAppBrowser> browser{new XInAppBrowser{std::move(environment)}};
  const Relay relay{*browser};
  browser->store_ = StorePresenter::create(
      browser->environment_,
      {.presenter = relay.call(&XInAppBrowser::loadAfterADelayWithData),
       .closed = relay.call(&XInAppBrowser::productViewControllerDidFinish)});
  browser->delegate.set(delegate);
  return browser;
}

XInAppBrowser::XInAppBrowser(std::shared_ptr<Environment> environment)
    : browserConfig{environment->shared<XGlobalConfiguration>().browserConfiguration},
      environment_{std::move(environment)} {
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
  wanted_ = url_;
  showsError_ = false;
  webView_->loadUrlIgnoringCache(url_);
  progress_->loadBegan();
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
  auto view = std::make_shared<LayoutView>(XDeviceScreenBounds(environment_->platform()));
  const Relay relay{*this};
  view->onLayout = relay.call(&XInAppBrowser::placeAll);
  view->setAccessibilityLabel(translated("Browser"));
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
  progress_ = std::make_shared<LoadProgress>(environment_->platform().runLoop, webView_);
  view()->addSubview(progress_);
}

void XInAppBrowser::makeToolbar() {
  const Relay relay{*this};
  toolbar_ = std::make_shared<BrowserToolbar>(environment_, browserConfig,
                                              relay.call(&XInAppBrowser::pressed));
  toolbar_->place(view()->bounds().size());
  toolbar_->setItems(createToolbarItems());
}

void XInAppBrowser::makeWebView() {
  const Rect all = view()->bounds();
  // Quirk: below a toolbar the page begins one point lower than the toolbar ends, and reaches one
  // point beyond the view.
  const double top = toolbar_->isOnTop() ? Toolbar::standardHeight + 1 : 0;
  // Somebody else's page may do what it likes to its process; the creative has another one.
  webView_ = environment_->platform().webViews->create(
      {0, top, all.width, all.height - Toolbar::standardHeight},
      {.ownProcess = true, .kind = PageKind::browser});
  webView_->setAutoresizingMask(flexibleWidth | flexibleHeight);
  webView_->setClipsToBounds(true);
  webView_->allowsInlineMediaPlayback = true;
  webView_->mediaPlaybackRequiresUserAction = true;
  webView_->setClient(std::static_pointer_cast<XInAppBrowser>(shared_from_this()));
}

void XInAppBrowser::placeAll() { didRotateFromInterfaceOrientation(InterfaceOrientation::unknown); }

void XInAppBrowser::didRotateFromInterfaceOrientation(InterfaceOrientation /*from*/) {
  const OperationLog log{"-[XInAppBrowser didRotateFromInterfaceOrientation:]"};
  const Size all = view()->bounds().size();
  if (toolbar_) toolbar_->place(all);
  if (!progress_) return;
  const double edge = !toolbar_             ? 0
                      : toolbar_->isOnTop() ? toolbar_->frame().bottom()
                                            : toolbar_->frame().y - LoadProgress::height;
  progress_->place(edge, all.width);
}

std::vector<std::shared_ptr<Button>> XInAppBrowser::createToolbarItems() {
  const OperationLog log{"-[XInAppBrowser createToolbarItems]"};
  auto items = toolbar_ ? toolbar_->makeItems() : std::vector<std::shared_ptr<Button>>{};
  updateHistoryButtons();
  return items;
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
  if (showsError_) return webView_->loadUrlIgnoringCache(wanted_);
  webView_->reload();
}

void XInAppBrowser::actionButtonItemClicked() {
  const OperationLog log{"-[XInAppBrowser actionButtonItemClicked:]"};
  log.debug("\n\nOpening the action URL in an external browser");
  const Url page = currentPage();
  const auto held = shared_from_this();
  delegate.tell(&XInAppBrowserDelegate::XInAppBrowserWillLeaveApplication, *this);
  platformLog("Webview URL: " + page.text());
  environment_->platform().application->openUrl(page);
}

void XInAppBrowser::leaveApplication(const Url& url) {
  const auto held = shared_from_this();
  delegate.tell(&XInAppBrowserDelegate::XInAppBrowserWillLeaveApplication, *this);
  environment_->platform().application->openUrl(url);
}

bool XInAppBrowser::cancelOperation() {
  closeButtonItemClicked();
  return true;
}

void XInAppBrowser::dismissBrowser() {
  const auto held = shared_from_this();
  dismissesItself_ = true;
  dismissViewController(Animated::yes, [this] { tellClosed(); });
  dismissesItself_ = false;
}

void XInAppBrowser::tellClosed() {
  const OperationLog log{"-[XInAppBrowser dismissed]"};
  log.debug("\n\nApp Browser dismissed");
  delegate.tell(&XInAppBrowserDelegate::XInAppBrowserClose, *this);
}

void XInAppBrowser::viewDidDisappear(Animated /*animated*/) {
  progress_->stop();
  store_->end();
  webView_->stopLoading();
  if (!isBeingDismissed() || dismissesItself_) return;
  // Somebody else takes it away, and is in the middle of that.
  environment_->platform().runLoop->post([this, held = shared_from_this()] { tellClosed(); });
}

void XInAppBrowser::updateHistoryButtons() {
  if (toolbar_ && webView_) toolbar_->setHistory(webView_->canGoBack(), webView_->canGoForward());
}

Url XInAppBrowser::currentPage() const { return showsError_ ? wanted_ : webView_->url(); }

void XInAppBrowser::showPage(const std::string& title) {
  PageSign sign = pageSign(currentPage(), title);
  if (showsError_) sign.isSecure = false;  // nothing came from there
  if (toolbar_) toolbar_->showPage(sign);
}

void XInAppBrowser::webViewDidStartLoad(WebView& /*webView*/) {
  if (!showsError_) progress_->loadBegan();
}

void XInAppBrowser::webViewDidFinishLoad(WebView& webView) {
  const OperationLog log{"-[XInAppBrowser webViewDidFinishLoad:]"};
  progress_->loadEnded();
  updateHistoryButtons();
  if (!showsError_) wanted_ = webView.url();
  showPage({});
  // The engine passes the title on after the end of the load; its script knows it now.
  const Relay relay{*this};
  webView.evaluate("document.title", relay.call(&XInAppBrowser::nameAfter));
}

void XInAppBrowser::nameAfter(const std::string& title) {
  const std::string name = validUtf8(title.substr(0, longestTitle));
  view()->setAccessibilityLabel(name);
  showPage(name);
}

void XInAppBrowser::webViewDidFailLoad(WebView& /*webView*/, const Error& error) {
  const OperationLog log{"-[XInAppBrowser webView:didFailLoadWithError:]"};
  progress_->loadEnded();
  updateHistoryButtons();
  if (showsError_) return;  // the page that tells of a failure is not one of the person's
  const auto held = shared_from_this();
  const Error reason = progress_->takeGivenUp()
                           ? makeError(TransportError::timedOut, "The page did not load in time.")
                           : error;
  explain(reason);
  delegate.tell(&XInAppBrowserDelegate::XInAppBrowserDidFailLoadWithError, *this, reason);
}

void XInAppBrowser::explain(const Error& error) {
  if (error.code == static_cast<int>(TransportError::cancelled)) return;
  const bool isFile = error.domain == webErrorDomain && error.code == cannotShowUrlError;
  if (isFile && wanted_.isHttp()) return offerOutside(error);
  showsError_ = true;
  webView_->loadHtml(errorPage(wanted_, error), {});
}

// A file to save leaves the page that offers it where it is.
void XInAppBrowser::offerOutside(const Error& error) {
  constexpr std::size_t close = 0;
  constexpr std::size_t open = 1;
  environment_->platform().alerts->show(
      {.title = translated("This file cannot be opened here"),
       .message = error.description,
       .buttons = {translated("Close"), translated("Open in browser")},
       .cancelButton = close},
      [weak = weak_from_this(), file = wanted_](std::size_t button) {
        const auto self = std::static_pointer_cast<XInAppBrowser>(weak.lock());
        if (self && button == open) self->leaveApplication(file);
      });
}

// The page is gone; the toolbar is still there to reload it or to leave.
void XInAppBrowser::webViewProcessDidTerminate(WebView& webView, const Error& error) {
  webViewDidFailLoad(webView, error);
}

bool XInAppBrowser::webViewShouldStartLoad(WebView& /*webView*/, const Navigation& navigation) {
  const OperationLog log{"-[XInAppBrowser webView:shouldStartLoadWithRequest:navigationType:]"};
  const bool isWholePage = navigation.mainDocumentUrl == navigation.url;
  if (isWholePage && navigation.url.isHttp()) {
    wanted_ = navigation.url;
    showsError_ = false;
  }
  return std::visit([&](const auto& verdict) { return carryOut(verdict, navigation.url); },
                    judgePage(navigation, environment_->shared<AppStoreConfiguration>(),
                              environment_->platform().device->contractVersion()));
}

bool XInAppBrowser::carryOut(const LoadPage& /*verdict*/, const Url& /*url*/) { return true; }

bool XInAppBrowser::carryOut(const NoPage& /*verdict*/, const Url& /*url*/) { return false; }

bool XInAppBrowser::carryOut(const ShowInStore& verdict, const Url& /*url*/) {
  store_->show(verdict.application);
  return false;
}

bool XInAppBrowser::carryOut(const NowhereInStore& /*verdict*/, const Url& url) {
  platformLog("TAVOSDK: " + std::string{url.host()} + " error: couldn't locate id.",
              LogLevel::warning);
  return false;
}

bool XInAppBrowser::carryOut(const LeaveApplication& /*verdict*/, const Url& url) {
  if (!url.isHttp() && !environment_->platform().application->canOpenUrl(url)) return false;
  leaveApplication(url);
  return false;
}

// The delay of the store's sheet is over.
ViewController* XInAppBrowser::loadAfterADelayWithData() {
  const OperationLog log{"-[XInAppBrowser loadAfterADelayWithData:]"};
  return this;
}

void XInAppBrowser::productViewControllerDidFinish() {
  const OperationLog log{"-[XInAppBrowser productViewControllerDidFinish:]"};
  platformLog("AppStore dismissed");
  dismissBrowser();
}

}  // namespace tavo
