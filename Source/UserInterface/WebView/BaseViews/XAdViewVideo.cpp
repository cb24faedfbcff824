#include <tavo/XAdView.h>

#include "AdManager/XAdManager.h"
#include "ErrorHandler/OperationLog.h"

namespace tavo {

// The video ads of an ad view: the host's player, and the reports of the ad manager about them.

void XAdView::setMoviePlayerInstance(std::shared_ptr<MoviePlayer> player) {
  const OperationLog log{"-[XAdView setMoviePlayerInstance:]"};
  moviePlayerInstance_ = std::move(player);
  if (moviePlayerInstance_) adSubType_ = MobileAdSubTypes::vastBanner;
}

void XAdView::dismissVastVideoView() {
  const OperationLog log{"-[XAdView dismissVastVideoView]"};
  delegate.tell(&XAdViewDelegate::interstitialAdDismissed, *this);
}

void XAdView::dismissVastVideoViewOnMemoryWarning() {
  const OperationLog log{"-[XAdView dismissVastVideoViewOnMemoryWarning]"};
  delegate.tell(&XAdViewDelegate::interstitialAdDismissedOnMemoryWarning, *this);
}

void XAdView::addVideoEvents(XAdManagerDelegate& events) {
  using Told = XAdViewDelegate;
  const auto self = [weak = weak_from_this()] {
    return std::static_pointer_cast<XAdView>(weak.lock());
  };
  // Hosts hear that something happened, not when in the video.
  const auto relay = [self](std::function<void(XAdView&)> Told::*operation) {
    return [self, operation](const auto&...) {
      if (const auto view = self()) view->delegate.tell(operation, *view);
    };
  };
  events.adManagerWillLeaveAppliation = relay(&Told::xAdViewWillLeaveApplication);
  events.adManagerWillOpenInAppBrowser = relay(&Told::xAdViewWillOpenInInAppBrowser);
  events.adManagerDidCloseInAppBrowser = relay(&Told::xAdViewWillCloseInAppBrowser);
  events.adManagerDidClickOnAdWithURL = relay(&Told::xAdViewDidClickOnAd);
  events.adManagerDidPauseVideo = relay(&Told::xAdViewDidPauseVideo);
  events.adManagerDidResume = relay(&Told::xAdViewDidResume);
  events.adManagerDidSkipVideo = relay(&Told::xAdViewDidSkipVideo);
  events.adManagerDidEnterFullScreen = relay(&Told::xAdViewDidEnterFullScreen);
  events.adManagerDidExitFullScreen = relay(&Told::xAdViewDidExitFullScreen);
  events.adManagerDidRewind = relay(&Told::xAdViewDidRewind);
  events.prerollDidFinishOnMemoryWarning = relay(&Told::xAdViewDidDismissOnMemoryWarning);
  events.adManagerDidFinishQuartile = [self](XAdManager&, int quartile) {
    if (const auto view = self())
      view->delegate.tell(&Told::xAdViewDidFinishQuartile, *view, quartile);
  };
  events.prerollDidFinishPlayingWithPlayer = [self](const std::shared_ptr<MoviePlayer>& player) {
    if (const auto view = self()) {
      view->delegate.tell(&Told::xAdViewPrerollDidFinishWithPlayer, *view, player);
    }
  };
}

}  // namespace tavo
