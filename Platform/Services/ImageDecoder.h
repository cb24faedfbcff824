#pragma once

#include <functional>
#include <memory>
#include <string>

#include <tavo/Image.h>

namespace tavo {

// Turns the bytes of a PNG, JPEG, GIF (first picture), WebP where the system has a reader, and so
// on into pixels.
class ImageDecoder {
 public:
  virtual ~ImageDecoder() = default;

  // Decodes on another thread and calls `completion` exactly once on the main thread, never inside
  // this call, with the picture, or with an empty one when the bytes are no picture or one of more
  // than Limits::picturePixels. The size is read from the header and refused before any pixel is
  // decoded. Main thread only.
  virtual void decode(std::string bytes, std::function<void(Image)> completion) = 0;

  // The same, at once, for small pictures of the library's own (buttons, toolbar).
  [[nodiscard]] virtual Image decodeNow(const std::string& bytes) const = 0;
};

}  // namespace tavo
