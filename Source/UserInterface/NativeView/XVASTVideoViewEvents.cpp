#include "UserInterface/NativeView/XVASTVideoView.h"

namespace tavo {

// What the player reports becomes what the view reports. Every report holds the view for its
// length: an observer may drop it from inside.

std::function<std::shared_ptr<XVASTVideoView>()> XVASTVideoView::holder() {
  return
      [weak = weak_from_this()] { return std::static_pointer_cast<XVASTVideoView>(weak.lock()); };
}

void XVASTVideoView::makeObservers() {
  const auto self = holder();
  const auto call = [self](void (XVASTVideoView::*operation)()) {
    return [self, operation] {
      if (const auto view = self()) (view.get()->*operation)();
    };
  };
  clickThrough_ = std::make_shared<VideoClickThrough>(VideoClickThrough::Events{
      .presenter = [self]() -> ViewController* {
        const auto view = self();
        if (!view) return nullptr;
        return view->isInterstitial() ? view->currentViewController()
                                      : view->getRootViewController();
      },
      .willLeaveApplication = call(&XVASTVideoView::XInAppBrowserWillLeaveApplication),
      .willOpenInAppBrowser =
          [self] {
            if (const auto view = self()) {
              view->delegate.tell(&XVASTVidoeViewDelegate::vastVideoViewWillOpenInAppBrowser,
                                  *view);
            }
          },
      .browserClosed = call(&XVASTVideoView::XInAppBrowserClose),
      .storeFinished = call(&XVASTVideoView::productViewControllerDidFinish)});
  XMoviePlayerDelegate events;
  addPlaybackEvents(events);
  addControlEvents(events);
  playerEvents_ = std::make_shared<XMoviePlayerDelegate>(std::move(events));
}

void XVASTVideoView::addPlaybackEvents(XMoviePlayerDelegate& events) {
  using Told = XVASTVidoeViewDelegate;
  const auto self = holder();
  // An operation with the view alone, and one with a value besides.
  const auto relay = [self](auto operation) {
    return [self, operation](XMPMoviePlayer&) {
      if (const auto view = self()) view->delegate.tell(operation, *view);
    };
  };
  const auto relayWith = [self](auto operation) {
    return [self, operation](XMPMoviePlayer&, auto value) {
      if (const auto view = self()) view->delegate.tell(operation, *view, value);
    };
  };
  events.trackEventWithEventType = [self](TrackingEventType type) {
    if (const auto view = self()) view->trackEventWithEventType(type);
  };
  events.playerDidPlayVideo = relay(&Told::vastVideoAdDidLoad);
  events.playerDidPauseVideo = relayWith(&Told::vastVideoViewDidPauseVideo);
  events.playerDidResume = relayWith(&Told::vastVideoViewDidResume);
  events.playerDidRewindWithVideo = relay(&Told::vastVideoViewDidRewind);
  events.playerDidFinishQuartile = relayWith(&Told::vastVideoViewDidFinishQuartile);
  events.playerDidSkipVideo = relayWith(&Told::vastVideoViewDidSkipVideo);
  events.playerDidEnterFullScreen = relay(&Told::VASTVideoViewDidEnterFullScreen);
  events.playerDidExitFullScreen = relay(&Told::VASTVideoViewDidExitFullScreen);
  events.playerDismissOnMemoryWarning = relay(&Told::vastVideoViewDismissOnMemoryWarning);
  events.playerDidClickVideo = [self](XMPMoviePlayer&) {
    if (const auto view = self()) view->didClickVideo();
  };
}

void XVASTVideoView::addControlEvents(XMoviePlayerDelegate& events) {
  using Told = XVASTVidoeViewDelegate;
  const auto self = holder();
  const auto call = [self](void (XVASTVideoView::*operation)()) {
    return [self, operation] {
      if (const auto view = self()) (view.get()->*operation)();
    };
  };
  events.playerPrerollDidFinishWithPlayer = [self](XMPMoviePlayer&,
                                                   const std::shared_ptr<MoviePlayer>& host) {
    if (const auto view = self()) view->delegate.tell(&Told::prerollDidFinishWithPlayer, host);
  };
  events.playerDidFinishWithErrorWithPlayer = [self](XMPMoviePlayer&, const Error& error,
                                                     const std::shared_ptr<MoviePlayer>& host) {
    if (const auto view = self()) {
      view->delegate.tell(&Told::playerDidFinishWithErrorWithPlayer, error, host);
    }
  };
  events.displayCloseButton = call(&XVASTVideoView::displayCloseButton);
  events.displayCloseButtonText = [self](const std::string& text) {
    if (const auto view = self()) view->displayCloseButtonText(text);
  };
  events.dismissVideo = call(&XVASTVideoView::dismissVideo);
  events.dismissVideoOnMemoryWarning = call(&XVASTVideoView::dismissVideoOnMemoryWarning);
  events.closeInAppBrowser = call(&XVASTVideoView::closeInAppBrowser);
}

}  // namespace tavo
