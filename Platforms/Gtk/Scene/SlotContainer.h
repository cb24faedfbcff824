#pragma once

#include <tavo/View.h>

namespace tavo::gtk {

// The place of a slot in its window's tree of views. It gives the ad view a window and a controller
// but is drawn by the slot, among the host's own widgets, and not by the window's layer.
class SlotContainer : public View {
 public:
  using View::View;
};

}  // namespace tavo::gtk
