#include "UserInterface/NativeView/CountdownPlacement.h"

#include <cmath>

namespace tavo {

Rect skipButtonFrame(Size video) {
  constexpr double side = 44;
  constexpr double distance = 49;  // of its left edge from the video's right one
  return {video.width - distance, 0, side, side};
}

CountdownPlacement countdownPlacement(unsigned position, Size video, Size button,
                                      const Rect& otherwise) {
  const double right = video.width - button.width;
  const double center = std::floor(video.width / 2) - std::floor(button.width / 2);
  const double bottom = video.height - button.height;
  const auto at = [&](double x, double y, TextAlignment alignment) {
    return CountdownPlacement{{x, y, button.width, button.height}, alignment};
  };
  switch (position) {
    case 0:
      return at(right, 0, TextAlignment::right);
    case 1:
      return at(center, 0, TextAlignment::center);
    case 2:
      return at(0, 0, TextAlignment::left);
    case 3:
      return at(0, bottom, TextAlignment::left);
    case 4:
      return at(center, bottom, TextAlignment::center);
    case 5:
      return at(right, bottom, TextAlignment::right);
    default:
      return {otherwise, TextAlignment::left};
  }
}

}  // namespace tavo
