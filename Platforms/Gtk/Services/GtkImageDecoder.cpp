#include "Gtk/Services/GtkImageDecoder.h"

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string_view>
#include <utility>

#include "Gtk/GPtr.h"
#include "Gtk/Guarded.h"

namespace tavo::gtk {

namespace {

// gdk-pixbuf's name for the format of `bytes`, or null for one that is not read.
const char* formatOf(std::string_view bytes) {
  using namespace std::string_view_literals;
  if (bytes.starts_with("\x89PNG\r\n\x1a\n"sv)) return "png";
  if (bytes.starts_with("\xff\xd8\xff"sv)) return "jpeg";
  if (bytes.starts_with("GIF8"sv)) return "gif";
  if (bytes.starts_with("RIFF"sv) && bytes.substr(8).starts_with("WEBP"sv)) return "webp";
  if (bytes.starts_with("BM"sv)) return "bmp";
  return nullptr;
}

bool isOneOf(std::string_view format, std::initializer_list<std::string_view> formats) {
  return std::find(formats.begin(), formats.end(), format) != formats.end();
}

// One picture while it is read.
struct Reading {
  std::size_t mostPixels;
  // Its rows come one after the other; a frame of an animation may be smaller than its canvas.
  bool growsByRows;
  std::int64_t rows = 0;  // filled so far, from whichever end the format begins
};

// Called with the size out of the header, before memory for the pixels is asked for. An empty
// target size makes the loader give up.
void refuseHuge(GdkPixbufLoader* loader, int width, int height, Reading* reading) {
  const auto pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  if (pixels > reading->mostPixels) gdk_pixbuf_loader_set_size(loader, 0, 0);
}

// The pixels come as memory was before; a file that leaves some out must not show that.
void clearPixels(GdkPixbufLoader* loader, Reading* reading) {
  if (!reading->growsByRows) return;
  GdkPixbuf* const pixbuf = gdk_pixbuf_loader_get_pixbuf(loader);
  std::memset(gdk_pixbuf_get_pixels(pixbuf), 0, gdk_pixbuf_get_byte_length(pixbuf));
}

void noteRows(GdkPixbufLoader* /*loader*/, int /*x*/, int /*y*/, int /*width*/, int height,
              Reading* reading) {
  reading->rows += height;
}

GPtr<GdkPixbufLoader> makeLoader(const char* format, Reading& reading) {
  auto loader = GPtr<GdkPixbufLoader>::adopt(gdk_pixbuf_loader_new_with_type(format, nullptr));
  if (!loader) return nullptr;
  g_signal_connect(loader.get(), "size-prepared", G_CALLBACK(fenced<&refuseHuge>), &reading);
  g_signal_connect(loader.get(), "area-prepared", G_CALLBACK(fenced<&clearPixels>), &reading);
  g_signal_connect(loader.get(), "area-updated", G_CALLBACK(fenced<&noteRows>), &reading);
  return loader;
}

GPtr<GdkPixbuf> load(std::string_view bytes, std::size_t mostPixels) {
  const char* const format = formatOf(bytes);
  if (format == nullptr) return nullptr;
  const bool growsByRows = isOneOf(format, {"png", "jpeg", "bmp"});
  Reading reading{mostPixels, growsByRows};
  const auto loader = makeLoader(format, reading);
  if (!loader) return nullptr;
  const auto* const data = reinterpret_cast<const guchar*>(bytes.data());
  const bool written = gdk_pixbuf_loader_write(loader.get(), data, bytes.size(), nullptr) != FALSE;
  // Closing is needed after a failed write too, or the loader complains when it goes.
  const bool closed = gdk_pixbuf_loader_close(loader.get(), nullptr) != FALSE;
  if (!written || !closed) return nullptr;
  auto pixbuf = GPtr<GdkPixbuf>::share(gdk_pixbuf_loader_get_pixbuf(loader.get()));
  // The PNG reader is content with a file that breaks off.
  const bool whole =
      pixbuf && (!growsByRows || reading.rows >= gdk_pixbuf_get_height(pixbuf.get()));
  return whole ? pixbuf : nullptr;
}

Image toImage(GPtr<GdkPixbuf> pixbuf) {
  if (!pixbuf || gdk_pixbuf_get_bits_per_sample(pixbuf.get()) != 8) return {};
  pixbuf = GPtr<GdkPixbuf>::adopt(gdk_pixbuf_apply_embedded_orientation(pixbuf.get()));
  if (gdk_pixbuf_get_has_alpha(pixbuf.get()) == FALSE) {
    pixbuf = GPtr<GdkPixbuf>::adopt(gdk_pixbuf_add_alpha(pixbuf.get(), FALSE, 0, 0, 0));
  }
  if (!pixbuf) return {};
  const auto owner = std::make_shared<const GPtr<GdkPixbuf>>(std::move(pixbuf));
  GdkPixbuf* const held = owner->get();
  return {gdk_pixbuf_get_width(held), gdk_pixbuf_get_height(held),
          static_cast<std::size_t>(gdk_pixbuf_get_rowstride(held)),
          Image::Pixels{owner, gdk_pixbuf_read_pixels(held)}};
}

}  // namespace

Image GtkImageDecoder::decodeNow(const std::string& bytes) const {
  return toImage(load(bytes, picturePixels_));
}

void GtkImageDecoder::decode(std::string bytes, std::function<void(Image)> completion) {
  runLoop_->background([runLoop = runLoop_, mostPixels = picturePixels_,
                        picture = std::make_shared<const std::string>(std::move(bytes)),
                        completion = std::move(completion)] {
    runLoop->post([image = toImage(load(*picture, mostPixels)), completion] { completion(image); });
  });
}

}  // namespace tavo::gtk
