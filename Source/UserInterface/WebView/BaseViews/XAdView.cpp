#include <utility>

#include <tavo/Button.h>
#include <tavo/Runtime.h>
#include <tavo/ViewController.h>
#include <tavo/XAdView.h>

#include "AdController/AdGenerator/XMRAIDEventEmitter.h"
#include "ErrorHandler/OperationLog.h"
#include "Runtime/MainThread.h"
#include "UserInterface/WebView/BaseViews/AdViewCore.h"
#include "Values/Translation.h"

namespace tavo {

// Each operation that may end in a report holds the view for its length: a host may drop it there.

std::shared_ptr<XAdView> XAdView::create(const Rect& frame) {
  requireMainThread("XAdView::create");
  const OperationLog log{"-[XAdView initWithFrame:]"};
  return std::shared_ptr<XAdView>{new XAdView{frame}};
}

XAdView::XAdView(const Rect& frame)
    : View{frame},
      slotConfiguration_{std::make_shared<XAdSlotConfiguration>()},
      defaultFrame_{frame},
      core_{std::make_unique<AdViewCore>(Runtime::current().environment(), *this)} {
  setClipsToBounds(true);
  setAccessibilityLabel(translated("Advertisement"));
}

XAdView::~XAdView() {
  requireMainThread("XAdView::~XAdView");
  core_->releaseMemory();
}

std::string XAdView::corvaneTAVOSDKVersion() {
  const OperationLog log{"+[XAdView corvaneTAVOSDKVersion]"};
  return "Ver 2.2.2";
}

void XAdView::setSlotConfiguration(std::shared_ptr<XAdSlotConfiguration> configuration) {
  requireMainThread("XAdView::setSlotConfiguration");
  if (configuration) slotConfiguration_ = std::move(configuration);
}

void XAdView::setMoviePlayerInstance(std::shared_ptr<MoviePlayer> player) {
  requireMainThread("XAdView::setMoviePlayerInstance");
  const OperationLog log{"-[XAdView setMoviePlayerInstance:]"};
  moviePlayerInstance_ = std::move(player);
  if (moviePlayerInstance_) adSubType_ = MobileAdSubTypes::vastBanner;
}

void XAdView::loadWithDomainName(const std::string& domainName, const std::string& pageName,
                                 const std::string& adPosition, const std::string& keywords,
                                 const std::string& queryString) {
  requireMainThread("XAdView::loadWithDomainName");
  const OperationLog log{"-[XAdView loadWithDomainName:pageName:adPosition:keywords:queryString:]"};
  const auto held = shared_from_this();
  core_->load({domainName, pageName, adPosition, keywords, queryString});
}

void XAdView::refreshAd() {
  requireMainThread("XAdView::refreshAd");
  const auto held = shared_from_this();
  core_->loader().refreshAd();
}

bool XAdView::isRefreshTimerRunning() const {
  requireMainThread("XAdView::isRefreshTimerRunning");
  return core_->loader().isRefreshTimerRunning();
}

bool XAdView::isLoading() const {
  requireMainThread("XAdView::isLoading");
  return core_->loader().isWaiting();
}

void XAdView::releaseMemory() {
  requireMainThread("XAdView::releaseMemory");
  core_->releaseMemory();
}

std::shared_ptr<XAdManager> XAdView::adManager() const {
  requireMainThread("XAdView::adManager");
  return core_->adManager();
}

void XAdView::openUrlInBrowser(const Url& url) {
  requireMainThread("XAdView::openUrlInBrowser");
  const auto held = shared_from_this();
  core_->clicks().actions().openUrlInBrowser(url);
}

bool XAdView::appBrowserOpen() const {
  requireMainThread("XAdView::appBrowserOpen");
  return core_->clicks().appBrowserOpen();
}

void XAdView::openDiallerWithUrl(const Url& url) {
  requireMainThread("XAdView::openDiallerWithUrl");
  const auto held = shared_from_this();
  core_->clicks().actions().openDiallerWithUrl(url);
}

void XAdView::sendSMSWithUrl(const Url& url) {
  requireMainThread("XAdView::sendSMSWithUrl");
  const auto held = shared_from_this();
  core_->clicks().actions().sendSMSWithUrl(url);
}

void XAdView::sendEmailWithUrl(const Url& url) {
  requireMainThread("XAdView::sendEmailWithUrl");
  const auto held = shared_from_this();
  core_->clicks().actions().sendEmailWithUrl(url);
}

void XAdView::makeFaceTimeCallWithUrl(const Url& url) {
  requireMainThread("XAdView::makeFaceTimeCallWithUrl");
  const auto held = shared_from_this();
  core_->clicks().actions().makeFaceTimeCallWithUrl(url);
}

void XAdView::openAppStoreWithURL(const Url& url) {
  requireMainThread("XAdView::openAppStoreWithURL");
  const auto held = shared_from_this();
  core_->clicks().actions().openAppStoreWithURL(url);
}

void XAdView::createCalendarEvent(const std::string& event) {
  requireMainThread("XAdView::createCalendarEvent");
  const auto held = shared_from_this();
  core_->clicks().actions().createCalendarEvent(event);
}

void XAdView::handlePlayVideoWithURL(const Url& url) {
  requireMainThread("XAdView::handlePlayVideoWithURL");
  const auto held = shared_from_this();
  core_->clicks().actions().handlePlayVideoWithURL(url);
}

void XAdView::performClickToAction(ClickToAction actionType,
                                   const ClickToActionParameters& parameters) {
  requireMainThread("XAdView::performClickToAction");
  const auto held = shared_from_this();
  core_->clicks().actions().performClickToAction(actionType, parameters);
}

void XAdView::checkCalendarAuthorizationStatus() {
  requireMainThread("XAdView::checkCalendarAuthorizationStatus");
  const auto held = shared_from_this();
  core_->clicks().actions().checkCalendarAuthorizationStatus();
}

void XAdView::closeButtonPressed() {
  requireMainThread("XAdView::closeButtonPressed");
  const auto held = shared_from_this();
  core_->presentation().closeButtonPressed();
}

void XAdView::setCustomCloseButton(bool isCustomClose) {
  requireMainThread("XAdView::setCustomCloseButton");
  core_->presentation().setCustomCloseButton(isCustomClose);
}

void XAdView::setCloseButtonImageWithImageNamed(std::string_view name) {
  requireMainThread("XAdView::setCloseButtonImageWithImageNamed");
  core_->presentation().setCloseButtonImageWithImageNamed(name);
}

void XAdView::removeCloseButtonFromSuperView() {
  requireMainThread("XAdView::removeCloseButtonFromSuperView");
  const OperationLog log{"-[XAdView removeCloseButtonFromSuperView]"};
  const auto current = subviews();
  for (const auto& subview : current) {
    if (dynamic_cast<const Button*>(subview.get()) != nullptr) subview->removeFromSuperview();
  }
}

bool XAdView::statusBarHidden() const {
  requireMainThread("XAdView::statusBarHidden");
  return core_->presentation().statusBarHidden();
}

bool XAdView::isAdExpanded() const {
  requireMainThread("XAdView::isAdExpanded");
  return core_->presentation().isAdExpanded();
}

void XAdView::updateLayOutForNewState(MRAIDState state) {
  requireMainThread("XAdView::updateLayOutForNewState");
  core_->presentation().updateLayOutForNewState(state);
}

std::shared_ptr<XMRAIDEventEmitter> XAdView::eventEmitter() const {
  requireMainThread("XAdView::eventEmitter");
  return core_->presentation().eventEmitter();
}

std::shared_ptr<WebView> XAdView::webViewInstance() const {
  requireMainThread("XAdView::webViewInstance");
  return core_->presentation().webViewInstance();
}

ViewController* XAdView::getRootViewController() const {
  requireMainThread("XAdView::getRootViewController");
  return core_->presentation().getRootViewController();
}

std::shared_ptr<View> XAdView::resizeViewSuperview() const {
  requireMainThread("XAdView::resizeViewSuperview");
  const OperationLog log{"-[XAdView resizeViewSuperview]"};
  ViewController* const root = getRootViewController();
  return root != nullptr ? root->view() : nullptr;
}

void XAdView::didAppearOnScreen() {
  requireMainThread("XAdView::didAppearOnScreen");
  const auto held = shared_from_this();
  core_->loader().didAppearOnScreen();
}

void XAdView::didDisappearFromScreen() {
  requireMainThread("XAdView::didDisappearFromScreen");
  const auto held = shared_from_this();
  core_->presentation().viewDidDisappear();
}

void XAdView::shownPartDidChange(const Rect& part) {
  const auto held = shared_from_this();
  core_->presentation().shownPartDidChange(part);
}

void XAdView::coverDidChange() {
  const auto held = shared_from_this();
  core_->presentation().exposureDidChange();
}

void XAdView::didMoveOnScreen() {
  defaultFrame_ = frame();
  core_->presentation().viewDidMove();
}

void XAdView::willMoveToSuperview(View* newSuperview) {
  const OperationLog log{"-[XAdView willMoveToSuperview:]"};
  if (newSuperview == nullptr) core_->leaveScreen();
}

void XAdView::layoutSubviews() {
  if (placementType_ == PlacementType::interstitial) core_->presentation().placeDidChange();
}

}  // namespace tavo
