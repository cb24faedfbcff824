#pragma once

#include <gtkmm.h>

namespace tavo::test {

// The keyboard of an X screen, as a person would use it, by way of the server's test extension. The
// library for it is looked for at run time.
class ScreenKeys {
 public:
  // Gives the window what is typed from then on.
  explicit ScreenKeys(Gtk::Window& window);

  // False when the library is missing or the screen is not one of an X server.
  [[nodiscard]] bool work() const { return display_ != nullptr; }

  // Presses a key, for example GDK_KEY_Tab, and lets it go, while another one is held, for example
  // GDK_KEY_Shift_L. Only where they work.
  void press(unsigned key, unsigned held = 0);

 private:
  using Key = int (*)(void* display, unsigned code, int down, unsigned long delay);

  void* display_ = nullptr;
  Key key_ = nullptr;
};

}  // namespace tavo::test
