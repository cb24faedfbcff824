#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include <tavo/Export.h>
#include <tavo/Geometry.h>

namespace tavo {

// A decoded picture: rows of RGBA, 8 bits a channel, alpha not premultiplied. Immutable and shared,
// so that a picture can be handed on, cropped and drawn without copying its pixels.
class TAVO_EXPORT Image {
 public:
  // Bytes that somebody keeps alive for as long as a picture uses them.
  using Pixels = std::shared_ptr<const std::uint8_t>;

  // An absent picture: no pixels, zero size.
  Image() = default;

  // `stride` is the distance between the starts of two rows in bytes. The caller guarantees that
  // `pixels` holds `height` rows.
  Image(int width, int height, std::size_t stride, Pixels pixels);

  [[nodiscard]] bool empty() const { return width_ == 0 || height_ == 0; }
  [[nodiscard]] int width() const { return width_; }    // pixels
  [[nodiscard]] int height() const { return height_; }  // pixels
  [[nodiscard]] std::size_t stride() const { return stride_; }
  // Pixels per point: what is as large as its picture has its size in pixels through this.
  [[nodiscard]] double scale() const { return scale_; }
  // The same pixels, made for a screen of that scale; more than 0.
  [[nodiscard]] Image withScale(double scale) const;
  [[nodiscard]] const Pixels& pixels() const { return pixels_; }

  // The part of the picture inside `area` (in pixels, fractions cut off to whole pixels); what of
  // `area` lies outside is left away. Shares the pixels.
  [[nodiscard]] Image cropped(const Rect& area) const;

  // Same size, scale and pixels in memory.
  friend bool operator==(const Image&, const Image&) = default;

 private:
  int width_ = 0;
  int height_ = 0;
  std::size_t stride_ = 0;
  double scale_ = 1;
  Pixels pixels_;
};

}  // namespace tavo
