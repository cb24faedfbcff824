#pragma once

#include <tavo/View.h>

namespace tavo {

// How a picture is fitted into its view. One pixel is one point where nothing is scaled.
enum class ContentMode { scaleToFill, aspectFit, aspectFill, center, topLeft };

// Shows one picture. What reaches beyond the view is cut off.
class ImageView : public View {
 public:
  using View::View;

  [[nodiscard]] const Image& image() const { return image_; }
  void setImage(Image image);
  [[nodiscard]] ContentMode contentMode() const { return contentMode_; }
  void setContentMode(ContentMode mode);

  // Where the whole picture lies, in the view's own coordinates.
  [[nodiscard]] Rect imageRect() const;

 private:
  Image image_;
  ContentMode contentMode_ = ContentMode::scaleToFill;
};

}  // namespace tavo
