#include "UserInterface/Movie/CountdownPlacement.h"

#include <cmath>

namespace tavo {

namespace {
constexpr unsigned cornerMargins = flexibleLeftMargin | flexibleBottomMargin;
}  // namespace

Rect skipButtonFrame(Size video) {
  constexpr double side = 44;
  constexpr double distance = 49;  // of its left edge from the video's right one
  return {video.width - distance, 0, side, side};
}

CountdownPlacement controlPlacement(Size video) {
  return {skipButtonFrame(video), TextAlignment::right, cornerMargins};
}

CountdownPlacement countdownPlacement(std::optional<unsigned> position, Size video) {
  const Rect control = skipButtonFrame(video);
  const double right = video.width - control.width;
  const double center = std::floor(video.width / 2) - std::floor(control.width / 2);
  const double bottom = video.height - control.height;
  const auto at = [&](double x, double y, TextAlignment alignment) {
    unsigned margins = y > 0 ? flexibleTopMargin : flexibleBottomMargin;
    if (alignment != TextAlignment::left) margins |= flexibleLeftMargin;
    if (alignment != TextAlignment::right) margins |= flexibleRightMargin;
    return CountdownPlacement{{x, y, control.width, control.height}, alignment, margins};
  };
  constexpr unsigned unknown = 6;
  switch (position.value_or(unknown)) {
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
      return {control, TextAlignment::left, cornerMargins};
  }
}

std::optional<unsigned> countdownPosition(const XAdSlotConfiguration* slot) {
  return slot == nullptr ? std::nullopt : std::optional{slot->countdownTimerPosition};
}

}  // namespace tavo
