#pragma once

namespace Gtk {
class Window;
}

namespace tavo::test {

// Does to a window what a window manager does when its user minimises or restores it; the virtual
// screen has none.
void setMinimised(Gtk::Window& window, bool minimised);

}  // namespace tavo::test
