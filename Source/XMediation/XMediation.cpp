#include "XMediation/XMediation.h"

#include <tavo/Runtime.h>
#include <tavo/SdkErrors.h>
#include <tavo/XGlobalConfiguration.h>

#include "Configuration/MediationSwitch.h"
#include "ErrorHandler/OperationLog.h"
#include "Runtime/Environment.h"
#include "Values/Text.h"
#include "XMediation/XMediationBanner.h"
#include "XMediation/XMediationInterstitial.h"

namespace tavo {

XMediation& XMediation::sharedInstance() {
  return Runtime::current().environment()->shared<XMediation>();
}

XMediation::XMediation() { makeRelay(); }

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
  relay_ = std::make_shared<Table>(
      Table{.adDidReceiveWithXAdView = pass(&Table::adDidReceiveWithXAdView),
            .adRequestFailedWithError =
                [this](XMediationInterface&, const Error& error, MediatedView& adView) {
                  observerOf(adView).tell(&Table::adRequestFailedWithError, *this, error, adView);
                },
            .adWasClickedWithXAdView = pass(&Table::adWasClickedWithXAdView),
            .adWillCloseWithXAdView = accept,
            .adDidCloseWithXAdView = accept,
            .adWillPresentWithXAdView = pass(&Table::adWillPresentWithXAdView),
            .adDidPresentWithXAdView = accept,
            .adWillLeaveApplicationWithXAdView = pass(&Table::adWillLeaveApplicationWithXAdView)});
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
  observerOf(adView).tell(&Table::adRequestFailedWithError, *this,
                          makeError(SdkError::mediationImpossible, reason), adView);
}

XMediationInterface* XMediation::adapter() const {
  switch (xMediationType) {
    case MediationType::banner: {
      auto& banner = XMediationBanner::sharedInstance();
      banner.bannerWidth = slotConfiguration ? slotConfiguration->mediationBannerWidth : 0;
      banner.bannerHeight = slotConfiguration ? slotConfiguration->mediationBannerHeight : 0;
      return &banner;
    }
    case MediationType::interstitial:
      return &XMediationInterstitial::sharedInstance();
  }
  return nullptr;
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
  XMediationBanner::sharedInstance().releaseMemory();
  XMediationInterstitial::sharedInstance().releaseMemory();
}

void XMediation::releaseAdOf(const MediatedView& adView) {
  observers_.erase(&adView);
  XMediationBanner::sharedInstance().releaseAdOf(adView);
  XMediationInterstitial::sharedInstance().releaseAdOf(adView);
}

void XMediation::abandonLoadOf(const MediatedView& adView) {
  XMediationBanner::sharedInstance().abandonLoadOf(adView);
  XMediationInterstitial::sharedInstance().abandonLoadOf(adView);
}

}  // namespace tavo
