#pragma once

#include <gtkmm.h>

#include <tavo/ImageView.h>
#include <tavo/Label.h>
#include <tavo/View.h>

namespace tavo::gtk {

// Paints what a view shows by itself: background, picture, text. Main thread, within a snapshot.
class ViewPainter {
 public:
  // `widget` lends its fonts and its size.
  ViewPainter(GtkSnapshot* snapshot, Gtk::Widget& widget) : snapshot_{snapshot}, widget_{widget} {}

  // Whether there is anything to paint. Asked once a change; a frame has no time for it.
  [[nodiscard]] static bool isNeededFor(const View& view);
  void paint(const View& view);
  // The mark of what the keyboard stands on: seen on a picture of any colour.
  void paintFocus();

 private:
  void paintBackground(const View& view);
  void paintImage(const ImageView& view);
  void paintLabel(const Label& label);

  GtkSnapshot* snapshot_;
  Gtk::Widget& widget_;
};

}  // namespace tavo::gtk
