#pragma once

#include <tavo/View.h>

namespace tavo::gtk {

// What stands between a slot's view and its window's root view, which it covers: so the view's
// frame is its place among the host's content. It gives the view a window and a controller but is
// drawn by the slot, among the host's own widgets, and not by the window's layer.
class SlotContainer : public View {
 public:
  using View::View;
};

}  // namespace tavo::gtk
