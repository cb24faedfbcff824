#include "RequestEnrichment/ScreenAndVisibility.h"

#include <utility>

#include <tavo/Runtime.h>

#include "ErrorHandler/OperationLog.h"
#include "Scene/Window.h"
#include "Services/Screen.h"

namespace tavo {

namespace {
const Application& application() { return *Runtime::current().platform().application; }
const Screen& screen() { return *Runtime::current().platform().screen; }
bool isHeldSideways() { return isLandscape(application().statusBarOrientation()); }
}  // namespace

InterfaceOrientation XDeviceInterfaceOrientation() {
  const OperationLog log{"XDeviceInterfaceOrientation"};
  return application().statusBarOrientation();
}

std::shared_ptr<Window> XKeyWindow() {
  const OperationLog log{"XKeyWindow"};
  return application().keyWindow();
}

double XDeviceStatusBarHeight() {
  const OperationLog log{"XDeviceStatusBarHeight"};
  if (application().isStatusBarHidden()) return 0;
  // The frame is told in the screen's natural orientation.
  const Rect frame = application().statusBarFrame();
  return isHeldSideways() ? frame.width : frame.height;
}

Rect XDeviceScreenBounds() {
  const OperationLog log{"XDeviceScreenBounds"};
  Rect bounds = screen().bounds();
  if (isHeldSideways()) std::swap(bounds.width, bounds.height);
  return bounds;
}

Rect XApplicationFrame() {
  const OperationLog log{"XApplicationFrame"};
  Rect frame = XDeviceScreenBounds();
  const double statusBar = XDeviceStatusBarHeight();
  frame.y += statusBar;
  frame.height -= statusBar;
  return frame;
}

double XDeviceScaleFactor() {
  const OperationLog log{"XDeviceScaleFactor"};
  return screen().scale().value_or(1.0);
}

bool XViewIsVisible(const View& view) {
  const OperationLog log{"XViewIsVisible"};
  return !view.isHidden() && !XViewHasHiddenAncestor(view) && XViewIsDescendantOfKeyWindow(view) &&
         XViewIntersectsKeyWindow(view);
}

bool XViewHasHiddenAncestor(const View& view) {
  const OperationLog log{"XViewHasHiddenAncestor"};
  for (const View* above = view.superview(); above != nullptr; above = above->superview()) {
    if (above->isHidden()) return true;
  }
  return false;
}

bool XViewIsDescendantOfKeyWindow(const View& view) {
  const OperationLog log{"XViewIsDescendantOfKeyWindow"};
  const auto window = application().keyWindow();
  const View* above = view.superview();
  return window && above != nullptr && above->isDescendantOf(*window);
}

bool XViewIntersectsKeyWindow(const View& view) {
  const OperationLog log{"XViewIntersectsKeyWindow"};
  const auto window = application().keyWindow();
  if (!window) return false;
  const View* superview = view.superview();
  const Rect frame =
      superview == nullptr ? view.frame() : superview->convertTo(window.get(), view.frame());
  return frame.intersects(window->bounds());
}

}  // namespace tavo
