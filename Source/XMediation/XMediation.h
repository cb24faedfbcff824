#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

#include <tavo/XAdSlotConfiguration.h>

#include "Runtime/Environment.h"
#include "XMediation/XMediationInterface.h"

namespace tavo {

// Hands a slot to an external ad network: checks whether that is allowed, gives the right adapter
// its targeting data and relays the adapter's events to the ad view. One per process; it serves any
// number of views, one ad each. Main thread only.
class XMediation : public XMediationInterface {
 public:
  [[nodiscard]] static XMediation& sharedInstance();

  explicit XMediation(Environment& environment);

  std::shared_ptr<XAdSlotConfiguration> slotConfiguration;

  // None when mediation may start, else why not.
  [[nodiscard]] std::optional<std::string> canMediateWithPlacementId(const std::string& placementId,
                                                                     const Size& size) const;

  void loadAdWithXAdView(const std::shared_ptr<MediatedView>& adView,
                         const std::string& placementId, const Size& size,
                         ViewController* rootViewController) override;
  void releaseMemory() override;
  void releaseAdOf(const MediatedView& adView) override;
  void abandonLoadOf(const MediatedView& adView) override;

 private:
  using Table = XMediationInterfaceDelegate;

  void makeRelay();
  [[nodiscard]] XMediationInterface& banner() const;
  [[nodiscard]] XMediationInterface& interstitial() const;
  void refuse(MediatedView& adView, const std::string& reason);
  // The adapter of the present type, ready for a load; null for a type that has none.
  [[nodiscard]] XMediationInterface* adapter() const;
  void copyTargeting(XMediationInterface& adapter) const;
  // Who was the delegate when the view's ad was asked for.
  [[nodiscard]] Observer<Table> observerOf(const MediatedView& adView) const;

  Environment& environment_;
  std::map<const MediatedView*, Observer<Table>> observers_;
  std::shared_ptr<const Table> relay_;
};

}  // namespace tavo
