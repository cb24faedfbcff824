#pragma once

#include <memory>
#include <optional>
#include <string>

#include <tavo/MobileAdTypes.h>
#include <tavo/PlacementType.h>
#include <tavo/XAdSlotConfiguration.h>

#include "XMediation/XMediationInterface.h"

namespace tavo {

// Which mediation an ad of this kind at this place may have; none: it cannot be mediated.
[[nodiscard]] std::optional<MediationType> mediationTypeFor(MobileAdTypes type,
                                                            MobileAdSubTypes subType,
                                                            PlacementType placement);

// Hands an ad view's slot to the mediation coordinator and hears what comes of it. Belongs to one
// view; main thread only.
class AdViewMediation {
 public:
  // What mediation needs of its view, beside what MediatedView offers.
  class Host {
   public:
    virtual ~Host() = default;
    [[nodiscard]] virtual std::shared_ptr<MediatedView> mediatedView() = 0;
    [[nodiscard]] virtual std::optional<MediationType> mediationType() const = 0;
    // Whether the application hears of loaded interstitials, which mediation relies on.
    [[nodiscard]] virtual bool isRequiredDelegateImplementedByPublisher() const = 0;
    [[nodiscard]] virtual std::shared_ptr<XAdSlotConfiguration> mediationSettings() const = 0;
    [[nodiscard]] virtual ViewController* mediationRootController() = 0;
    virtual void mediatedAdDidLoad() = 0;
    virtual void mediatedAdDidFail(const Error& error) = 0;
    virtual void mediationWasRefused(const Error& error) = 0;
    virtual void mediatedAdWasClicked() = 0;
    virtual void mediatedAdWillPresent() = 0;
    virtual void mediatedAdDidClose() = 0;
    virtual void mediatedAdWillLeaveApplication() = 0;
  };

  explicit AdViewMediation(Host& host) : host_{host} {}

  // Starts mediation if the ad's kind and place allow it; returns whether it was started. Refusals
  // reach the host inside the call.
  bool start(const std::string& placementId, const Size& size, bool isMediationMandate);

  // A new load has begun: what the network has not answered yet is not waited for any more.
  void abandonLoad();
  // The ad has left the view, and with it all interest.
  void release();

 private:
  bool refuse(const char* reason);
  void makeObserver();

  Host& host_;
  const MediatedView* served_ = nullptr;  // the view, once the coordinator knows it
  std::shared_ptr<const XMediationInterfaceDelegate> events_;
};

}  // namespace tavo
