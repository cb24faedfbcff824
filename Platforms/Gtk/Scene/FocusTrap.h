#pragma once

#include <gtkmm.h>

namespace tavo::gtk {

// Keeps the keyboard and assistive technology out of a window's content while something covers it:
// from its making to its end, when the focus returns to where it was. Main thread only.
class FocusTrap {
 public:
  // `content` may be null; it is a part of `window`.
  FocusTrap(Gtk::Window& window, Gtk::Widget* content);
  ~FocusTrap();
  FocusTrap(const FocusTrap&) = delete;
  FocusTrap& operator=(const FocusTrap&) = delete;

 private:
  Gtk::Window& window_;
  GtkWidget* content_ = nullptr;    // cleared when the widget goes
  GtkWidget* lastFocus_ = nullptr;  // likewise
  bool couldFocus_ = true;
};

}  // namespace tavo::gtk
