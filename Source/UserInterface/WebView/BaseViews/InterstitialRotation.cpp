#include "UserInterface/WebView/BaseViews/InterstitialRotation.h"

#include <utility>

#include <tavo/XAdInterstitialViewController.h>
#include <tavo/XAdView.h>

#include "AdController/AdGenerator/XMRAIDEventEmitter.h"
#include "RequestEnrichment/ScreenAndVisibility.h"
#include "Runtime/Environment.h"
#include "UserInterface/WebView/BaseViews/RotationScript.h"

namespace tavo {

InterstitialRotation::InterstitialRotation(std::shared_ptr<Environment> environment,
                                           XAdInterstitialViewController& controller)
    : environment_{std::move(environment)}, controller_{controller} {}

bool InterstitialRotation::showsVideo() const {
  return controller_.mobileAdSubTypes() == MobileAdSubTypes::vastInterstitial;
}

bool InterstitialRotation::shouldAutorotate() const {
  if (!showsVideo()) return mayAutorotate(rules_);
  fitAdView();
  postOrientation();
  return true;
}

bool InterstitialRotation::shouldAutorotateTo(InterfaceOrientation orientation) const {
  return showsVideo() ? shouldAutorotate() : mayAutorotateTo(orientation, rules_);
}

void InterstitialRotation::fitAdView() const {
  const auto& adView = controller_.xadView();
  if (adView && adView->superview() != nullptr) adView->setFrame(adView->superview()->bounds());
}

void InterstitialRotation::postOrientation() const {
  environment_->notifications().post(
      {.name = std::string{interstitialOrientationDidChangeNotification},
       .object = &controller_,
       .userInfo = {{"UIInterfaceOrientation",
                     static_cast<int>(XDeviceInterfaceOrientation(environment_->platform()))}}});
}

void InterstitialRotation::reportLayout() const {
  const auto& adView = controller_.xadView();
  const auto emitter = adView ? adView->eventEmitter() : nullptr;
  if (emitter) adView->updateLayOutForNewState(emitter->state());
}

void InterstitialRotation::didRotate() const {
  if (!controller_.xadView()) return;
  reportLayout();
  tellRotation(controller_.xadView()->webViewInstance(),
               XDeviceInterfaceOrientation(environment_->platform()),
               *environment_->platform().device);
}

void InterstitialRotation::presentAnew() const {
  const auto self = controller_.shared_from_this();
  if (controller_.presentingViewController() != nullptr) {
    const auto presenter = controller_.presentingViewController()->shared_from_this();
    presenter->dismissViewController(
        Animated::no, [presenter, self] { presenter->presentViewController(self, Animated::no); });
  }
  reportLayout();
}

void InterstitialRotation::willAppear() const {
  if (isLandscape(XDeviceInterfaceOrientation(environment_->platform()))) postOrientation();
}

void InterstitialRotation::didAppear() const {
  fitAdView();
  if (controller_.orientationWhileLeaving == XDeviceInterfaceOrientation(environment_->platform()))
    return;
  environment_->notifications().post(
      {.name = std::string{notifications::deviceOrientationDidChange},
       .object = &controller_,
       .userInfo = {}});
}

void InterstitialRotation::rememberOrientation() const {
  controller_.orientationWhileLeaving = XDeviceInterfaceOrientation(environment_->platform());
}

}  // namespace tavo
