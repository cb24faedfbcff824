#include "Gtk/Scene/Textures.h"

#include <gdk/gdk.h>

#include <array>

namespace tavo::gtk {

namespace {

constexpr std::size_t bytesPerPixel = 4;

void dropPixels(gpointer held) { delete static_cast<Image::Pixels*>(held); }

Glib::RefPtr<Gdk::Texture> makeTexture(const Image& image) {
  const auto rows = static_cast<std::size_t>(image.height() - 1);
  const auto size = rows * image.stride() + static_cast<std::size_t>(image.width()) * bytesPerPixel;
  GBytes* bytes = g_bytes_new_with_free_func(image.pixels().get(), size, dropPixels,
                                             new Image::Pixels{image.pixels()});
  GdkTexture* texture = gdk_memory_texture_new(image.width(), image.height(), GDK_MEMORY_R8G8B8A8,
                                               bytes, image.stride());
  g_bytes_unref(bytes);
  return Glib::wrap(texture);
}

// A texture that was made. It keeps its pixels alive, so while it lives no other picture stands at
// their address. Only whoever draws it keeps it: a picture may have a hundred megabytes.
class Remembered {
 public:
  Remembered() { g_weak_ref_init(&texture_, nullptr); }
  ~Remembered() { g_weak_ref_clear(&texture_); }
  Remembered(const Remembered&) = delete;
  Remembered& operator=(const Remembered&) = delete;

  void set(const Image& image, const Glib::RefPtr<Gdk::Texture>& texture) {
    pixels_ = image.pixels().get();
    stride_ = image.stride();
    g_weak_ref_set(&texture_, texture->gobj());
  }

  // Null when it is another picture's or nobody draws it any more.
  [[nodiscard]] Glib::RefPtr<Gdk::Texture> of(const Image& image) {
    if (pixels_ != image.pixels().get() || stride_ != image.stride()) return {};
    auto texture = Glib::wrap(static_cast<GdkTexture*>(g_weak_ref_get(&texture_)));
    const bool same =
        texture && texture->get_width() == image.width() && texture->get_height() == image.height();
    return same ? texture : nullptr;
  }

 private:
  const std::uint8_t* pixels_ = nullptr;
  std::size_t stride_ = 0;
  GWeakRef texture_{};
};

}  // namespace

Glib::RefPtr<Gdk::Texture> textureOf(const Image& image) {
  static std::array<Remembered, 8> recent;  // about as many as are on the screen at a time
  static std::size_t oldest = 0;
  if (image.empty()) return {};
  for (auto& entry : recent) {
    if (auto texture = entry.of(image)) return texture;
  }
  auto made = makeTexture(image);
  recent[oldest].set(image, made);
  oldest = (oldest + 1) % recent.size();
  return made;
}

}  // namespace tavo::gtk
