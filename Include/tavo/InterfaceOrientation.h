#pragma once

namespace tavo {

// How the application's interface stands on the screen. On a desktop a window counts as a screen:
// portrait when it is at least as high as wide, landscapeLeft otherwise. The values are part of the
// interface; creatives and the ad server see them.
enum class InterfaceOrientation {
  unknown = 0,  // no window yet
  portrait = 1,
  portraitUpsideDown = 2,
  landscapeRight = 3,
  landscapeLeft = 4,
};

// How a controller that allows one way only stands in a window of the other shape: in a part of it,
// with bars beside, or turned by a quarter to fill it.
enum class OrientationFit { letterbox, turn };

// Neither holds for an unknown orientation.
[[nodiscard]] constexpr bool isPortrait(InterfaceOrientation orientation) {
  return orientation == InterfaceOrientation::portrait ||
         orientation == InterfaceOrientation::portraitUpsideDown;
}

[[nodiscard]] constexpr bool isLandscape(InterfaceOrientation orientation) {
  return orientation == InterfaceOrientation::landscapeRight ||
         orientation == InterfaceOrientation::landscapeLeft;
}

}  // namespace tavo
