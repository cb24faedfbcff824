#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <tavo/AdNetworkClasses.h>

#include "Runtime/Environment.h"
#include "XMediation/MediatedAd.h"
#include "XMediation/XMediationInterface.h"

namespace tavo {

// What the adapters of banners and interstitials do alike: keep the ads that they asked the network
// for, one for each view at most, and hand over the targeting data. Main thread only.
class NetworkAdapter : public XMediationInterface {
 public:
  explicit NetworkAdapter(Environment& environment) : environment_{environment} {}

  void releaseAdOf(const MediatedView& adView) override;
  void abandonLoadOf(const MediatedView& adView) override;

 protected:
  // Keeps the ad, in place of an earlier one of its view.
  void keep(const std::shared_ptr<MediatedAd>& ad, const MediatedView& adView);
  void releaseAll();

  // There is no class to make the ad of.
  void refuse(MediatedView& adView);
  void passTargeting(CVAd& ad) const;
  // A new object of the network's class; null when there is none.
  template <typename Class>
  [[nodiscard]] std::shared_ptr<Class> makeNetworkAd() const {
    return environment_.shared<AdNetworkClasses>().template make<Class>();
  }
  [[nodiscard]] const std::shared_ptr<RunLoop>& runLoop() const {
    return environment_.platform().runLoop;
  }

 private:
  void abandonWhere(const std::function<bool(const MediatedAd&)>& unwanted);

  Environment& environment_;
  std::vector<std::shared_ptr<MediatedAd>> ads_;
};

// The network's code for the code in the settings.
[[nodiscard]] int networkGender(std::int32_t mediationGender);

}  // namespace tavo
