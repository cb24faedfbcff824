#pragma once

#include <tavo/Export.h>
#include <tavo/View.h>

namespace tavo {

// How a picture is fitted into its view. One pixel is one point where nothing is scaled.
enum class ContentMode {
  scaleToFill,  // as wide and as high as the view, whatever becomes of the proportions
  aspectFit,    // as large as fits, the whole picture seen
  aspectFill,   // as small as fills, its edges cut off
  center,       // unscaled, in the middle
  topLeft,      // unscaled, in the corner
};

// Shows one picture. What reaches beyond the view is cut off. The pixels are shared, not copied:
// ten views of one picture cost one. Main thread only; changes show with the next frame.
class TAVO_EXPORT ImageView : public View {
 public:
  using View::View;

  // Empty: only the background is drawn.
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
