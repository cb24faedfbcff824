#include "UserInterface/WebView/BaseViews/AdViewCore.h"

#include <algorithm>
#include <utility>

#include "AdController/AdGenerator/XWebViewAgent.h"
#include "AdManager/HostMistakes.h"
#include "AdManager/XAdManager.h"
#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "RequestEnrichment/ScreenAndVisibility.h"
#include "UserInterface/WebView/BaseViews/XAdViewOnlyForSubClassEyesDelegate.h"
#include "UserInterface/WebView/ExposableViews/MRAIDComplaint/XMRAIDBannerView.h"

namespace tavo {

AdViewCore::AdViewCore(std::shared_ptr<Environment> environment, XAdView& view)
    : AdViewPart{view},
      environment_{std::move(environment)},
      loader_{environment_, *this},
      presentation_{environment_, *this},
      clicks_{environment_, view, presentation_},
      stage_{environment_, view, loader_, presentation_, clicks_},
      outcomes_{environment_, view, loader_, stage_} {}

void AdViewCore::load(AdAddress address) {
  view().userColor = view().backgroundColor();
  address_ = std::move(address);
  makeManager();
  loader_.requestDidEnd();
  platformLog("SDK Version: " + XAdView::corvaneTAVOSDKVersion());
  if (const auto mistake = mistakeInDomain(address_.domainName)) {
    platformLog(*mistake, LogLevel::warning);
  }
  loader_.loadAd();
}

void AdViewCore::makeManager() {
  adManager_ = XAdManager::create(environment_, sharedPart<AdManagerView>(hold(), stage_),
                                  outcomes_.managerEvents());
  adManager_->slotConfiguration = view().slotConfiguration();
  adManager_->moviePlayerInstance = view().moviePlayerInstance();
}

// A manager that still waits for an answer is dropped, and with it the answer.
void AdViewCore::requestAd(bool waiting) {
  if (!adManager_) return;
  if (waiting) makeManager();
  outcomes_.abandonMediation();
  const auto manager = adManager_;
  manager->loadAdWithDomainName(address_);
}

void AdViewCore::reload() {
  const OperationLog log{"-[XAdView loadWithDomainName:pageName:adPosition:keywords:queryString:]"};
  load(address_);
}

RefreshFacts AdViewCore::refreshFacts() const {
  return {.visible = XViewIsVisible(environment_->platform(), view()),
          .type = view().mobileAdTypes(),
          .subType = view().mobileAdSubTypes(),
          .interval = view().slotConfiguration()->bannerRefreshInterval};
}

bool AdViewCore::isExpandedOrResized() const {
  const auto state = presentation_.state();
  return state == MRAIDState::expanded || state == MRAIDState::resized;
}

void AdViewCore::releaseMemory() {
  const OperationLog log{"-[XAdView releaseMemory]"};
  const auto held = hold();
  // What is taken off is destroyed after this turn: the caller may be one of them.
  const auto manager = std::exchange(adManager_, nullptr);
  outcomes_.release();
  view().removeAllSubviews();
  presentation_.dismissExpanded();
  view().pDelegate.tell(&XAdViewOnlyForSubClassEyesDelegate::adViewDidReleaseMemory);
  clicks_.end();
  loader_.stop();
  presentation_.release();
}

void AdViewCore::leaveScreen() {
  platformLog("release memory");
  releaseMemory();
}

void AdViewCore::leaveForBackground() {
  const bool wasExpanded = view().placementType() == PlacementType::inlined &&
                           presentation_.state() == MRAIDState::expanded;
  const auto held = hold();
  presentation_.willLeaveScreen();
  releaseMemory();
  if (wasExpanded) adDidCollapse();
}

bool AdViewCore::showsRenderer() const {
  const auto isRenderer = [](const std::shared_ptr<View>& subview) {
    return dynamic_cast<const XWebViewAgent*>(subview.get()) != nullptr ||
           dynamic_cast<const XMRAIDBannerView*>(subview.get()) != nullptr;
  };
  return std::any_of(view().subviews().begin(), view().subviews().end(), isRenderer);
}

// Quirk: a browser that is open above an ad which its user has opened is reported as closed, while
// it stays where it is.
void AdViewCore::didLockScreen() {
  view().setHidden(false);
  if (!isMraid(view().mobileAdSubTypes())) return;
  if (showsRenderer() && isExpandedOrResized() && appBrowserOpen()) {
    platformLog("Closing inAppBrowser as device is locked");
    tell(&Told::xAdViewWillCloseInAppBrowser);
  }
  view().pDelegate.tell(&XAdViewOnlyForSubClassEyesDelegate::deviceDidLock);
}

void AdViewCore::didReceiveMemoryWarning() {
  const OperationLog log{"-[XAdView didReceiveMemoryWarningNotification:]"};
  platformLog("Device is low on memory", LogLevel::warning);
  releaseMemory();
  tell(&Told::xAdViewDidDismissOnMemoryWarning);
}

void AdViewCore::interstitialAdDidClose() {
  view().pDelegate.tell(&XAdViewOnlyForSubClassEyesDelegate::XInterstitialAdDidClose, view());
}

void AdViewCore::orientationPropertiesDidChange(const XMRAIDOrientationProperties& properties) {
  view().pDelegate.tell(&XAdViewOnlyForSubClassEyesDelegate::setOrientationPropertiesWith,
                        properties);
}

}  // namespace tavo
