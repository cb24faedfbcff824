#include <algorithm>

#include <tavo/ImageView.h>

namespace tavo {

void ImageView::setImage(Image image) { change(image_, std::move(image)); }

void ImageView::setContentMode(ContentMode mode) { change(contentMode_, mode); }

Rect ImageView::imageRect() const {
  const Rect view = bounds();
  const double width = image_.width() / image_.scale();
  const double height = image_.height() / image_.scale();
  if (image_.empty() || view.empty()) return {};
  const auto centered = [&](double factor) {
    return Rect{(view.width - width * factor) / 2, (view.height - height * factor) / 2,
                width * factor, height * factor};
  };
  const double horizontal = view.width / width;
  const double vertical = view.height / height;
  switch (contentMode_) {
    case ContentMode::scaleToFill:
      return view;
    case ContentMode::aspectFit:
      return centered(std::min(horizontal, vertical));
    case ContentMode::aspectFill:
      return centered(std::max(horizontal, vertical));
    case ContentMode::center:
      return centered(1);
    case ContentMode::topLeft:
      return {0, 0, width, height};
  }
  return view;
}

}  // namespace tavo
