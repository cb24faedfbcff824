#include "AdPlayer/Screenshot.h"

#include <array>
#include <vector>

namespace tavo::adplayer {

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

Color Screenshot::pixel(int x, int y) const {
  if (!texture_ || x < 0 || y < 0 || x >= texture_->get_width() || y >= texture_->get_height()) {
    return colors::clear;
  }
  const auto width = static_cast<std::size_t>(texture_->get_width());
  std::vector<guchar> pixels(width * static_cast<std::size_t>(texture_->get_height()) * 4);
  gdk_texture_download(texture_->gobj(), pixels.data(), width * 4);
  // Downloads are 32-bit words of premultiplied ARGB: blue comes first in memory.
  const auto at = (static_cast<std::size_t>(y) * width + static_cast<std::size_t>(x)) * 4;
  const auto part = [&](std::size_t offset) {
    return static_cast<float>(pixels[at + offset]) / 255.0F;
  };
  return {part(2), part(1), part(0), part(3)};
}

}  // namespace tavo::adplayer
