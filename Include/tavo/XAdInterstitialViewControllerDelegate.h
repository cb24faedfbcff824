#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <tavo/ClickToAction.h>
#include <tavo/Error.h>
#include <tavo/Url.h>
#include <tavo/VastAd.h>
#include <tavo/VastCompanionOffer.h>
#include <tavo/WebView.h>

namespace tavo {

class XAdInterstitialViewController;

// What an interstitial tells its host. Every operation is optional, though a host without the first
// one never learns when to present. All are called on the main thread with the controller as first
// argument. A host may do anything in return, also drop the controller, this table or both.
struct XAdInterstitialViewControllerDelegate {
  // The ad has loaded: present the controller now. Null for a mediated ad, which the network
  // presents itself.
  std::function<void(XAdInterstitialViewController*)> xAdInterstitialDidLoad{};
  // There is no ad to show, or the one on the screen is lost; codes as in XAdViewDelegate. A
  // controller that is presented leaves by itself shortly afterwards, without a further report.
  std::function<void(XAdInterstitialViewController&, const std::optional<Error>&)>
      xAdInterstitialDidFailWithError{};
  // The user clicked a video or a mediated ad. Clicks on pages and pictures show as the browser
  // that opens, or as the application that is left.
  std::function<void(XAdInterstitialViewController&)> xAdInterstitialDidClick{};
  // A video fills the screen, or no longer does. The first is told only to hosts that have the
  // second.
  std::function<void(XAdInterstitialViewController&)> xAdInterstitialDidEnterFullScreen{};
  std::function<void(XAdInterstitialViewController&)> xAdInterstitialDidExitFullScreen{};
  // What happens to a video's playback: skipped, paused and going on by the user or the system, or
  // played again. Quartiles are 0, 1, 2 for a quarter, a half and three quarters.
  std::function<void(XAdInterstitialViewController&)> xAdInterstitialDidSkipVideo{};
  std::function<void(XAdInterstitialViewController&, int)> xAdInterstitialDidFinishQuartile{};
  std::function<void(XAdInterstitialViewController&)> xAdInterstitialDidPauseVideo{};
  std::function<void(XAdInterstitialViewController&)> xAdInterstitialDidResume{};
  std::function<void(XAdInterstitialViewController&)> xAdInterstitialDidRewind{};
  // The interstitial has been closed: it is off the screen, and the host goes on. Told once.
  std::function<void(XAdInterstitialViewController&)> xAdInterstitialDismissed{};
  // It was closed because memory is low; the operation above follows. A host without this one
  // hears of neither.
  std::function<void(XAdInterstitialViewController&)> xAdInterstitialDidDismissOnMemoryWarning{};
  // The in-app browser is about to be shown above the ad, and closes again.
  std::function<void(XAdInterstitialViewController&)> xAdInterstitialWillOpenInInAppBrowser{};
  std::function<void(XAdInterstitialViewController&)> xAdInterstitialWillCloseInAppBrowser{};
  // A click leaves the application: it was handed to the system. The ad stays on the screen.
  std::function<void(XAdInterstitialViewController&)> xAdInterstitialWillLeaveApplication{};
  // The page has loaded and is about to be shown; false refuses it, which ends in code 1007.
  std::function<bool(XAdInterstitialViewController&, WebView&)>
      xAdInterstitialViewControllerShouldDisplayAdOnWebViewFinishRender{};
  // Before a call, a message, a mail, a store page or a calendar entry: true (and a host without
  // the operation) lets the SDK carry it out, false means that the host has taken it over.
  std::function<bool(XAdInterstitialViewController&, ClickToAction, const ClickToActionParameters&)>
      xAdInterstitialViewControllerShouldHandleClickToAction{};
  // The creative opened a URL of the scheme "app", which belongs to the host.
  std::function<void(XAdInterstitialViewController&, const Url&)>
      xAdInterstitialViewControllerShouldHandleCustomURL{};
  // In the standards mode: a film of a VAST answer begins, with its first frame. The record says
  // what it is, who wants to measure it, and where its captions are; copy what has to last. A pod
  // tells of each of its films.
  std::function<void(XAdInterstitialViewController&, const VastAd&)>
      xAdInterstitialDidBeginVastAd{};
  // In the standards mode, right after it: the companions that fit into one of the slot's
  // `companionSizes`, the largest first. Not called without any.
  std::function<void(XAdInterstitialViewController&,
                     const std::vector<std::shared_ptr<VastCompanionOffer>>&)>
      xAdInterstitialDidOfferCompanions{};
};

}  // namespace tavo
