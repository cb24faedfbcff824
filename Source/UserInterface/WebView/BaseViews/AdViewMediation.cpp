#include "UserInterface/WebView/BaseViews/AdViewMediation.h"

#include <utility>

#include <tavo/SdkErrors.h>

#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "Runtime/Environment.h"
#include "Runtime/Relay.h"
#include "UserInterface/WebView/BaseViews/XAdViewOnlyForSubClassEyesDelegate.h"
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

AdViewMediation::AdViewMediation(std::shared_ptr<Environment> environment, XAdView& view,
                                 MediatedView& stage, Host& host)
    : AdViewPart{view}, environment_{std::move(environment)}, stage_{stage}, host_{host} {}

XMediation& AdViewMediation::coordinator() const { return environment_->shared<XMediation>(); }

bool AdViewMediation::refuse(const char* reason) {
  platformLog(reason, LogLevel::warning);
  tell(&Told::xAdViewDidFailWithError,
       std::optional{makeError(SdkError::mediationImpossible, reason)});
  return false;
}

bool AdViewMediation::start(const std::string& placementId, const Size& size,
                            bool isMediationMandate) {
  const OperationLog log{
      "-[XAdView startMediationWithAdView:placementId:size:isMediationMandate:]"};
  const auto type =
      mediationTypeFor(view().mobileAdTypes(), view().mobileAdSubTypes(), view().placementType());
  if (!type) return refuse("Failed to retrieve ad from TAVO. Cannot mediate for Preroll ads.");
  const auto settings = view().slotConfiguration();
  // Interstitials take the network's default, not the last banner's choice.
  coordinator().shouldOpenInAppBrowser =
      *type == MediationType::banner && settings->shouldOpenClickThroughURLInAppBrowser;
  if (*type == MediationType::banner) {
    platformLog("TAVOSDK: Mediating for Banner AdRequest");
  } else if (view()
                 .pDelegate
                 .ask(&XAdViewOnlyForSubClassEyesDelegate::isRequiredDelegateImplementedByPublisher)
                 .value_or(false)) {
    platformLog("TAVOSDK: Mediating for Interstitial AdRequest");
  } else {
    return refuse(
        "Failed to retrieve ad from TAVO. Cannot mediate as required delegate "
        "xAdInterstitialDidLoad is not implemented.");
  }
  makeObserver();
  coordinator().xMediationType = *type;
  coordinator().delegate.set(events_);
  coordinator().isMediationMandate = isMediationMandate;
  coordinator().slotConfiguration = settings;
  platformLog("Initializing Mediation Network.");
  isServed_ = true;
  coordinator().loadAdWithXAdView(sharedPart(hold(), stage_), placementId, size,
                                  view().getRootViewController());
  return true;
}

// A view that never asked for mediation has nothing to end.
void AdViewMediation::abandonLoad() {
  if (isServed_) coordinator().abandonLoadOf(stage_);
}

void AdViewMediation::release() {
  if (std::exchange(isServed_, false)) coordinator().releaseAdOf(stage_);
}

void AdViewMediation::makeObserver() {
  if (events_) return;
  using Self = AdViewMediation;
  const Relay<Self> relay{sharedPart(hold(), *this)};
  events_ = std::make_shared<XMediationInterfaceDelegate>(XMediationInterfaceDelegate{
      .XMediationInterfaceAdDidReceiveWithXAdView = relay.call(&Self::adDidReceive),
      .XMediationInterfaceAdRequestFailedWithErrorXAdView =
          relay.call(&Self::adRequestFailedWithError),
      .XMediationInterfaceAdWasClickedWithXAdView = relay.call(&Self::adWasClicked),
      .XMediationInterfaceAdDidCloseWithXAdView = relay.call(&Self::adDidClose),
      .XMediationInterfaceAdWillPresentWithXAdView = relay.call(&Self::adWillPresent),
      .XMediationInterfaceAdWillLeaveApplicationWithXAdView =
          relay.call(&Self::adWillLeaveApplication)});
}

void AdViewMediation::adDidReceive() {
  platformLog("Corvane Mediation Network: ad retrieved successfully.");
  host_.mediatedAdDidLoad();
}

void AdViewMediation::adRequestFailedWithError(const Error& error, MediatedView& /*adView*/) {
  platformLog("Corvane Mediation Network: Failed to retrieve ad.", LogLevel::warning);
  host_.mediatedAdDidFail(error);
}

void AdViewMediation::adWasClicked() {
  platformLog("Corvane Mediation Network: ad clicked.");
  tell(&Told::xAdViewDidClickOnAd);
}

void AdViewMediation::adDidClose() {
  platformLog("Corvane Mediation Network: ad closed.");
  tell(&Told::xAdViewWillCloseInAppBrowser);
}

void AdViewMediation::adWillPresent() {
  platformLog("Corvane Mediation Network: opening InAppBrowser.");
  tell(&Told::xAdViewWillOpenInInAppBrowser);
}

void AdViewMediation::adWillLeaveApplication() {
  platformLog("Corvane Mediation Network: opening external browser.");
  tell(&Told::xAdViewWillLeaveApplication);
}

}  // namespace tavo
