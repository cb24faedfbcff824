#include "Gtk/Scene/Overflow.h"

#include <algorithm>

#include <tavo/Button.h>
#include <tavo/Label.h>

namespace tavo::gtk {

namespace {

// Words take the room that they need.
bool hasWords(const View& view) {
  return dynamic_cast<const Label*>(&view) != nullptr ||
         dynamic_cast<const tavo::Button*>(&view) != nullptr;
}

}  // namespace

bool reachesBeyond(const View& view, const Rect& bounds) {
  const auto& subviews = view.subviews();
  return std::any_of(subviews.begin(), subviews.end(), [&](const auto& subview) {
    const Rect& frame = subview->frame();
    if (subview->isTurned() || hasWords(*subview) || !bounds.contains(frame)) return true;
    return !subview->clipsToBounds() && reachesBeyond(*subview, bounds.movedBy(-frame.x, -frame.y));
  });
}

}  // namespace tavo::gtk
