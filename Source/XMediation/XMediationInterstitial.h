#pragma once

#include "XMediation/NetworkAdapter.h"

namespace tavo {

// Brings full-screen ads of the external network above the application. One per process; main
// thread only.
class XMediationInterstitial : public NetworkAdapter {
 public:
  using NetworkAdapter::NetworkAdapter;

  [[nodiscard]] static XMediationInterstitial& sharedInstance();

  // The ad is displayed over `rootViewController` as soon as it is there. `size` has no meaning.
  void loadAdWithXAdView(const std::shared_ptr<MediatedView>& adView,
                         const std::string& placementId, const Size& size,
                         ViewController* rootViewController) override;
  void releaseMemory() override;
};

}  // namespace tavo
