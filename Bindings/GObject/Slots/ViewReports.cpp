#include "Slots/ViewReports.h"

#include <tavo/XAdView.h>

namespace tavo::gobject {

XAdViewDelegate viewReports(SlotCore& core) {
  const auto tells = [&core](SlotSignal signal) {
    return [&core, signal](XAdView&) { core.tell(signal); };
  };
  return XAdViewDelegate{
      .xAdViewDidLoad = [&core](XAdView&) { core.tellLoaded(); },
      .xAdViewDidFailWithError =
          [&core](XAdView&, const std::optional<Error>& error) { core.tellFailed(errorOf(error)); },
      .xAdViewDidClickOnAd = [&core](XAdView&) { core.tellClicked(); },
      .xAdViewWillOpenInInAppBrowser = tells(SlotSignal::browserOpened),
      .xAdViewWillCloseInAppBrowser = tells(SlotSignal::browserClosed),
      .xAdViewWillLeaveApplication = tells(SlotSignal::leavesApplication),
      .xAdViewDidDismissOnMemoryWarning = tells(SlotSignal::memoryLow),
      .xAdViewDidFinishQuartile = [&core](XAdView&, int quartile) { core.tellQuartile(quartile); },
      .xAdViewDidPauseVideo = tells(SlotSignal::videoPaused),
      .xAdViewDidResume = tells(SlotSignal::videoResumed),
      .xAdViewDidSkipVideo = tells(SlotSignal::videoSkipped),
      .xAdViewDidRewind = tells(SlotSignal::videoRewound),
      .xAdViewDidEnterFullScreen = tells(SlotSignal::fullScreenEntered),
      .xAdViewDidExitFullScreen = tells(SlotSignal::fullScreenLeft),
      .xAdViewShouldDisplayAdOnWebViewFinishRender =
          [&core](XAdView&, WebView&) { return core.mayShowPage(); },
      .xAdViewShouldHandleCustomURL =
          [&core](XAdView&, const Url& url) {
            core.tellCustomUrl(url.text());
            return true;
          },
      .xAdViewShouldHandleClickToAction =
          [&core](XAdView&, ClickToAction action, const ClickToActionParameters& parameters) {
            return core.mayPerform(action, parameters);
          }};
}

}  // namespace tavo::gobject
