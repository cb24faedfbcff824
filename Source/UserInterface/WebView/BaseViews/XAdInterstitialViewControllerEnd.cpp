#include <tavo/Runtime.h>
#include <tavo/SdkErrors.h>
#include <tavo/XAdInterstitialViewController.h>

#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"

namespace tavo {

// Every way off the screen: by the user, the creative, the video, a failure, and what the system
// demands.

namespace {

constexpr Seconds delayAfterLoadError{1.0};
constexpr Seconds delayAfterManagerError{3.0};

template <typename Wanted>
std::shared_ptr<Wanted> firstAmong(const std::vector<std::shared_ptr<View>>& views) {
  for (const auto& view : views) {
    if (auto found = std::dynamic_pointer_cast<Wanted>(view)) return found;
  }
  return nullptr;
}

}  // namespace

std::shared_ptr<XVASTVideoView> XAdInterstitialViewController::videoView() const {
  return xadView_ ? firstAmong<XVASTVideoView>(xadView_->subviews()) : nullptr;
}

void XAdInterstitialViewController::showStatusBar() {
  Runtime::current().platform().application->setStatusBarHidden(false, StatusBarAnimation::fade);
}

void XAdInterstitialViewController::removeEverything() {
  if (isViewLoaded()) view()->removeAllSubviews();
}

// With whatever the ad itself has presented: nobody is left in front of an empty screen. What is
// not on the screen is gone already.
void XAdInterstitialViewController::leave(Animated animated, const std::function<void()>& gone) {
  if (presentingViewController() == nullptr || isBeingDismissed()) {
    if (gone) gone();
    return;
  }
  const auto presenter = presentingViewController()->shared_from_this();
  presenter->dismissViewController(animated, gone);
}

void XAdInterstitialViewController::leaveAndTell(Animated animated) {
  const auto held = shared_from_this();
  leave(animated, [this] { delegate.tell(&Told::xAdInterstitialDismissed, *this); });
}

void XAdInterstitialViewController::closeInterstitialAd() {
  const OperationLog log{"-[XAdInterstitialViewController closeInterstitialAd]"};
  const auto held = shared_from_this();
  if (std::exchange(over_, true)) return;
  showStatusBar();
  if (const auto adView = xadView_) {
    if (const auto& emitter = adView->eventEmitter()) {
      emitter->setState(MRAIDState::hidden, adView->webViewInstance());
    }
    adView->updateLayOutForNewState(MRAIDState::hidden);
  }
  closeButton_.reset();
  removeEverything();
  leaveAndTell(Animated::yes);
}

void XAdInterstitialViewController::XInterstitialAdDidClose(XAdView& /*adView*/) {
  const OperationLog log{"-[XAdInterstitialViewController XInterstitialAdDidClose:]"};
  if (std::exchange(over_, true)) return;
  showStatusBar();
  removeEverything();
  if (!isBeingDismissed()) log.debug("\n\ndismissing view controller");
  leaveAndTell(Animated::yes);
}

void XAdInterstitialViewController::interstitialAdDismissed(XAdView& /*adView*/) {
  const OperationLog log{"-[XAdInterstitialViewController interstitialAdDismissed:]"};
  if (std::exchange(over_, true)) return;
  showStatusBar();
  leaveAndTell(Animated::yes);
}

// A key is not a way around the countdown of a video.
bool XAdInterstitialViewController::cancelOperation() {
  const auto held = shared_from_this();
  const auto video = videoView();
  switch (wayToLeave({.adLoaded = adLoaded_,
                      .hasVideo = video != nullptr,
                      .videoCloseDisplayed = video && video->isCloseButtonDisplayed()})) {
    case LeaveWay::closeVideo:
      video->closeButtonClicked();
      break;
    case LeaveWay::close:
      closeInterstitialAd();
      break;
    case LeaveWay::stay:
      break;
  }
  return true;
}

// The earlier of two dismissals counts. The controller is held for the turn only: what is dropped
// before is not on the screen.
void XAdInterstitialViewController::dismissLater(Seconds delay) {
  auto& runLoop = *Runtime::current().platform().runLoop;
  const Seconds due = runLoop.now() + delay;
  if (dismissal_.isValid() && dismissalDue_ <= due) return;
  dismissalDue_ = due;
  dismissal_ = runLoop.after(delay, [self = holder()] {
    if (const auto controller = self()) controller->dismissViewControllerWithError();
  });
}

void XAdInterstitialViewController::dismissViewControllerWithError() {
  const OperationLog log{"-[XAdInterstitialViewController dismissViewControllerWithError:]"};
  if (std::exchange(over_, true)) return;
  if (presentingViewController() != nullptr) showStatusBar();
  leave(Animated::yes);
}

void XAdInterstitialViewController::xAdViewDidFailWithError(XAdView& /*adView*/,
                                                            const std::optional<Error>& error) {
  const OperationLog log{"-[XAdInterstitialViewController xAdView:didFailWithError:]"};
  if (error && error->code == static_cast<int>(TransportError::cancelled)) return;
  dismissLater(delayAfterLoadError);
  delegate.tell(&Told::xAdInterstitialDidFailWithError, *this, error);
}

void XAdInterstitialViewController::xAdViewDidReceiveNoAd(XAdView& /*adView*/) {
  const OperationLog log{"-[XAdInterstitialViewController xAdViewDidReceiveNoAd:]"};
  const auto held = shared_from_this();
  platformLog("\n\nNo Ad Received");
  delegate.tell(&Told::xAdInterstitialDidFailWithError, *this,
                std::optional{makeError(SdkError::noAd, "No Ad received from server.")});
  dismissLater(delayAfterLoadError);
}

void XAdInterstitialViewController::adManagerDidFailWithError(const std::optional<Error>& error) {
  const OperationLog log{"-[XAdInterstitialViewController adManagerDidFailWithError:]"};
  const auto held = shared_from_this();
  platformLog("TAVOSDK: " + (error ? error->description : std::string{"(null)"}));
  delegate.tell(&Told::xAdInterstitialDidFailWithError, *this, error);
  dismissLater(delayAfterManagerError);
}

// Quirk: a host that does not hear of low memory does not hear of the end either; it has asked for
// neither the cause nor the consequence.
void XAdInterstitialViewController::didReceiveMemoryWarning() {
  const OperationLog log{"-[XAdInterstitialViewController didReceiveMemoryWarning]"};
  const auto held = shared_from_this();
  platformLog("Device is low on memory");
  if (std::exchange(over_, true)) return releaseMemory();
  showStatusBar();
  leave(Animated::yes, [this] {
    releaseMemory();
    if (!delegate.implements(&Told::xAdInterstitialDidDismissOnMemoryWarning)) return;
    delegate.tell(&Told::xAdInterstitialDidDismissOnMemoryWarning, *this);
    delegate.tell(&Told::xAdInterstitialDismissed, *this);
  });
}

void XAdInterstitialViewController::xAdViewDidDismissOnMemoryWarning(XAdView& /*adView*/) {
  const OperationLog log{"-[XAdInterstitialViewController xAdViewDidDismissOnMemoryWarning:]"};
  const auto held = shared_from_this();
  if (std::exchange(over_, true)) return;
  showStatusBar();
  leave(Animated::yes, [this] {
    delegate.tell(&Told::xAdInterstitialDidDismissOnMemoryWarning, *this);
    delegate.tell(&Told::xAdInterstitialDismissed, *this);
  });
}

void XAdInterstitialViewController::adViewDidReleaseMemory() {
  if (presentingViewController() == nullptr || std::exchange(over_, true)) return;
  showStatusBar();
  leaveAndTell(presentedViewController() != nullptr ? Animated::no : Animated::yes);
}

void XAdInterstitialViewController::deviceDidLock() {
  if (presentingViewController() == nullptr || std::exchange(over_, true)) return;
  showStatusBar();
  leaveAndTell(Animated::no);
}

// The order matters: a video is silent before anything that it plays in is taken apart.
void XAdInterstitialViewController::releaseMemory() {
  const OperationLog log{"-[XAdInterstitialViewController releaseMemory]"};
  const auto held = weak_from_this().lock();  // null when it goes itself
  if (const auto video = videoView()) {
    if (const auto player = firstAmong<XMPMoviePlayer>(video->subviews())) {
      if (const auto movie = player->moviePlayerController()) movie->stop();
      player->releaseMemory();
    }
    video->releaseMemory();
  }
  if (const auto adView = std::move(xadView_)) adView->removeFromSuperview();
  xadView_.reset();
  slotConfiguration.reset();
  adManager.reset();
  if (activityindicator_) activityindicator_->hide();
  activityindicator_.reset();
  orientationProp_.reset();
  viewController.reset();
}

}  // namespace tavo
