#include "UserInterface/WebView/BaseViews/AdViewStage.h"

#include <utility>

#include "ClickToAction/CreativePictures.h"
#include "Configuration/StandardsMode.h"
#include "ErrorHandler/OperationLog.h"
#include "UserInterface/WebView/BaseViews/XAdViewOnlyForSubClassEyesDelegate.h"

namespace tavo {

AdViewStage::AdViewStage(std::shared_ptr<Environment> environment, XAdView& view,
                         AdViewLoader& loader, MraidPresentation& presentation,
                         AdViewClicks& clicks)
    : AdViewPart{view},
      environment_{std::move(environment)},
      loader_{loader},
      presentation_{presentation},
      clicks_{clicks} {}

std::shared_ptr<PictureSaver> AdViewStage::makePictureManager(PictureSaver::Failed failed) {
  return std::make_shared<CreativePictures>(environment_, std::move(failed));
}

bool AdViewStage::followsStandards() const {
  return standardsModeIsOn(environment_->shared<XGlobalConfiguration>(),
                           view().slotConfiguration().get());
}

void AdViewStage::handleInitMRAIDAdWithWebView(const PageRef& webView,
                                               const std::shared_ptr<XMRAIDEventEmitter>& emitter) {
  const OperationLog log{"-[XAdView handleInitMRAIDAdWithWebView:emitter:]"};
  presentation_.handleInitMRAIDAd(webView, emitter);
}

bool AdViewStage::expandToFrame(const Rect& /*frame*/, bool isCustomClose,
                                bool /*isOrientationAllowed*/, const PageRef& webView) {
  return presentation_.expandToFrame(isCustomClose, webView);
}

// Quirk: the ad returns to the view's present bounds, whatever frame was kept for it.
void AdViewStage::collapseToFrame(const Rect& /*frame*/) { presentation_.collapseToFrame(); }

void AdViewStage::resizeAd(const std::optional<XMRAIDResizeProperties>& properties,
                           const PageRef& webView) {
  presentation_.resizeAd(properties, webView);
}

void AdViewStage::setExpandPropertiesWithDict(const XMRAIDExpandProperties& properties) {
  const OperationLog log{"-[XAdView setExpandPropertiesWithDict:]"};
  presentation_.expandPropertiesDidChange(properties);
  view().pDelegate.tell(&XAdViewOnlyForSubClassEyesDelegate::expandPropertiesChnaged, properties);
}

void AdViewStage::setOrientationPropertiesWith(const XMRAIDOrientationProperties& properties,
                                               const PageRef& webView) {
  presentation_.setOrientationPropertiesWith(properties, webView);
}

void AdViewStage::updateCurrentPositionOfWebView(const PageRef& /*webView*/) {
  const OperationLog log{"-[XAdView updateCurrentPositionOfWebView:]"};
  presentation_.updateLayOutForNewState(presentation_.state());
}

void AdViewStage::webViewLeavesScreen(const PageRef& webView) {
  presentation_.webViewLeavesScreen(webView);
}

void AdViewStage::dismissVastVideoView() {
  const OperationLog log{"-[XAdView dismissVastVideoView]"};
  tell(&Told::interstitialAdDismissed);
}

void AdViewStage::dismissVastVideoViewOnMemoryWarning() {
  const OperationLog log{"-[XAdView dismissVastVideoViewOnMemoryWarning]"};
  tell(&Told::interstitialAdDismissedOnMemoryWarning);
}

}  // namespace tavo
