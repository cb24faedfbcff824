#pragma once

#include <gdkmm/texture.h>

#include <tavo/Image.h>

namespace tavo::gtk {

// The picture as a texture; the pixels are shared, not copied, and the texture of a picture that is
// asked for again and again is made once. Null for an empty picture. Main thread only.
[[nodiscard]] Glib::RefPtr<Gdk::Texture> textureOf(const Image& image);

}  // namespace tavo::gtk
