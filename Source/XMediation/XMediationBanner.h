#pragma once

#include "XMediation/NetworkAdapter.h"

namespace tavo {

// Brings banners of the external network into ad views. One per process; main thread only.
class XMediationBanner : public NetworkAdapter {
 public:
  using NetworkAdapter::NetworkAdapter;

  [[nodiscard]] static XMediationBanner& sharedInstance();

  // The size that the network is asked for, in points: that of the last load.
  float bannerWidth = 0;
  float bannerHeight = 0;

  void loadAdWithXAdView(const std::shared_ptr<MediatedView>& adView,
                         const std::string& placementId, const Size& size,
                         ViewController* rootViewController) override;
  void releaseMemory() override;
};

// Where the centre of the network's view stands, in the coordinates of an ad view with this frame.
[[nodiscard]] Point mediatedBannerCenter(const Rect& adViewFrame);

}  // namespace tavo
