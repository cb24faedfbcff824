#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include <tavo/Error.h>
#include <tavo/Geometry.h>
#include <tavo/Location.h>
#include <tavo/Observer.h>
#include <tavo/ViewController.h>

#include "XMediation/MediatedView.h"

namespace tavo {

class XMediationInterface;

enum class MediationType { banner = 0, interstitial = 1 };

// What happens to a mediated ad. The first argument is whoever reports, the last the ad view. Main
// thread.
struct XMediationInterfaceDelegate {
  using Event = std::function<void(XMediationInterface&, MediatedView&)>;

  Event XMediationInterfaceAdDidReceiveWithXAdView{};
  std::function<void(XMediationInterface&, const Error&, MediatedView&)>
      XMediationInterfaceAdRequestFailedWithErrorXAdView{};
  Event XMediationInterfaceAdWasClickedWithXAdView{};
  Event XMediationInterfaceAdWillCloseWithXAdView{};
  Event XMediationInterfaceAdDidCloseWithXAdView{};
  Event XMediationInterfaceAdWillPresentWithXAdView{};
  Event XMediationInterfaceAdDidPresentWithXAdView{};
  Event XMediationInterfaceAdWillLeaveApplicationWithXAdView{};
};

// What the coordinator and its adapters have in common: the settings of one mediated request and
// the observer of its events. Main thread only.
class XMediationInterface {
 public:
  virtual ~XMediationInterface() = default;

  Observer<XMediationInterfaceDelegate> delegate;
  MediationType xMediationType = MediationType::banner;
  bool shouldOpenInAppBrowser = false;  // false: clicks leave the application
  std::int32_t mediationAge = -1;       // negative: not known
  std::int32_t mediationGender = -1;    // -1: not known
  std::map<std::string, std::string> mediationKeywords;
  std::optional<Location> userLocation;
  bool isMediationMandate = false;  // the server demands mediation, whatever the switches say

  // Fetches an ad for `adView` from the network, under its name `placementId`, of `size` points.
  // Outcomes reach the delegate, refusals inside this call.
  virtual void loadAdWithXAdView(const std::shared_ptr<MediatedView>& adView,
                                 const std::string& placementId, const Size& size,
                                 ViewController* rootViewController) = 0;
  // Drops what is held of the network.
  virtual void releaseMemory() = 0;
  // The same for one view, which hears nothing more of its mediated ad.
  virtual void releaseAdOf(const MediatedView& adView) = 0;
  // The same if the ad is still being waited for.
  virtual void abandonLoadOf(const MediatedView& adView) = 0;
};

}  // namespace tavo
