#pragma once

#include <tavo/Geometry.h>
#include <tavo/Label.h>

namespace tavo {

// Where a countdown stands on a video, and to which side its text keeps.
struct CountdownPlacement {
  Rect frame;
  TextAlignment alignment = TextAlignment::left;
  friend bool operator==(const CountdownPlacement&, const CountdownPlacement&) = default;
};

// The place of the skip and close controls on a video of this size: near its top right corner.
[[nodiscard]] Rect skipButtonFrame(Size video);

// The place of a countdown of size `button`, by the slot's `countdownTimerPosition`: 0 top right,
// 1 top centre, 2 top left, 3 bottom left, 4 bottom centre, 5 bottom right; any other stays at
// `otherwise`, with the text to the left.
[[nodiscard]] CountdownPlacement countdownPlacement(unsigned position, Size video, Size button,
                                                    const Rect& otherwise);

}  // namespace tavo
