#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <tavo/ClickToAction.h>
#include <tavo/Error.h>
#include <tavo/MoviePlayer.h>
#include <tavo/Url.h>
#include <tavo/VastAd.h>
#include <tavo/VastCompanionOffer.h>
#include <tavo/WebView.h>

namespace tavo {

class XAdView;

// What an ad view tells its host. Every operation is optional; all of them are called on the main
// thread with the view as first argument. A host may do anything in return, also drop the view.
struct XAdViewDelegate {
  // An ad is on the screen: a page or a picture has loaded, a video is ready, or a mediated ad has
  // arrived.
  std::function<void(XAdView&)> xAdViewDidLoad{};
  // There is no ad to show: the server has none (code 1002 in sdkErrorDomain), the request failed
  // (1003 offline, or the transport's error), the picture could not be read (1006), the host
  // refused the page (1007), or mediation could not be started (1008). None when the exchange ended
  // without an answer and without an error.
  std::function<void(XAdView&, const std::optional<Error>&)> xAdViewDidFailWithError{};
  // A video ad or a mediated ad was clicked. Clicks on pages and pictures show as the next ones.
  std::function<void(XAdView&)> xAdViewDidClickOnAd{};
  // The in-app browser is about to be shown.
  std::function<void(XAdView&)> xAdViewWillOpenInInAppBrowser{};
  // The in-app browser closes, or is closed because the device was locked.
  std::function<void(XAdView&)> xAdViewWillCloseInAppBrowser{};
  // A click leaves the application: it was handed to the system.
  std::function<void(XAdView&)> xAdViewWillLeaveApplication{};
  // An ad expanded to the whole screen.
  std::function<void(XAdView&)> xAdDidExpand{};
  // An expanded ad returned to its place, by its own request, its close button, or because its page
  // was lost. A resized ad that returns is not told of.
  std::function<void(XAdView&)> xAdDidCollapse{};
  // The view let go of its content because the device ran low on memory, or a pre-roll ended so.
  std::function<void(XAdView&)> xAdViewDidDismissOnMemoryWarning{};
  // A pre-roll ended, or there was none; the host's player has its own content back.
  std::function<void(XAdView&, const std::shared_ptr<MoviePlayer>&)>
      xAdViewPrerollDidFinishWithPlayer{};
  // A video reached a quartile: 0, 1, 2 for a quarter, a half and three quarters.
  std::function<void(XAdView&, int)> xAdViewDidFinishQuartile{};
  // What happens to a video's playback: paused and going on by the user or the system, skipped,
  // played again, and lifted to the whole screen and back.
  std::function<void(XAdView&)> xAdViewDidPauseVideo{};
  std::function<void(XAdView&)> xAdViewDidResume{};
  std::function<void(XAdView&)> xAdViewDidSkipVideo{};
  std::function<void(XAdView&)> xAdViewDidRewind{};
  std::function<void(XAdView&)> xAdViewDidEnterFullScreen{};
  std::function<void(XAdView&)> xAdViewDidExitFullScreen{};
  // A page has loaded and is about to be shown. True (and a host without the operation) shows it
  // and counts its impression; false ends the ad with code 1007.
  std::function<bool(XAdView&, WebView&)> xAdViewShouldDisplayAdOnWebViewFinishRender{};
  // The creative opened a URL of the scheme "app", which belongs to the host. The answer is not
  // used; the SDK does nothing more with the URL.
  std::function<bool(XAdView&, const Url&)> xAdViewShouldHandleCustomURL{};
  // Before a call, a message, a mail, an App Store page or a calendar entry: true (and a host
  // without the operation) lets the SDK carry the action out, false leaves it to the host.
  std::function<bool(XAdView&, ClickToAction, const ClickToActionParameters&)>
      xAdViewShouldHandleClickToAction{};
  // A full-screen video that was shown from this view was dismissed, or was so on low memory.
  std::function<void(XAdView&)> interstitialAdDismissed{};
  std::function<void(XAdView&)> interstitialAdDismissedOnMemoryWarning{};
  // In the standards mode: a film of a VAST answer begins, with its first frame. The record says
  // what it is, who wants to measure it, and where its captions are; copy what has to last. A pod
  // tells of each of its films.
  std::function<void(XAdView&, const VastAd&)> xAdViewDidBeginVastAd{};
  // In the standards mode, right after it: the companions that fit into one of the slot's
  // `companionSizes`, the largest first. Not called without any.
  std::function<void(XAdView&, const std::vector<std::shared_ptr<VastCompanionOffer>>&)>
      xAdViewDidOfferCompanions{};
};

}  // namespace tavo
