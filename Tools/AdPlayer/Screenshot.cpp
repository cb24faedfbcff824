#include "AdPlayer/Screenshot.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace tavo::adplayer {

namespace {

// The light of one component of sRGB.
float linear(guchar component) {
  static const auto table = [] {
    std::array<float, 256> light{};
    for (std::size_t i = 0; i < light.size(); ++i) {
      const float value = static_cast<float>(i) / 255.0F;
      light[i] = value <= 0.04045F ? value / 12.92F : std::pow((value + 0.055F) / 1.055F, 2.4F);
    }
    return light;
  }();
  return table[component];
}

}  // namespace

Screenshot::Screenshot(Gtk::Widget& widget) {
  GtkNative* native = gtk_widget_get_native(widget.gobj());
  GskRenderer* renderer = native == nullptr ? nullptr : gtk_native_get_renderer(native);
  if (renderer == nullptr || !widget.get_mapped()) return;
  GdkPaintable* paintable = gtk_widget_paintable_new(widget.gobj());
  GtkSnapshot* snapshot = gtk_snapshot_new();
  gdk_paintable_snapshot(paintable, snapshot, widget.get_width(), widget.get_height());
  g_object_unref(paintable);
  GskRenderNode* node = gtk_snapshot_free_to_node(snapshot);
  if (node == nullptr) return;
  const graphene_rect_t whole{
      {0, 0}, {static_cast<float>(widget.get_width()), static_cast<float>(widget.get_height())}};
  texture_ = Glib::wrap(gsk_renderer_render_texture(renderer, node, &whole));
  gsk_render_node_unref(node);
}

bool Screenshot::save(const std::string& path) const {
  return texture_ && gdk_texture_save_to_png(texture_->gobj(), path.c_str()) != FALSE;
}

std::vector<guchar> Screenshot::pixels() const {
  const auto width = static_cast<std::size_t>(texture_->get_width());
  std::vector<guchar> bytes(width * static_cast<std::size_t>(texture_->get_height()) * 4);
  gdk_texture_download(texture_->gobj(), bytes.data(), width * 4);
  return bytes;
}

std::vector<float> Screenshot::luminance(int cells) const {
  if (!texture_ || texture_->get_width() < cells || texture_->get_height() < cells) return {};
  const auto bytes = pixels();
  const auto width = static_cast<std::size_t>(texture_->get_width());
  const auto height = static_cast<std::size_t>(texture_->get_height());
  const auto side = static_cast<std::size_t>(cells);
  std::vector<float> sums(side * side);
  std::vector<float> counts(side * side);
  // Every second pixel of every second row is enough to know how light a place is.
  for (std::size_t y = 0; y < height; y += 2) {
    for (std::size_t x = 0; x < width; x += 2) {
      const auto* const at = &bytes[(y * width + x) * 4];
      const auto cell = y * side / height * side + x * side / width;
      sums[cell] += 0.0722F * linear(at[0]) + 0.7152F * linear(at[1]) + 0.2126F * linear(at[2]);
      counts[cell] += 1;
    }
  }
  for (std::size_t cell = 0; cell < sums.size(); ++cell) sums[cell] /= std::max(counts[cell], 1.0F);
  return sums;
}

std::string Screenshot::png() const {
  if (!texture_) return {};
  GBytes* const bytes = gdk_texture_save_to_png_bytes(texture_->gobj());
  gsize length = 0;
  const auto* const data = static_cast<const char*>(g_bytes_get_data(bytes, &length));
  std::string png{data == nullptr ? "" : data, data == nullptr ? 0 : length};
  g_bytes_unref(bytes);
  return png;
}

Color Screenshot::pixel(int x, int y) const {
  if (!texture_ || x < 0 || y < 0 || x >= texture_->get_width() || y >= texture_->get_height()) {
    return colors::clear;
  }
  const auto width = static_cast<std::size_t>(texture_->get_width());
  const auto bytes = pixels();
  // Downloads are 32-bit words of premultiplied ARGB: blue comes first in memory.
  const auto at = (static_cast<std::size_t>(y) * width + static_cast<std::size_t>(x)) * 4;
  const auto part = [&](std::size_t offset) {
    return static_cast<float>(bytes[at + offset]) / 255.0F;
  };
  return {part(2), part(1), part(0), part(3)};
}

}  // namespace tavo::adplayer
