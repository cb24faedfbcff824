#include <cmath>
#include <utility>

#include <tavo/Image.h>

namespace tavo {

namespace {
constexpr std::size_t bytesPerPixel = 4;
}

Image::Image(int width, int height, std::size_t stride, Pixels pixels)
    : width_{width}, height_{height}, stride_{stride}, pixels_{std::move(pixels)} {}

Image Image::withScale(double scale) const {
  Image other = *this;
  other.scale_ = scale;
  return other;
}

Image Image::cropped(const Rect& area) const {
  const Rect whole{0, 0, static_cast<double>(width_), static_cast<double>(height_)};
  const Rect part = whole.intersection(
      {std::floor(area.x), std::floor(area.y), std::floor(area.width), std::floor(area.height)});
  if (part.empty()) return {};
  const auto offset =
      static_cast<std::size_t>(part.y) * stride_ + static_cast<std::size_t>(part.x) * bytesPerPixel;
  return {static_cast<int>(part.width), static_cast<int>(part.height), stride_,
          Pixels{pixels_, pixels_.get() + offset}};
}

}  // namespace tavo
