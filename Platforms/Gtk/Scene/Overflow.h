#pragma once

#include <tavo/View.h>

namespace tavo::gtk {

// Whether what is drawn below `view` may reach beyond that rectangle of it. A clip costs something
// in each frame, so one that cuts nothing off is left out.
[[nodiscard]] bool reachesBeyond(const View& view, const Rect& bounds);

}  // namespace tavo::gtk
