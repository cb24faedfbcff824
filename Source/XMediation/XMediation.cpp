#include "XMediation/XMediation.h"

#include "Configuration/MediationSwitch.h"
#include "Configuration/XGlobalConfiguration.h"
#include "ErrorHandler/OperationLog.h"
#include "ErrorHandler/SdkErrors.h"
#include "Runtime/Runtime.h"
#include "Values/Text.h"

namespace tavo {

XMediation& XMediation::sharedInstance() { return Runtime::current().shared<XMediation>(); }

// The events of the adapters go to the coordinator's own observer as they are. Closing and having
// presented are between the network and its user.
XMediation::XMediation() {
  using Table = XMediationInterfaceDelegate;
  const auto pass = [this](Table::Event Table::*event) {
    return [this, event](XMediationInterface&, MediatedView& adView) {
      delegate.tell(event, *this, adView);
    };
  };
  relay_ = std::make_shared<Table>(
      Table{.adDidReceiveWithXAdView = pass(&Table::adDidReceiveWithXAdView),
            .adRequestFailedWithError =
                [this](XMediationInterface&, const Error& error, MediatedView& adView) {
                  delegate.tell(&Table::adRequestFailedWithError, *this, error, adView);
                },
            .adWasClickedWithXAdView = pass(&Table::adWasClickedWithXAdView),
            .adWillPresentWithXAdView = pass(&Table::adWillPresentWithXAdView),
            .adWillLeaveApplicationWithXAdView = pass(&Table::adWillLeaveApplicationWithXAdView)});
}

std::optional<std::string> XMediation::canMediateWithPlacementId(const std::string& placementId,
                                                                 const Size& size) const {
  const OperationLog log{"-[XMediation canMediateWithPlacementId:size:error:]"};
  const std::int32_t slotSwitch = slotConfiguration ? slotConfiguration->canMediate : -1;
  const bool allowed =
      mediationIsSwitchedOn(XGlobalConfiguration::sharedInstance().canMediate, slotSwitch);
  if (!allowed && !isMediationMandate) {
    return std::string{mediationSwitchedOffText};
  }
  if (trimmed(placementId).empty()) return "Cannot Mediate: PlacementId not set.";
  if (xMediationType == MediationType::banner && (size.width == 0 || size.height == 0)) {
    return "Cannot Mediate: BannerWidth or BannerHeight not set.";
  }
  return std::nullopt;
}

void XMediation::refuse(MediatedView& adView, const std::string& reason) {
  delegate.tell(&XMediationInterfaceDelegate::adRequestFailedWithError, *this,
                makeError(SdkError::mediationImpossible, reason), adView);
}

void XMediation::copyTargeting(XMediationInterface& adapter) const {
  adapter.xMediationType = xMediationType;
  adapter.shouldOpenInAppBrowser = shouldOpenInAppBrowser;
  adapter.userLocation = XGlobalConfiguration::sharedInstance().mediationTargetedLocation;
  if (!slotConfiguration) return;
  adapter.mediationAge = slotConfiguration->mediationTargetedAge;
  adapter.mediationGender = slotConfiguration->mediationTargetedGender;
  adapter.mediationKeywords = slotConfiguration->mediationTargetedKeywords;
}

void XMediation::loadAdWithXAdView(const std::shared_ptr<MediatedView>& adView,
                                   const std::string& placementId, const Size& size,
                                   ViewController* rootViewController) {
  const OperationLog log{"-[XMediation loadAdWithXAdView:placementId:size:rootViewController:]"};
  if (const auto reason = canMediateWithPlacementId(placementId, size)) {
    return refuse(*adView, *reason);
  }
  adView->setIsMediationAdServed(true);
  const auto adapter =
      xMediationType == MediationType::banner ? bannerAdapter : interstitialAdapter;
  if (!adapter) return refuse(*adView, "Missing required mediation classes.");
  adapter->delegate.set(relay_);
  copyTargeting(*adapter);
  adapter->loadAdWithXAdView(adView, placementId, size, rootViewController);
}

void XMediation::releaseMemory() {
  const OperationLog log{"-[XMediation releaseMemory]"};
  if (bannerAdapter) bannerAdapter->releaseMemory();
  if (interstitialAdapter) interstitialAdapter->releaseMemory();
}

}  // namespace tavo
