#pragma once

#include <memory>
#include <optional>
#include <string>

#include "UserInterface/WebView/BaseViews/AdViewPart.h"
#include "XMediation/XMediationInterface.h"

namespace tavo {

class Environment;
class XMediation;

// Which mediation an ad of this kind at this place may have; none: it cannot be mediated.
[[nodiscard]] std::optional<MediationType> mediationTypeFor(MobileAdTypes type,
                                                            MobileAdSubTypes subType,
                                                            PlacementType placement);

// Hands an ad view's slot to the mediation coordinator and tells the host what comes of it. Main
// thread only.
class AdViewMediation : public AdViewPart {
 public:
  // Who decides what a mediated ad that came, or did not, means for the slot.
  class Host {
   public:
    virtual ~Host() = default;
    virtual void mediatedAdDidLoad() = 0;
    virtual void mediatedAdDidFail(const Error& error) = 0;
  };

  // `stage` is the view as the coordinator knows it.
  AdViewMediation(std::shared_ptr<Environment> environment, XAdView& view, MediatedView& stage,
                  Host& host);

  // Starts mediation if the ad's kind and place allow it; returns whether it was started. Refusals
  // reach the host application inside the call.
  bool start(const std::string& placementId, const Size& size, bool isMediationMandate);

  // A new load has begun: what the network has not answered yet is not waited for any more.
  void abandonLoad();
  // The ad has left the view, and with it all interest.
  void release();

 private:
  [[nodiscard]] XMediation& coordinator() const;
  bool refuse(const char* reason);
  void makeObserver();

  // What the coordinator reports.
  void adDidReceive();
  void adRequestFailedWithError(const Error& error, MediatedView& adView);
  void adWasClicked();
  void adDidClose();
  void adWillPresent();
  void adWillLeaveApplication();

  const std::shared_ptr<Environment> environment_;
  MediatedView& stage_;
  Host& host_;
  bool isServed_ = false;  // the coordinator knows the view
  std::shared_ptr<const XMediationInterfaceDelegate> events_;
};

}  // namespace tavo
