#include "UserInterface/WebView/BaseViews/InterstitialCore.h"

#include <utility>
#include <vector>

#include <tavo/SdkErrors.h>

#include "AdController/AdGenerator/AdViewIdentity.h"
#include "AdController/AdGenerator/XMRAIDEventEmitter.h"
#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "RequestEnrichment/ScreenAndVisibility.h"
#include "Runtime/Environment.h"
#include "Services/Application.h"
#include "UserInterface/NativeView/XVASTVideoView.h"
#include "Values/Translation.h"

namespace tavo {

namespace {

constexpr Seconds delayAfterLoadError{1.0};

template <typename Wanted>
std::shared_ptr<Wanted> firstAmong(const std::vector<std::shared_ptr<View>>& views) {
  for (const auto& view : views) {
    if (auto found = std::dynamic_pointer_cast<Wanted>(view)) return found;
  }
  return nullptr;
}

}  // namespace

InterstitialCore::InterstitialCore(std::shared_ptr<Environment> environment,
                                   XAdInterstitialViewController& controller)
    : environment_{std::move(environment)},
      controller_{controller},
      exit_{environment_, controller, *this},
      closeControl_{*environment_, controller},
      rotation_{environment_, controller} {}

InterstitialCore::~InterstitialCore() {
  if (screen_) screen_->onLayout = {};
}

Relay<InterstitialCore> InterstitialCore::relay() {
  return Relay<InterstitialCore>{sharedPart(controller_.weak_from_this().lock(), *this)};
}

void InterstitialCore::makeObservers() {
  using Self = InterstitialCore;
  const auto self = relay();
  const Relay host{controller_};
  adViewEvents_ = std::make_shared<XAdViewDelegate>(XAdViewDelegate{
      .xAdViewDidLoad = self.call(&Self::xAdViewDidLoad),
      .xAdViewDidFailWithError = self.call(&Self::xAdViewDidFailWithError),
      .xAdViewDidClickOnAd = host.pass(&Told::xAdInterstitialDidClick),
      .xAdViewWillOpenInInAppBrowser = host.pass(&Told::xAdInterstitialWillOpenInInAppBrowser),
      .xAdViewWillCloseInAppBrowser = host.pass(&Told::xAdInterstitialWillCloseInAppBrowser),
      .xAdViewWillLeaveApplication = self.call(&Self::xAdViewWillLeaveApplication),
      .xAdViewDidDismissOnMemoryWarning = self.call(&Self::xAdViewDidDismissOnMemoryWarning),
      .xAdViewDidFinishQuartile = host.pass(&Told::xAdInterstitialDidFinishQuartile),
      .xAdViewDidPauseVideo = host.pass(&Told::xAdInterstitialDidPauseVideo),
      .xAdViewDidResume = host.pass(&Told::xAdInterstitialDidResume),
      .xAdViewDidSkipVideo = host.pass(&Told::xAdInterstitialDidSkipVideo),
      .xAdViewDidRewind = host.pass(&Told::xAdInterstitialDidRewind),
      .xAdViewDidEnterFullScreen = self.call(&Self::xAdViewDidEnterFullScreen),
      .xAdViewDidExitFullScreen = host.pass(&Told::xAdInterstitialDidExitFullScreen),
      .xAdViewShouldDisplayAdOnWebViewFinishRender =
          self.call(&Self::xAdViewShouldDisplayAdOnWebViewFinishRender),
      .xAdViewShouldHandleCustomURL = self.call(&Self::xAdViewShouldHandleCustomURL),
      .xAdViewShouldHandleClickToAction = self.call(&Self::xAdViewShouldHandleClickToAction),
      .interstitialAdDismissed = self.call(&Self::interstitialAdDismissed),
      .xAdViewDidBeginVastAd = host.pass(&Told::xAdInterstitialDidBeginVastAd),
      .xAdViewDidOfferCompanions = host.pass(&Told::xAdInterstitialDidOfferCompanions)});
  using Face = XAdInterstitialViewController;
  subClassEvents_ =
      std::make_shared<XAdViewOnlyForSubClassEyesDelegate>(XAdViewOnlyForSubClassEyesDelegate{
          .expandPropertiesChnaged = host.call(&Face::expandPropertiesChnaged),
          .setOrientationPropertiesWith = host.call(&Face::setOrientationPropertiesWith),
          .XInterstitialAdDidClose = self.call(&Self::XInterstitialAdDidClose),
          .isRequiredDelegateImplementedByPublisher =
              host.call(&Face::isRequiredDelegateImplementedByPublisher),
          .adViewDidReleaseMemory = self.call(&Self::adViewDidReleaseMemory),
          .deviceDidLock = self.call(&Self::deviceDidLock)});
}

// Black, so that nothing of the host's content shines through and no touch reaches it. The ad
// follows every size of the screen exactly, whatever size it had before.
std::shared_ptr<View> InterstitialCore::makeScreen() {
  screen_ = std::make_shared<LayoutView>(XDeviceScreenBounds(environment_->platform()));
  screen_->setBackgroundColor(colors::black);
  screen_->setAccessibilityLabel(translated("Advertisement"));
  screen_->onLayout = [this] { rotation_.fitAdView(); };
  return screen_;
}

void InterstitialCore::viewDidLoad() {
  controller_.useCustomClose = false;
  controller_.view()->setAutoresizingMask(flexibleAll);
  makeObservers();
  makeAdView();
  rotation_.rememberOrientation();
  rotation_.setRules(XMRAIDOrientationProperties{});
  controller_.isFirstMRAIDAd = true;
  memoryWarning_ = environment_->notifications().subscribe(
      notifications::didReceiveMemoryWarning,
      Relay{controller_}.call(&XAdInterstitialViewController::didReceiveMemoryWarning));
}

void InterstitialCore::makeAdView() {
  xadView_ = XAdView::create(XDeviceScreenBounds(environment_->platform()));
  xadView_->setAccessibilityLabel({});  // the screen around it has the name
  xadView_->delegate.set(adViewEvents_);
  xadView_->pDelegate.set(subClassEvents_);
  xadView_->setPlacementType(PlacementType::interstitial);
  xadView_->setMobileAdTypes(MobileAdTypes::interstitial);
  xadView_->setAutoresizingMask(flexibleAll);
  controller_.view()->addSubview(xadView_);
}

// What the last ad asked for, and how it ended, is not the next one's affair.
void InterstitialCore::load(const AdAddress& address) {
  const auto& screen = controller_.view();
  exit_.begin();
  adLoaded_ = false;
  controller_.useCustomClose = false;
  rotation_.setRules(XMRAIDOrientationProperties{});
  closeControl_.remove();
  if (!xadView_) makeAdView();
  screen->addSubview(xadView_);
  if (activityindicator_) screen->bringSubviewToFront(*activityindicator_);
  if (controller_.slotConfiguration) xadView_->setSlotConfiguration(controller_.slotConfiguration);
  const auto adView = xadView_;
  adView->loadWithDomainName(address.domainName, address.pageName, address.adPosition,
                             address.keywords, address.queryString);
}

void InterstitialCore::viewWillAppear() {
  exit_.reopen();
  rotation_.willAppear();
}

// The creative hears at last that it can be seen, and where.
void InterstitialCore::viewDidAppear() {
  rotation_.didAppear();
  if (!adLoaded_) showIndicator();
  rotation_.reportLayout();
}

void InterstitialCore::showIndicator() {
  if (!activityindicator_) {
    activityindicator_ = ActivityIndicator::create(controller_.view());
    activityindicator_->setAutoresizingMask(flexibleWidth | flexibleHeight);
  }
  activityindicator_->show();
  controller_.view()->bringSubviewToFront(*activityindicator_);
}

std::shared_ptr<XVASTVideoView> InterstitialCore::videoView() const {
  return xadView_ ? firstAmong<XVASTVideoView>(xadView_->subviews()) : nullptr;
}

// A key is not a way around the countdown of a video.
void InterstitialCore::cancel() {
  const auto video = videoView();
  switch (wayToLeave({.adLoaded = adLoaded_,
                      .hasVideo = video != nullptr,
                      .videoCloseDisplayed = video && video->isCloseButtonDisplayed()})) {
    case LeaveWay::closeVideo:
      return video->closeButtonClicked();
    case LeaveWay::close:
      return controller_.closeInterstitialAd();
    case LeaveWay::stay:
      return;
  }
}

void InterstitialCore::fail(const std::optional<Error>& error, Seconds delay) {
  exit_.dismissLater(delay);
  controller_.delegate.tell(&Told::xAdInterstitialDidFailWithError, controller_, error);
}

void InterstitialCore::xAdViewDidLoad(XAdView& adView) {
  const OperationLog log{"-[XAdInterstitialViewController xAdViewDidLoad:]"};
  if (activityindicator_) activityindicator_->hide();
  adLoaded_ = true;
  const bool isMediated = adView.isMediationAdServed();
  if (isMediated && !controller_.isRequiredDelegateImplementedByPublisher()) {
    platformLog("Required delegate xAdInterstitialDidLoad is not implemented.", LogLevel::warning);
    return;
  }
  if (!isMediated) {
    environment_->platform().application->setStatusBarHidden(true, StatusBarAnimation::fade);
  }
  if (controller_.isFirstMRAIDAd) {
    controller_.delegate.tell(&Told::xAdInterstitialDidLoad, isMediated ? nullptr : &controller_);
  }
  // The host may have closed the ad again.
  if (!exit_.isOver() && isClosedLikeRedirect(controller_.mobileAdSubTypes())) {
    controller_.addCloseButtonForRedirect();
  }
}

void InterstitialCore::xAdViewDidFailWithError(const std::optional<Error>& error) {
  const OperationLog log{"-[XAdInterstitialViewController xAdView:didFailWithError:]"};
  if (error && error->code == static_cast<int>(TransportError::cancelled)) return;
  fail(error, delayAfterLoadError);
}

bool InterstitialCore::xAdViewShouldDisplayAdOnWebViewFinishRender(WebView& webView) {
  const OperationLog log{
      "-[XAdInterstitialViewController xAdView:shouldDisplayAdOnWebViewFinishRender:]"};
  const bool mayDisplay =
      controller_.delegate
          .ask(&Told::xAdInterstitialViewControllerShouldDisplayAdOnWebViewFinishRender,
               controller_, webView)
          .value_or(true);
  if (!exit_.isOver()) controller_.addCloseButton();
  return mayDisplay;
}

// Quirk: who wants to hear of the beginning must want to hear of the end. Hosts pause and resume by
// the pair.
void InterstitialCore::xAdViewDidEnterFullScreen() {
  const OperationLog log{"-[XAdInterstitialViewController xAdViewDidEnterFullScreen:]"};
  if (!controller_.delegate.implements(&Told::xAdInterstitialDidExitFullScreen)) return;
  controller_.delegate.tell(&Told::xAdInterstitialDidEnterFullScreen, controller_);
}

// The button itself stays on the screen: the user comes back to the ad, and wants to leave it then.
void InterstitialCore::xAdViewWillLeaveApplication() {
  const OperationLog log{"-[XAdInterstitialViewController xAdViewWillLeaveApplication:]"};
  closeControl_.drop();
  controller_.delegate.tell(&Told::xAdInterstitialWillLeaveApplication, controller_);
}

bool InterstitialCore::xAdViewShouldHandleClickToAction(XAdView& /*adView*/, ClickToAction action,
                                                        const ClickToActionParameters& parameters) {
  const OperationLog log{
      "-[XAdInterstitialViewController xAdView:shouldHandleClickToAction:parameters:]"};
  return controller_.delegate
      .ask(&Told::xAdInterstitialViewControllerShouldHandleClickToAction, controller_, action,
           parameters)
      .value_or(true);
}

bool InterstitialCore::xAdViewShouldHandleCustomURL(const Url& url) {
  const OperationLog log{"-[XAdInterstitialViewController xAdView:shouldHandleCustomURL:]"};
  const auto operation = &Told::xAdInterstitialViewControllerShouldHandleCustomURL;
  const bool handles = controller_.delegate.implements(operation);
  controller_.delegate.tell(operation, controller_, url);
  platformLog(handles ? "CustomURLScheme \"app://\" found. Publisher will handle customURL, "
                        "Terminating SDK Flow."
                      : "Publisher did not handle the customURLScheme \"app://\". Ignoring the "
                        "request.");
  return true;
}

void InterstitialCore::interstitialAdDismissed() {
  const OperationLog log{"-[XAdInterstitialViewController interstitialAdDismissed:]"};
  exit_.end(EndCause::videoDismissed);
}

void InterstitialCore::XInterstitialAdDidClose() {
  const OperationLog log{"-[XAdInterstitialViewController XInterstitialAdDidClose:]"};
  if (!exit_.isOver() && !controller_.isBeingDismissed()) {
    log.debug("\n\ndismissing view controller");
  }
  exit_.end(EndCause::creativeClosed);
}

void InterstitialCore::xAdViewDidDismissOnMemoryWarning() {
  const OperationLog log{"-[XAdInterstitialViewController xAdViewDidDismissOnMemoryWarning:]"};
  exit_.end(EndCause::adDismissedOnLowMemory);
}

void InterstitialCore::deviceDidLock() {
  platformLog("Dismissing Interstitialview Controller");
  exit_.end(EndCause::deviceLocked);
}

void InterstitialCore::tellCreativeThatItIsHidden() {
  const auto adView = xadView_;
  if (!adView) return;
  if (const auto emitter = adView->eventEmitter()) {
    emitter->setState(MRAIDState::hidden, adView->webViewInstance());
  }
  adView->updateLayOutForNewState(MRAIDState::hidden);
}

void InterstitialCore::removeContent() {
  closeControl_.drop();
  if (controller_.isViewLoaded()) controller_.view()->removeAllSubviews();
}

// The order matters: a video is silent before anything that it plays in is taken apart.
void InterstitialCore::releaseMemory() {
  const OperationLog log{"-[XAdInterstitialViewController releaseMemory]"};
  const auto held = controller_.weak_from_this().lock();  // null when it goes itself
  if (const auto video = videoView()) {
    if (const auto player = firstAmong<XMPMoviePlayer>(video->subviews())) {
      if (const auto movie = player->moviePlayerController()) movie->stop();
      player->releaseMemory();
    }
    video->releaseMemory();
  }
  if (const auto adView = std::exchange(xadView_, nullptr)) adView->removeFromSuperview();
  controller_.slotConfiguration.reset();
  controller_.adManager.reset();
  if (activityindicator_) activityindicator_->hide();
  activityindicator_.reset();
  rotation_.setRules(std::nullopt);
  controller_.viewController.reset();
}

}  // namespace tavo
