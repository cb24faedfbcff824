#include "UserInterface/WebView/BaseViews/InterstitialExit.h"

#include <utility>

#include <tavo/XAdInterstitialViewController.h>

#include "AdController/AdGenerator/AdViewIdentity.h"
#include "ErrorHandler/OperationLog.h"
#include "Runtime/Environment.h"
#include "Runtime/Relay.h"
#include "Services/Application.h"

namespace tavo {

InterstitialExit::InterstitialExit(std::shared_ptr<Environment> environment,
                                   XAdInterstitialViewController& controller, Host& host)
    : environment_{std::move(environment)}, controller_{controller}, host_{host} {}

void InterstitialExit::begin() {
  dismissal_.invalidate();
  over_ = false;
}

void InterstitialExit::carryOut(const EndPlan& plan) {
  const auto held = controller_.weak_from_this().lock();
  const bool isOnScreen = controller_.presentingViewController() != nullptr;
  if (plan.scope == EndPlan::Scope::whileOnScreen && !isOnScreen) return;
  if (std::exchange(over_, true)) {
    if (plan.memory == EndPlan::Memory::released) host_.releaseMemory();
    return;
  }
  if (isOnScreen || plan.statusBar == EndPlan::StatusBar::show) {
    environment_->platform().application->setStatusBarHidden(false, StatusBarAnimation::fade);
  }
  if (plan.creative == EndPlan::Creative::told) host_.tellCreativeThatItIsHidden();
  if (plan.content == EndPlan::Content::removed) host_.removeContent();
  const bool isCovered = controller_.presentedViewController() != nullptr;
  const bool atOnce = plan.departure == EndPlan::Departure::atOnce ||
                      (plan.departure == EndPlan::Departure::animatedUnlessCovered && isCovered);
  leave(atOnce ? Animated::no : Animated::yes, [this, plan] {
    if (plan.memory == EndPlan::Memory::released) host_.releaseMemory();
    report(plan.report);
  });
}

// With whatever the ad itself has presented: nobody is left in front of an empty screen. What is
// not on the screen is gone already.
void InterstitialExit::leave(Animated animated, const std::function<void()>& gone) {
  ViewController* const presenter = controller_.presentingViewController();
  if (presenter == nullptr || controller_.isBeingDismissed()) return gone();
  const auto held = presenter->shared_from_this();
  presenter->dismissViewController(animated, gone);
}

void InterstitialExit::report(EndPlan::Report report) const {
  using Told = XAdInterstitialViewControllerDelegate;
  using Report = EndPlan::Report;
  const auto& delegate = controller_.delegate;
  if (report == Report::none) return;
  if (report == Report::bothIfLowMemoryIsHeard &&
      !delegate.implements(&Told::xAdInterstitialDidDismissOnMemoryWarning)) {
    return;
  }
  if (report != Report::dismissed) {
    delegate.tell(&Told::xAdInterstitialDidDismissOnMemoryWarning, controller_);
  }
  delegate.tell(&Told::xAdInterstitialDismissed, controller_);
}

// The controller is held for the turn only: what is dropped before is not on the screen.
void InterstitialExit::dismissLater(Seconds delay) {
  RunLoop& runLoop = *environment_->platform().runLoop;
  const Seconds due = runLoop.now() + delay;
  if (dismissal_.isValid() && dismissalDue_ <= due) return;
  dismissalDue_ = due;
  const Relay<InterstitialExit> relay{sharedPart(controller_.weak_from_this().lock(), *this)};
  dismissal_ = runLoop.after(delay, relay.call(&InterstitialExit::dismissViewControllerWithError));
}

void InterstitialExit::dismissViewControllerWithError() {
  const OperationLog log{"-[XAdInterstitialViewController dismissViewControllerWithError:]"};
  end(EndCause::failed);
}

}  // namespace tavo
