#include "AdManager/XAdManager.h"
#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"

namespace tavo {

// The video ads of an ad manager: the road from the answer to the player, and the relays of what
// the video reports.

std::shared_ptr<XVASTVideoView> XAdManager::videoView() const {
  return vastRoad_ ? vastRoad_->videoView() : nullptr;
}

void XAdManager::loadVastAd(const std::string& text) {
  const OperationLog log{"-[XAdManager loadVastAdWithAdInfo:]"};
  log.debug("\n\nLoading Vast Ad...");
  progress_ = {.handled = true, .waitingForCompletion = true};
  const auto weak = weak_from_this();
  vastRoad_ = VastRoad::create({.adView = adView_,
                                .moviePlayerInstance = moviePlayerInstance,
                                .slotConfiguration = slotConfiguration,
                                .videoEvents = videoEvents_},
                               {.failed =
                                    [weak](const Error& error) {
                                      if (const auto self = weak.lock()) self->fail(error);
                                    },
                                .concluded =
                                    [weak] {
                                      if (const auto self = weak.lock()) self->didConcludeVast();
                                    }});
  const auto road = vastRoad_;  // its first report may drop the manager
  road->loadVastAd(text);
}

// Quirk: the answer's impression is counted when the answer is dealt with, also after a failure:
// a document that was served is billed, as a picture is that cannot be decoded.
void XAdManager::didConcludeVast() {
  platformLog("\n\nAd is displayed successfully");
  processImpressionTracking();
}

void XAdManager::makeVideoObserver() {
  using Told = XAdManagerDelegate;
  const auto weak = weak_from_this();
  // An operation with the manager alone, and one with a value besides.
  const auto relay = [weak](auto operation) {
    return [weak, operation](XVASTVideoView&) {
      if (const auto self = weak.lock()) self->delegate.tell(operation, *self);
    };
  };
  const auto relayWith = [weak](auto operation) {
    return [weak, operation](XVASTVideoView&, const auto& value) {
      if (const auto self = weak.lock()) self->delegate.tell(operation, *self, value);
    };
  };
  const auto dismiss = [weak](void (AdManagerView::*operation)()) {
    return [weak, operation] {
      const auto self = weak.lock();
      const auto view = self ? self->adView_.lock() : nullptr;
      if (view) (view.get()->*operation)();
    };
  };
  videoEvents_ = std::make_shared<XVASTVidoeViewDelegate>(XVASTVidoeViewDelegate{
      .vastVideoAdDidLoad = relay(&Told::adManagerDidLoad),
      .vastVideoViewDidClickVideoWithURL = relayWith(&Told::adManagerDidClickOnAdWithURL),
      .vastVideoViewDidFinishQuartile = relayWith(&Told::adManagerDidFinishQuartile),
      .vastVideoViewDidSkipVideo = relayWith(&Told::adManagerDidSkipVideo),
      .vastVideoViewDidPauseVideo = relayWith(&Told::adManagerDidPauseVideo),
      .vastVideoViewDidResume = relayWith(&Told::adManagerDidResume),
      .vastVideoViewDidRewind = relay(&Told::adManagerDidRewind),
      .vastVideoViewWillOpenInAppBrowser = relay(&Told::adManagerWillOpenInAppBrowser),
      .vastVideoViewDidCloseInAppBrowser = relay(&Told::adManagerDidCloseInAppBrowser),
      .vastVideoViewWillLeaveApplication = relay(&Told::adManagerWillLeaveAppliation),
      .VASTVideoViewDidEnterFullScreen = relay(&Told::adManagerDidEnterFullScreen),
      .VASTVideoViewDidExitFullScreen = relay(&Told::adManagerDidExitFullScreen),
      .vastVideoViewDismissOnMemoryWarning =
          [weak](XVASTVideoView&) {
            if (const auto self = weak.lock()) {
              self->delegate.tell(&Told::prerollDidFinishOnMemoryWarning);
            }
          },
      .prerollDidFinishWithPlayer =
          [weak](const std::shared_ptr<MoviePlayer>& host) {
            if (const auto self = weak.lock()) {
              self->delegate.tell(&Told::prerollDidFinishPlayingWithPlayer, host);
            }
          },
      .playerDidFinishWithErrorWithPlayer =
          [weak](const Error& error, const std::shared_ptr<MoviePlayer>&) {
            if (const auto self = weak.lock()) self->fail(error);
          },
      .dismissVastViewController = dismiss(&AdManagerView::dismissVastVideoView),
      .dismissVastViewControllerOnMemoryWarning =
          dismiss(&AdManagerView::dismissVastVideoViewOnMemoryWarning)});
}

}  // namespace tavo
