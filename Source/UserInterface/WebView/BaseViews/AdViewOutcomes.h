#pragma once

#include <memory>
#include <optional>
#include <string>

#include "AdManager/XAdManagerDelegate.h"
#include "UserInterface/WebView/BaseViews/AdViewLoader.h"
#include "UserInterface/WebView/BaseViews/AdViewMediation.h"
#include "UserInterface/WebView/BaseViews/AdViewPart.h"

namespace tavo {

// What comes of an ad view's loads: turns the reports of the ad manager and of the mediated network
// into those that the host hears, and shows the picture of an empty slot. Main thread only.
class AdViewOutcomes : public AdViewPart, private AdViewMediation::Host {
 public:
  AdViewOutcomes(std::shared_ptr<Environment> environment, XAdView& view, AdViewLoader& loader,
                 MediatedView& stage);

  // What ad managers report to; made once the view is shared, and the same for all of them.
  [[nodiscard]] const std::shared_ptr<const XAdManagerDelegate>& managerEvents();

  // A load begins: how the last one ended is forgotten.
  void forgetLastLoad();
  // A request follows: a mediated ad that is still loading is not waited for any more.
  void abandonMediation() { mediation_.abandonLoad(); }
  // The ad has left the view.
  void release() { mediation_.release(); }

 private:
  // What the ad manager reports.
  void adManagerDidLoad();
  void adManagerDidReceiveEmptyAd();
  void adManagerDidFailWithError(const std::optional<Error>& error);
  [[nodiscard]] bool adManagerWebViewDidFinishRender(WebView& webView);
  void adManagerWebViewOpenCustomURL(const Url& url);
  void refreshAd();
  bool startMediationWithAdView(const std::string& placementId, const Size& size,
                                bool isMediationMandate);
  void prerollDidFinishPlayingWithPlayer(const std::shared_ptr<MoviePlayer>& player);

  // AdViewMediation::Host
  void mediatedAdDidLoad() override;
  void mediatedAdDidFail(const Error& error) override;

  void showBackgroundImage();

  const std::shared_ptr<Environment> environment_;
  AdViewLoader& loader_;
  AdViewMediation mediation_;
  bool mediatedAdDidFailToLoad_ = false;  // stops further mediation and the ordinary failure path
  std::shared_ptr<const XAdManagerDelegate> managerEvents_;
};

}  // namespace tavo
