#include "UserInterface/WebView/BaseViews/InterstitialCloseControl.h"

#include <tavo/XAdInterstitialViewController.h>

#include "Configuration/StandardsMode.h"
#include "Runtime/Environment.h"
#include "Runtime/Relay.h"
#include "UserInterface/Pictures/Pictures.h"
#include "Values/Translation.h"

namespace tavo {

CloseButtonFacts InterstitialCloseControl::facts() const {
  return {.exists = isShown(),
          .useCustomClose = controller_.useCustomClose,
          .subType = controller_.mobileAdSubTypes()};
}

void InterstitialCloseControl::put(Look look) {
  remove();
  View& screen = *controller_.view();
  const auto place = interstitialCloseButtonPlace(
      screen.frame().width, standardsModeIsOn(environment_.shared<XGlobalConfiguration>(),
                                              controller_.slotConfiguration.get()));
  button_ = std::make_shared<Button>(place.frame);
  button_->setImageMargin(place.imageMargin);
  button_->setAutoresizingMask(flexibleLeftMargin | flexibleBottomMargin);
  button_->setAccessibilityLabel(translated("Close Interstitial Ad"));
  button_->setAction(Relay{controller_}.call(&XAdInterstitialViewController::closeInterstitialAd));
  if (look == Look::picture) {
    button_->setImage(closePicture(environment_.platform()));
    // Nobody is held in front of an ad because a picture is missing.
    if (button_->image().empty()) button_->setTitle("\u2715");
  }
  screen.addSubview(button_);
  shown_ = button_;
}

bool InterstitialCloseControl::isShown() const {
  const auto shown = shown_.lock();
  return shown && shown->superview() != nullptr;
}

void InterstitialCloseControl::remove() {
  if (const auto shown = shown_.lock()) shown->removeFromSuperview();
  button_.reset();
}

void InterstitialCloseControl::add() {
  if (!mayAddCloseButton(facts())) return;
  put(Look::picture);
  controller_.view()->bringSubviewToFront(*button_);
}

void InterstitialCloseControl::addWithoutImage() {
  if (mayAddCloseButtonWithoutImage(facts())) put(Look::invisible);
}

void InterstitialCloseControl::addForRedirect() {
  if (mayAddCloseButtonForRedirect(facts())) put(Look::picture);
}

void InterstitialCloseControl::useCustomCloseDidChange() {
  switch (changeForExpandProperties(facts())) {
    case CloseButtonChange::hide:
      remove();
      return controller_.addCloseButtonWithoutImage();
    case CloseButtonChange::add:
      return controller_.addCloseButton();
    case CloseButtonChange::none:
      return;
  }
}

}  // namespace tavo
