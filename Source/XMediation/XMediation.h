#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Configuration/XAdSlotConfiguration.h"
#include "XMediation/XMediationInterface.h"

namespace tavo {

// Hands a slot to an external ad network: checks whether that is allowed, gives the right adapter
// its targeting data and relays the adapter's events to the ad view. One per process; it serves the
// view that asked last. Main thread only.
class XMediation : public XMediationInterface {
 public:
  [[nodiscard]] static XMediation& sharedInstance();

  XMediation();

  std::shared_ptr<XAdSlotConfiguration> slotConfiguration;

  // The adapters by type; null where the application has no network for it.
  std::shared_ptr<XMediationInterface> bannerAdapter;
  std::shared_ptr<XMediationInterface> interstitialAdapter;

  // None when mediation may start, else why not.
  [[nodiscard]] std::optional<std::string> canMediateWithPlacementId(const std::string& placementId,
                                                                     const Size& size) const;

  void loadAdWithXAdView(const std::shared_ptr<MediatedView>& adView,
                         const std::string& placementId, const Size& size,
                         ViewController* rootViewController) override;
  void releaseMemory() override;

 private:
  void refuse(MediatedView& adView, const std::string& reason);
  void copyTargeting(XMediationInterface& adapter) const;

  std::shared_ptr<const XMediationInterfaceDelegate> relay_;
};

}  // namespace tavo
