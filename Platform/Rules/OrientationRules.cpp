#include "Rules/OrientationRules.h"

#include <algorithm>
#include <cmath>

namespace tavo {

namespace {

constexpr double narrowest = 2.0 / 3;  // as 320 x 480

constexpr OrientationMask portraitOrientations =
    maskOf(InterfaceOrientation::portrait) | maskOf(InterfaceOrientation::portraitUpsideDown);

// The shorter side of a part whose longer side is `side`, in a window of this shape.
double shorterSide(double side, Size window) {
  const double ratio =
      std::min(window.width, window.height) / std::max(window.width, window.height);
  return std::floor(std::min(side * std::max(narrowest, ratio), side - 1));
}

}  // namespace

InterfaceOrientation orientationOf(Size window) {
  if (window.width <= 0 || window.height <= 0) return InterfaceOrientation::unknown;
  return window.width > window.height ? InterfaceOrientation::landscapeLeft
                                      : InterfaceOrientation::portrait;
}

InterfaceOrientation allowedOrientation(OrientationMask supported, InterfaceOrientation asked) {
  const bool portrait = (supported & portraitOrientations) != 0;
  const bool landscape = (supported & landscapeOrientations) != 0;
  if (portrait == landscape) return asked;
  return portrait ? InterfaceOrientation::portrait : InterfaceOrientation::landscapeLeft;
}

ControllerPlace placeIn(Size window, InterfaceOrientation orientation, OrientationFit fit) {
  const auto own = orientationOf(window);
  if (own == InterfaceOrientation::unknown || isLandscape(own) == isLandscape(orientation)) {
    return {{0, 0, window.width, window.height}};
  }
  const bool isSquare = window.width == window.height;
  if (fit == OrientationFit::turn && !isSquare) return {{0, 0, window.height, window.width}, true};
  if (isLandscape(orientation)) {
    const double height = shorterSide(window.width, window);
    return {{0, std::floor((window.height - height) / 2), window.width, height}};
  }
  const double width = shorterSide(window.height, window);
  return {{std::floor((window.width - width) / 2), 0, width, window.height}};
}

}  // namespace tavo
