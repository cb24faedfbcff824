#pragma once

#include <gtk/gtk.h>

#include "Gtk/GPtr.h"
#include "Gtk/Scene/NativeView.h"

namespace tavo::gtk {

// The place of a native widget in the picture of the view that brings it. The widget may leave for
// another place, or end, at any time. Main thread only.
class NativePlace {
 public:
  // `parent` owns the place.
  explicit NativePlace(GtkWidget* parent) : parent_{parent} {}
  ~NativePlace() { release(); }
  NativePlace(const NativePlace&) = delete;
  NativePlace& operator=(const NativePlace&) = delete;

  // Takes the view's widget from wherever it is once it is worth showing, and shows it or hides it.
  void follow(NativeView& view);
  // Draws the widget, or the last picture of one that rests.
  void draw(GtkSnapshot* snapshot) const;
  // The view is gone. True when its widget stays.
  bool retire();
  void release();

  // The widget that stands here, seen or not; null when there is none.
  [[nodiscard]] GtkWidget* widget() const;

 private:
  void take(NativeView& view);
  void keepPicture();

  GtkWidget* parent_;
  GtkWidget* widget_ = nullptr;  // cleared when it ends; may have another parent by now
  bool isKept_ = false;
  GPtr<GdkPaintable> picture_;  // while it rests
};

}  // namespace tavo::gtk
