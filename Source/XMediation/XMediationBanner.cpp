#include "XMediation/XMediationBanner.h"

#include <stdexcept>

#include <tavo/AdNetworkClasses.h>
#include <tavo/CVBannerAdView.h>

#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "Runtime/Environment.h"
#include "Runtime/LivingEnvironment.h"

namespace tavo {

namespace {

class MediatedBanner : public MediatedAd {
 public:
  using MediatedAd::MediatedAd;

  // Puts the network's view into the slot, in place of everything else.
  void fill(View& slot, std::shared_ptr<View> view) {
    if (!view) throw std::logic_error{"a banner without a view"};
    slot.removeAllSubviews();
    view_ = std::move(view);
    slot.addSubview(view_);
  }

 protected:
  void takeAway() override {
    if (view_) view_->removeFromSuperview();
  }
  // Another ad in the slot has pushed this one out. The network may have moved it elsewhere.
  [[nodiscard]] bool isInPlace() const override {
    return view_ == nullptr || view_->superview() != nullptr;
  }

 private:
  std::shared_ptr<View> view_;  // null until it stands in the slot
};

void place(CVBannerAdView& banner, const Rect& adViewFrame) {
  banner.setFrame({0, 0, adViewFrame.width, adViewFrame.height});
  banner.setCenter(mediatedBannerCenter(adViewFrame));
}

}  // namespace

// Quirk: the ad view's own place counts for the horizontal centre, so a banner in a view that does
// not stand at the left edge is moved to the right by half of that distance.
Point mediatedBannerCenter(const Rect& adViewFrame) {
  return {(adViewFrame.x + adViewFrame.width) * 0.5, adViewFrame.height * 0.5};
}

XMediationBanner& XMediationBanner::sharedInstance() {
  return livingEnvironment()->shared<XMediationBanner>();
}

void XMediationBanner::loadAdWithXAdView(const std::shared_ptr<MediatedView>& adView,
                                         const std::string& placementId, const Size& size,
                                         ViewController* rootViewController) {
  const OperationLog log{
      "-[XMediationBanner loadAdWithXAdView:placementId:size:rootViewController:]"};
  platformLog("Loading banner ad from Corvane Mediation Network for placementId: " + placementId);
  const auto banner = makeNetworkAd<CVBannerAdView>();
  if (!banner) return refuse(*adView);
  const auto ad = std::make_shared<MediatedBanner>(*this, runLoop(), adView, banner);
  keep(ad, *adView);
  bannerWidth = static_cast<float>(size.width);
  bannerHeight = static_cast<float>(size.height);
  View& slot = adView->sceneView();
  ad->attempt([&] {
    place(*banner, slot.frame());
    banner->setPlacementId(placementId);
    banner->setRootViewController(rootViewController != nullptr
                                      ? rootViewController->weak_from_this()
                                      : std::weak_ptr<ViewController>{});
    banner->setAdSize({bannerWidth, bannerHeight});
    banner->setOpensInNativeBrowser(!shouldOpenInAppBrowser);
    banner->setDelegate(ad->delegate());
    banner->setAutoRefreshInterval(0);
    passTargeting(*banner);
    const auto view = banner->view();
    // The network may have failed already, inside one of these calls.
    if (ad->isOver()) return;
    ad->fill(slot, view);
    banner->loadAd();
  });
}

void XMediationBanner::releaseMemory() {
  const OperationLog log{"-[XMediationBanner releaseMemory]"};
  releaseAll();
}

}  // namespace tavo
