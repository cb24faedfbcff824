#include "RequestEnrichment/ScreenAndVisibility.h"

#include <utility>

#include "ErrorHandler/OperationLog.h"
#include "Scene/Window.h"
#include "Services/Screen.h"

namespace tavo {

namespace {
bool isHeldSideways(const Platform& platform) {
  return isLandscape(platform.application->statusBarOrientation());
}
}  // namespace

InterfaceOrientation XDeviceInterfaceOrientation(const Platform& platform) {
  const OperationLog log{"XDeviceInterfaceOrientation"};
  return platform.application->statusBarOrientation();
}

std::shared_ptr<Window> XKeyWindow(const Platform& platform) {
  const OperationLog log{"XKeyWindow"};
  return platform.application->keyWindow();
}

double XDeviceStatusBarHeight(const Platform& platform) {
  const OperationLog log{"XDeviceStatusBarHeight"};
  if (platform.application->isStatusBarHidden()) return 0;
  // The frame is told in the screen's natural orientation.
  const Rect frame = platform.application->statusBarFrame();
  return isHeldSideways(platform) ? frame.width : frame.height;
}

Rect XDeviceScreenBounds(const Platform& platform) {
  const OperationLog log{"XDeviceScreenBounds"};
  Rect bounds = platform.screen->bounds();
  if (isHeldSideways(platform)) std::swap(bounds.width, bounds.height);
  return bounds;
}

Rect XApplicationFrame(const Platform& platform) {
  const OperationLog log{"XApplicationFrame"};
  Rect frame = XDeviceScreenBounds(platform);
  const double statusBar = XDeviceStatusBarHeight(platform);
  frame.y += statusBar;
  frame.height -= statusBar;
  return frame;
}

double XDeviceScaleFactor(const Platform& platform) {
  const OperationLog log{"XDeviceScaleFactor"};
  return platform.screen->scale().value_or(1.0);
}

bool XViewIsVisible(const Platform& platform, const View& view) {
  const OperationLog log{"XViewIsVisible"};
  return !view.isHidden() && !XViewHasHiddenAncestor(view) &&
         XViewIsDescendantOfKeyWindow(platform, view) && XViewIntersectsKeyWindow(platform, view);
}

bool XViewHasHiddenAncestor(const View& view) {
  const OperationLog log{"XViewHasHiddenAncestor"};
  for (const View* above = view.superview(); above != nullptr; above = above->superview()) {
    if (above->isHidden()) return true;
  }
  return false;
}

bool XViewIsDescendantOfKeyWindow(const Platform& platform, const View& view) {
  const OperationLog log{"XViewIsDescendantOfKeyWindow"};
  const auto window = platform.application->keyWindow();
  const View* above = view.superview();
  return window && above != nullptr && above->isDescendantOf(*window);
}

bool XViewIntersectsKeyWindow(const Platform& platform, const View& view) {
  const OperationLog log{"XViewIntersectsKeyWindow"};
  const auto window = platform.application->keyWindow();
  if (!window) return false;
  const View* superview = view.superview();
  const Rect frame =
      superview == nullptr ? view.frame() : superview->convertTo(window.get(), view.frame());
  return frame.intersects(window->bounds());
}

}  // namespace tavo
