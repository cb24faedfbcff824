#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <tavo/Error.h>
#include <tavo/Geometry.h>
#include <tavo/MoviePlayer.h>
#include <tavo/Url.h>
#include <tavo/VastAd.h>
#include <tavo/VastCompanionOffer.h>
#include <tavo/WebView.h>

namespace tavo {

class XAdManager;

// What an ad manager tells the ad view. Main thread.
struct XAdManagerDelegate {
  // The creative is on the screen.
  std::function<void(XAdManager&)> adManagerDidLoad{};
  // The answer carries no ad.
  std::function<void(XAdManager&)> adManagerDidReceiveEmptyAd{};
  // No usable ad, a failed exchange or a failed renderer; the error may be none.
  std::function<void(const std::optional<Error>&)> adManagerDidFailWithError{};
  // The page has loaded: may it be shown, and its impression counted?
  std::function<bool(XAdManager&, WebView&)> adManagerWebViewDidFinishRender{};
  // The creative opened an address that belongs to the host.
  std::function<void(XAdManager&, const Url&)> adManagerWebViewOpenCustomURL{};
  // A creative was placed: the refresh timer may run.
  std::function<void()> refreshAd{};
  // The answer hands the slot to an external network under this placement, in this size (points);
  // the last is true when the server demands it. Returns whether mediation was started.
  std::function<bool(const std::string& placementId, const Size& size, bool isMediationMandate)>
      startMediationWithAdView{};

  // What a video reports; times are seconds into it.
  std::function<void(XAdManager&)> adManagerWillLeaveAppliation{};
  std::function<void(XAdManager&)> adManagerWillOpenInAppBrowser{};
  std::function<void(XAdManager&)> adManagerDidCloseInAppBrowser{};
  std::function<void(XAdManager&, const Url&)> adManagerDidClickOnAdWithURL{};
  std::function<void(XAdManager&, double)> adManagerDidPauseVideo{};
  std::function<void(XAdManager&, double)> adManagerDidResume{};
  std::function<void(XAdManager&, double)> adManagerDidSkipVideo{};
  // 0, 1, 2 for a quarter, a half and three quarters.
  std::function<void(XAdManager&, int)> adManagerDidFinishQuartile{};
  std::function<void(XAdManager&)> adManagerDidEnterFullScreen{};
  std::function<void(XAdManager&)> adManagerDidExitFullScreen{};
  std::function<void(XAdManager&)> adManagerDidRewind{};
  // In the standards mode: a film begins, and the companions that it brings.
  std::function<void(const VastAd&)> adManagerDidBeginVastAd{};
  std::function<void(const std::vector<std::shared_ptr<VastCompanionOffer>>&)>
      adManagerDidOfferCompanions{};
  // A pre-roll is over; the host's player has its own content back.
  std::function<void(const std::shared_ptr<MoviePlayer>&)> prerollDidFinishPlayingWithPlayer{};
  // It is over because memory is low; the operation above follows.
  std::function<void()> prerollDidFinishOnMemoryWarning{};
};

}  // namespace tavo
