#include "XMediation/XMediation.h"

#include <tavo/SdkErrors.h>
#include <tavo/XGlobalConfiguration.h>

#include "Configuration/MediationSwitch.h"
#include "ErrorHandler/OperationLog.h"
#include "Runtime/Environment.h"
#include "Runtime/LivingEnvironment.h"
#include "Values/Text.h"
#include "XMediation/XMediationBanner.h"
#include "XMediation/XMediationInterstitial.h"

namespace tavo {

XMediation& XMediation::sharedInstance() { return livingEnvironment()->shared<XMediation>(); }

XMediation::XMediation(Environment& environment) : environment_{environment} { makeRelay(); }

XMediationInterface& XMediation::banner() const { return environment_.shared<XMediationBanner>(); }

XMediationInterface& XMediation::interstitial() const {
  return environment_.shared<XMediationInterstitial>();
}

// The events of the adapters go to the observer that came with the view, as they are.
//
// Quirk: closing and having presented go nowhere, so a host hears that a page opens above its
// application and not that it closes, although the ad view would pass that on.
void XMediation::makeRelay() {
  const auto pass = [this](Table::Event Table::*event) {
    return [this, event](XMediationInterface&, MediatedView& adView) {
      observerOf(adView).tell(event, *this, adView);
    };
  };
  const auto accept = [](XMediationInterface&, MediatedView&) {};
  relay_ = std::make_shared<Table>(Table{
      .XMediationInterfaceAdDidReceiveWithXAdView =
          pass(&Table::XMediationInterfaceAdDidReceiveWithXAdView),
      .XMediationInterfaceAdRequestFailedWithErrorXAdView =
          [this](XMediationInterface&, const Error& error, MediatedView& adView) {
            observerOf(adView).tell(&Table::XMediationInterfaceAdRequestFailedWithErrorXAdView,
                                    *this, error, adView);
          },
      .XMediationInterfaceAdWasClickedWithXAdView =
          pass(&Table::XMediationInterfaceAdWasClickedWithXAdView),
      .XMediationInterfaceAdWillCloseWithXAdView = accept,
      .XMediationInterfaceAdDidCloseWithXAdView = accept,
      .XMediationInterfaceAdWillPresentWithXAdView =
          pass(&Table::XMediationInterfaceAdWillPresentWithXAdView),
      .XMediationInterfaceAdDidPresentWithXAdView = accept,
      .XMediationInterfaceAdWillLeaveApplicationWithXAdView =
          pass(&Table::XMediationInterfaceAdWillLeaveApplicationWithXAdView)});
}

Observer<XMediationInterfaceDelegate> XMediation::observerOf(const MediatedView& adView) const {
  const auto found = observers_.find(&adView);
  return found == observers_.end() ? Observer<Table>{} : found->second;
}

std::optional<std::string> XMediation::canMediateWithPlacementId(const std::string& placementId,
                                                                 const Size& size) const {
  const OperationLog log{"-[XMediation canMediateWithPlacementId:size:error:]"};
  const std::int32_t slotSwitch = slotConfiguration ? slotConfiguration->canMediate : -1;
  const bool allowed =
      mediationIsSwitchedOn(environment_.shared<XGlobalConfiguration>().canMediate, slotSwitch);
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
  observerOf(adView).tell(&Table::XMediationInterfaceAdRequestFailedWithErrorXAdView, *this,
                          makeError(SdkError::mediationImpossible, reason), adView);
}

XMediationInterface* XMediation::adapter() const {
  switch (xMediationType) {
    case MediationType::banner: {
      auto& banner = environment_.shared<XMediationBanner>();
      banner.bannerWidth = slotConfiguration ? slotConfiguration->mediationBannerWidth : 0;
      banner.bannerHeight = slotConfiguration ? slotConfiguration->mediationBannerHeight : 0;
      return &banner;
    }
    case MediationType::interstitial:
      return &interstitial();
  }
  return nullptr;
}

void XMediation::copyTargeting(XMediationInterface& adapter) const {
  adapter.xMediationType = xMediationType;
  adapter.shouldOpenInAppBrowser = shouldOpenInAppBrowser;
  adapter.userLocation = environment_.shared<XGlobalConfiguration>().mediationTargetedLocation;
  if (!slotConfiguration) return;
  adapter.mediationAge = slotConfiguration->mediationTargetedAge;
  adapter.mediationGender = slotConfiguration->mediationTargetedGender;
  adapter.mediationKeywords = slotConfiguration->mediationTargetedKeywords;
}

void XMediation::loadAdWithXAdView(const std::shared_ptr<MediatedView>& adView,
                                   const std::string& placementId, const Size& size,
                                   ViewController* rootViewController) {
  const OperationLog log{"-[XMediation loadAdWithXAdView:placementId:size:rootViewController:]"};
  observers_[adView.get()] = delegate;
  if (const auto reason = canMediateWithPlacementId(placementId, size)) {
    return refuse(*adView, *reason);
  }
  adView->setIsMediationAdServed(true);
  XMediationInterface* const chosen = adapter();
  if (chosen == nullptr) return;
  chosen->delegate.set(relay_);
  copyTargeting(*chosen);
  chosen->loadAdWithXAdView(adView, placementId, size, rootViewController);
}

void XMediation::releaseMemory() {
  const OperationLog log{"-[XMediation releaseMemory]"};
  observers_.clear();
  banner().releaseMemory();
  interstitial().releaseMemory();
}

void XMediation::releaseAdOf(const MediatedView& adView) {
  observers_.erase(&adView);
  banner().releaseAdOf(adView);
  interstitial().releaseAdOf(adView);
}

void XMediation::abandonLoadOf(const MediatedView& adView) {
  banner().abandonLoadOf(adView);
  interstitial().abandonLoadOf(adView);
}

}  // namespace tavo
