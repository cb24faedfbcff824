#include "UserInterface/WebView/BaseViews/XExpandedViewController.h"

#include <utility>

#include "ErrorHandler/OperationLog.h"
#include "RequestEnrichment/ScreenAndVisibility.h"
#include "Runtime/Environment.h"
#include "Values/Translation.h"

namespace tavo {

XExpandedViewController::XExpandedViewController(std::shared_ptr<Environment> environment)
    : forcedOrientation{XDeviceInterfaceOrientation(environment->platform())},
      environment_{std::move(environment)} {
  const OperationLog log{"-[XExpandedViewController initWithNibName:bundle:]"};
  modalPresentationStyle = ModalPresentation::fullScreen;
  modalTransitionStyle = ModalTransition::crossDissolve;
}

void XExpandedViewController::viewDidLoad() {
  const OperationLog log{"-[XExpandedViewController viewDidLoad]"};
  view()->setOpaque(true);
  view()->setBackgroundColor(colors::black);
  view()->setAccessibilityLabel(translated("Advertisement"));
  view()->setFrame(XDeviceScreenBounds(environment_->platform()));
  view()->setAutoresizesSubviews(true);
  view()->setAutoresizingMask(flexibleAll);
}

bool XExpandedViewController::shouldAutorotate() const {
  const OperationLog log{"-[XExpandedViewController shouldAutorotate]"};
  return allowRotation;
}

bool XExpandedViewController::shouldAutorotateToInterfaceOrientation(
    InterfaceOrientation orientation) const {
  const OperationLog log{"-[XExpandedViewController shouldAutorotateToInterfaceOrientation:]"};
  return allowRotation || orientation == forcedOrientation;
}

// Quirk: upside down is never kept; the upright orientation stands for it.
OrientationMask XExpandedViewController::supportedInterfaceOrientations() const {
  const OperationLog log{"-[XExpandedViewController supportedInterfaceOrientations]"};
  if (allowRotation) return allOrientations;
  switch (forcedOrientation) {
    case InterfaceOrientation::unknown:
    case InterfaceOrientation::portrait:
    case InterfaceOrientation::portraitUpsideDown:
      return maskOf(InterfaceOrientation::portrait);
    case InterfaceOrientation::landscapeRight:
    case InterfaceOrientation::landscapeLeft:
      return landscapeOrientations;
  }
  return allOrientations;
}

InterfaceOrientation XExpandedViewController::preferredInterfaceOrientationForPresentation() const {
  const OperationLog log{"-[XExpandedViewController preferredInterfaceOrientationForPresentation]"};
  return allowRotation ? XDeviceInterfaceOrientation(environment_->platform()) : forcedOrientation;
}

void XExpandedViewController::didRotateFromInterfaceOrientation(InterfaceOrientation /*from*/) {
  const OperationLog log{"-[XExpandedViewController didRotateFromInterfaceOrientation:]"};
  delegate.tell(&XExpandedViewControllerDelegate::XExpandedViewControllerDidRotate, *this);
}

bool XExpandedViewController::cancelOperation() {
  const auto held = shared_from_this();
  const bool isHeard =
      delegate.implements(&XExpandedViewControllerDelegate::XExpandedViewControllerDidCancel);
  delegate.tell(&XExpandedViewControllerDelegate::XExpandedViewControllerDidCancel, *this);
  return isHeard;
}

void XExpandedViewController::forceRotateToInterfaceOrientation(InterfaceOrientation orientation) {
  const OperationLog log{"-[XExpandedViewController forceRotateToInterfaceOrientation:]"};
  forcedOrientation = orientation;
  if (presentingViewController() == nullptr) return;
  const auto presenter = presentingViewController()->shared_from_this();
  presenter->dismissViewController(Animated::no, [presenter, self = shared_from_this()] {
    presenter->presentViewController(self, Animated::no);
  });
}

}  // namespace tavo
