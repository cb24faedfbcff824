#pragma once

#include <tavo/Geometry.h>
#include <tavo/MRAIDState.h>

namespace tavo {

// What a creative may know of its ad at one moment. Rectangles in the coordinates of the room that
// the host leaves, points.
struct MraidPlace {
  MRAIDState state = MRAIDState::loading;
  Size screen;
  Size room;  // for ads that do not fill the screen
  Rect defaultPosition;
  Rect currentPosition;
  bool isViewable = false;
  friend bool operator==(const MraidPlace&, const MraidPlace&) = default;
};

}  // namespace tavo
