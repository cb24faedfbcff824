#pragma once

#include <gtk/gtk.h>

#include "Gtk/GPtr.h"

namespace tavo::gtk {

// The picture that a video shows at the moment, for a widget that keeps it for the length of the
// video: a widget that is given a new picture lays its whole window out anew. Main thread only.
class FramePaintable {
 public:
  FramePaintable();

  // For whoever draws it; shows nothing before the first picture.
  [[nodiscard]] GdkPaintable* paintable() const { return paintable_.get(); }
  // Null shows nothing.
  void show(GdkTexture* picture);

 private:
  GPtr<GdkPaintable> paintable_;
};

}  // namespace tavo::gtk
