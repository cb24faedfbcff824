#pragma once

namespace tavo {

// How the application's interface stands on the screen, named after the side on which a phone's
// home button would be. Counted as the field does: landscapeRight is turned to the left.
enum class InterfaceOrientation {
  unknown = 0,
  portrait = 1,
  portraitUpsideDown = 2,
  landscapeRight = 3,
  landscapeLeft = 4,
};

[[nodiscard]] constexpr bool isPortrait(InterfaceOrientation orientation) {
  return orientation == InterfaceOrientation::portrait ||
         orientation == InterfaceOrientation::portraitUpsideDown;
}

[[nodiscard]] constexpr bool isLandscape(InterfaceOrientation orientation) {
  return orientation == InterfaceOrientation::landscapeRight ||
         orientation == InterfaceOrientation::landscapeLeft;
}

}  // namespace tavo
