#pragma once

#include <gtkmm.h>

#include <string>
#include <vector>

#include <tavo/Color.h>

namespace tavo::adplayer {

// The picture of a widget's content as it stands now, web content included.
class Screenshot {
 public:
  explicit Screenshot(Gtk::Widget& widget);

  // False when nothing could be drawn yet: the widget is not mapped or has no size.
  [[nodiscard]] bool isValid() const { return texture_ != nullptr; }
  // Returns whether the PNG file was written.
  [[nodiscard]] bool save(const std::string& path) const;
  // The bytes of a PNG file; empty without a picture.
  [[nodiscard]] std::string png() const;
  // The colour of one pixel, counted from the top left; clear outside the picture.
  [[nodiscard]] Color pixel(int x, int y) const;
  // The mean relative luminance of each place of a grid with so many places a side, row by row;
  // empty when nothing could be drawn.
  [[nodiscard]] std::vector<float> luminance(int cells) const;

 private:
  [[nodiscard]] std::vector<guchar> pixels() const;

  Glib::RefPtr<Gdk::Texture> texture_;
};

}  // namespace tavo::adplayer
