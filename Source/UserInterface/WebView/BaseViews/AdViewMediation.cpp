#include "UserInterface/WebView/BaseViews/AdViewMediation.h"

#include <tavo/SdkErrors.h>

#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "XMediation/XMediation.h"

namespace tavo {

std::optional<MediationType> mediationTypeFor(MobileAdTypes type, MobileAdSubTypes subType,
                                              PlacementType placement) {
  using Sub = MobileAdSubTypes;
  if (type == MobileAdTypes::banner && placement == PlacementType::inlined) {
    const bool mediates = subType == Sub::unknown || subType == Sub::image ||
                          subType == Sub::richMediaBanner || subType == Sub::redirectImageBanner ||
                          subType == Sub::redirectHtmlBanner;
    if (mediates) return MediationType::banner;
  }
  if (type == MobileAdTypes::interstitial && placement == PlacementType::interstitial) {
    const bool mediates = subType == Sub::unknown || subType == Sub::richMediaInterstitial ||
                          subType == Sub::vastInterstitial || subType == Sub::redirectInterstitial;
    if (mediates) return MediationType::interstitial;
  }
  return std::nullopt;
}

bool AdViewMediation::refuse(const char* reason) {
  platformLog(reason);
  host_.mediationWasRefused(makeError(SdkError::mediationImpossible, reason));
  return false;
}

bool AdViewMediation::start(const std::string& placementId, const Size& size,
                            bool isMediationMandate) {
  const OperationLog log{
      "-[XAdView startMediationWithAdView:placementId:size:isMediationMandate:]"};
  const auto type = host_.mediationType();
  if (!type) return refuse("Failed to retrieve ad from TAVO. Cannot mediate for Preroll ads.");
  auto& coordinator = XMediation::sharedInstance();
  const auto settings = host_.mediationSettings();
  if (*type == MediationType::banner) {
    platformLog("TAVOSDK: Mediating for Banner AdRequest");
    coordinator.shouldOpenInAppBrowser =
        settings && settings->shouldOpenClickThroughURLInAppBrowser;
  } else if (host_.isRequiredDelegateImplementedByPublisher()) {
    platformLog("TAVOSDK: Mediating for Interstitial AdRequest");
  } else {
    return refuse(
        "Failed to retrieve ad from TAVO. Cannot mediate as required delegate "
        "xAdInterstitialDidLoad is not implemented.");
  }
  coordinator.xMediationType = *type;
  makeObserver();
  coordinator.delegate.set(events_);
  coordinator.isMediationMandate = isMediationMandate;
  coordinator.slotConfiguration = settings;
  platformLog("Initializing Mediation Network.");
  const auto view = host_.mediatedView();
  served_ = view.get();
  coordinator.loadAdWithXAdView(view, placementId, size, host_.mediationRootController());
  return true;
}

// A view that never asked for mediation has nothing to end.
void AdViewMediation::abandonLoad() {
  if (served_ != nullptr) XMediation::sharedInstance().abandonLoadOf(*served_);
}

void AdViewMediation::release() {
  if (served_ != nullptr) XMediation::sharedInstance().releaseAdOf(*served_);
  served_ = nullptr;
}

void AdViewMediation::makeObserver() {
  if (events_) return;
  const auto relay = [this](const char* text, void (Host::*report)()) {
    return [this, text, report](XMediationInterface&, MediatedView&) {
      const auto held = host_.mediatedView();
      platformLog(std::string{"Corvane Mediation Network: "} + text);
      (host_.*report)();
    };
  };
  events_ = std::make_shared<XMediationInterfaceDelegate>(XMediationInterfaceDelegate{
      .XMediationInterfaceAdDidReceiveWithXAdView =
          relay("ad retrieved successfully.", &Host::mediatedAdDidLoad),
      .XMediationInterfaceAdRequestFailedWithErrorXAdView =
          [this](XMediationInterface&, const Error& error, MediatedView&) {
            const auto held = host_.mediatedView();
            platformLog("Corvane Mediation Network: Failed to retrieve ad.");
            host_.mediatedAdDidFail(error);
          },
      .XMediationInterfaceAdWasClickedWithXAdView =
          relay("ad clicked.", &Host::mediatedAdWasClicked),
      .XMediationInterfaceAdDidCloseWithXAdView = relay("ad closed.", &Host::mediatedAdDidClose),
      .XMediationInterfaceAdWillPresentWithXAdView =
          relay("opening InAppBrowser.", &Host::mediatedAdWillPresent),
      .XMediationInterfaceAdWillLeaveApplicationWithXAdView =
          relay("opening external browser.", &Host::mediatedAdWillLeaveApplication)});
}

}  // namespace tavo
