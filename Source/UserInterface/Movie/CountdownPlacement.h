#pragma once

#include <optional>

#include <tavo/Geometry.h>
#include <tavo/Label.h>
#include <tavo/XAdSlotConfiguration.h>

namespace tavo {

// Where a countdown or a control stands on a video, to which side its text keeps, and how it
// follows the video's size.
struct CountdownPlacement {
  Rect frame;
  TextAlignment alignment = TextAlignment::left;
  unsigned autoresizing = flexibleNothing;
  friend bool operator==(const CountdownPlacement&, const CountdownPlacement&) = default;
};

// The place of the skip and close controls on a video of this size: near its top right corner.
[[nodiscard]] Rect skipButtonFrame(Size video);
[[nodiscard]] CountdownPlacement controlPlacement(Size video);

// The place of a countdown, which is as large as those controls, by the slot's
// `countdownTimerPosition`: 0 top right, 1 top centre, 2 top left, 3 bottom left, 4 bottom centre,
// 5 bottom right. With any other, and with none, it stands where the control will be, its text to
// the left.
[[nodiscard]] CountdownPlacement countdownPlacement(std::optional<unsigned> position, Size video);

// The position that a slot's settings (null: none) ask for.
[[nodiscard]] std::optional<unsigned> countdownPosition(const XAdSlotConfiguration* slot);

}  // namespace tavo
