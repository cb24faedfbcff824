#pragma once

#include <tavo/ViewController.h>

namespace tavo {

// Which way a controller stands in a window, and where. A window counts as a screen: a controller
// that allows one way only stands that way in it, whatever the window's own shape.

// Portrait where it is at least as high as wide; unknown without an area.
[[nodiscard]] InterfaceOrientation orientationOf(Size window);

// The way asked for where it is supported, else the other one; supporting nothing counts as all.
[[nodiscard]] InterfaceOrientation allowedOrientation(OrientationMask supported,
                                                      InterfaceOrientation asked);

// A frame in the window; `turned`: drawn turned to the right by a quarter, its sides swapped.
struct ControllerPlace {
  Rect frame;
  bool turned = false;
  friend bool operator==(const ControllerPlace&, const ControllerPlace&) = default;
};

// The whole window where it has that shape. Otherwise the largest middle part that has it and is
// no narrower than what creatives are made for, or the whole window with the controller turned.
[[nodiscard]] ControllerPlace placeIn(Size window, InterfaceOrientation orientation,
                                      OrientationFit fit);

}  // namespace tavo
