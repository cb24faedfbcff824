#include <utility>

#include <tavo/Button.h>
#include <tavo/Runtime.h>
#include <tavo/ViewController.h>
#include <tavo/XAdView.h>

#include "AdController/AdGenerator/XMRAIDEventEmitter.h"
#include "ErrorHandler/OperationLog.h"
#include "UserInterface/WebView/BaseViews/AdViewCore.h"

namespace tavo {

// Each operation that may end in a report holds the view for its length: a host may drop it there.

std::shared_ptr<XAdView> XAdView::create(const Rect& frame) {
  const OperationLog log{"-[XAdView initWithFrame:]"};
  return std::shared_ptr<XAdView>{new XAdView{frame}};
}

XAdView::XAdView(const Rect& frame)
    : View{frame},
      slotConfiguration_{std::make_shared<XAdSlotConfiguration>()},
      defaultFrame_{frame},
      core_{std::make_unique<AdViewCore>(Runtime::current().environment(), *this)} {
  setClipsToBounds(true);
}

XAdView::~XAdView() { core_->releaseMemory(); }

std::string XAdView::corvaneTAVOSDKVersion() {
  const OperationLog log{"+[XAdView corvaneTAVOSDKVersion]"};
  return "Ver 2.2.2";
}

void XAdView::setSlotConfiguration(std::shared_ptr<XAdSlotConfiguration> configuration) {
  if (configuration) slotConfiguration_ = std::move(configuration);
}

void XAdView::setMoviePlayerInstance(std::shared_ptr<MoviePlayer> player) {
  const OperationLog log{"-[XAdView setMoviePlayerInstance:]"};
  moviePlayerInstance_ = std::move(player);
  if (moviePlayerInstance_) adSubType_ = MobileAdSubTypes::vastBanner;
}

void XAdView::loadWithDomainName(const std::string& domainName, const std::string& pageName,
                                 const std::string& adPosition, const std::string& keywords,
                                 const std::string& queryString) {
  const OperationLog log{"-[XAdView loadWithDomainName:pageName:adPosition:keywords:queryString:]"};
  const auto held = shared_from_this();
  core_->load({domainName, pageName, adPosition, keywords, queryString});
}

void XAdView::refreshAd() {
  const auto held = shared_from_this();
  core_->loader().refreshAd();
}

bool XAdView::isRefreshTimerRunning() const { return core_->loader().isRefreshTimerRunning(); }

bool XAdView::isLoading() const { return core_->loader().isWaiting(); }

void XAdView::releaseMemory() { core_->releaseMemory(); }

std::shared_ptr<XAdManager> XAdView::adManager() const { return core_->adManager(); }

void XAdView::openUrlInBrowser(const Url& url) {
  const auto held = shared_from_this();
  core_->clicks().actions().openUrlInBrowser(url);
}

bool XAdView::appBrowserOpen() const { return core_->clicks().appBrowserOpen(); }

void XAdView::openDiallerWithUrl(const Url& url) {
  const auto held = shared_from_this();
  core_->clicks().actions().openDiallerWithUrl(url);
}

void XAdView::sendSMSWithUrl(const Url& url) {
  const auto held = shared_from_this();
  core_->clicks().actions().sendSMSWithUrl(url);
}

void XAdView::sendEmailWithUrl(const Url& url) {
  const auto held = shared_from_this();
  core_->clicks().actions().sendEmailWithUrl(url);
}

void XAdView::makeFaceTimeCallWithUrl(const Url& url) {
  const auto held = shared_from_this();
  core_->clicks().actions().makeFaceTimeCallWithUrl(url);
}

void XAdView::openAppStoreWithURL(const Url& url) {
  const auto held = shared_from_this();
  core_->clicks().actions().openAppStoreWithURL(url);
}

void XAdView::createCalendarEvent(const std::string& event) {
  const auto held = shared_from_this();
  core_->clicks().actions().createCalendarEvent(event);
}

void XAdView::handlePlayVideoWithURL(const Url& url) {
  const auto held = shared_from_this();
  core_->clicks().actions().handlePlayVideoWithURL(url);
}

void XAdView::performClickToAction(ClickToAction actionType,
                                   const ClickToActionParameters& parameters) {
  const auto held = shared_from_this();
  core_->clicks().actions().performClickToAction(actionType, parameters);
}

void XAdView::checkCalendarAuthorizationStatus() {
  const auto held = shared_from_this();
  core_->clicks().actions().checkCalendarAuthorizationStatus();
}

void XAdView::closeButtonPressed() {
  const auto held = shared_from_this();
  core_->presentation().closeButtonPressed();
}

void XAdView::setCustomCloseButton(bool isCustomClose) {
  core_->presentation().setCustomCloseButton(isCustomClose);
}

void XAdView::setCloseButtonImageWithImageNamed(std::string_view name) {
  core_->presentation().setCloseButtonImageWithImageNamed(name);
}

void XAdView::removeCloseButtonFromSuperView() {
  const OperationLog log{"-[XAdView removeCloseButtonFromSuperView]"};
  const auto current = subviews();
  for (const auto& subview : current) {
    if (dynamic_cast<const Button*>(subview.get()) != nullptr) subview->removeFromSuperview();
  }
}

bool XAdView::statusBarHidden() const { return core_->presentation().statusBarHidden(); }

bool XAdView::isAdExpanded() const { return core_->presentation().isAdExpanded(); }

void XAdView::updateLayOutForNewState(MRAIDState state) {
  core_->presentation().updateLayOutForNewState(state);
}

std::shared_ptr<XMRAIDEventEmitter> XAdView::eventEmitter() const {
  return core_->presentation().eventEmitter();
}

std::shared_ptr<WebView> XAdView::webViewInstance() const {
  return core_->presentation().webViewInstance();
}

ViewController* XAdView::getRootViewController() const {
  return core_->presentation().getRootViewController();
}

std::shared_ptr<View> XAdView::resizeViewSuperview() const {
  const OperationLog log{"-[XAdView resizeViewSuperview]"};
  ViewController* const root = getRootViewController();
  return root != nullptr ? root->view() : nullptr;
}

void XAdView::didAppearOnScreen() {
  const auto held = shared_from_this();
  core_->loader().didAppearOnScreen();
}

void XAdView::didDisappearFromScreen() {
  const auto held = shared_from_this();
  core_->presentation().viewDidDisappear();
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
