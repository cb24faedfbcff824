#pragma once

#include <cstddef>
#include <memory>

#include "Services/ImageDecoder.h"
#include "Services/RunLoop.h"

namespace tavo::gtk {

// Decodes with gdk-pixbuf on the run loop's background threads. Reads PNG, JPEG (turned upright as
// its camera noted), GIF (the first picture), BMP and, where the system has a reader for it, WebP.
// Everything else is no picture: what reads drawings and the rarer formats would be one more way
// in. A picture that breaks off is no picture either; of an
// interlaced one the finer passes may be missing.
class GtkImageDecoder : public ImageDecoder {
 public:
  GtkImageDecoder(std::shared_ptr<RunLoop> runLoop, std::size_t picturePixels)
      : runLoop_{std::move(runLoop)}, picturePixels_{picturePixels} {}

  void decode(std::string bytes, std::function<void(Image)> completion) override;
  [[nodiscard]] Image decodeNow(const std::string& bytes) const override;

 private:
  std::shared_ptr<RunLoop> runLoop_;
  std::size_t picturePixels_;
};

}  // namespace tavo::gtk
