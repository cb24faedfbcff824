#include "Gtk/Video/FramePaintable.h"

namespace tavo::gtk {

namespace {

struct Frame {
  GObject parent;
  GdkTexture* picture;
};

struct FrameClass {
  GObjectClass parent;
};

Frame& frameOf(gpointer paintable) { return *static_cast<Frame*>(paintable); }

GdkPaintable* pictureOf(GdkPaintable* paintable) {
  GdkTexture* picture = frameOf(paintable).picture;
  return picture == nullptr ? nullptr : GDK_PAINTABLE(picture);
}

void snapshot(GdkPaintable* paintable, GdkSnapshot* snapshot, double width, double height) {
  GdkPaintable* picture = pictureOf(paintable);
  if (picture != nullptr) gdk_paintable_snapshot(picture, snapshot, width, height);
}

int intrinsicWidth(GdkPaintable* paintable) {
  GdkPaintable* picture = pictureOf(paintable);
  return picture == nullptr ? 0 : gdk_paintable_get_intrinsic_width(picture);
}

int intrinsicHeight(GdkPaintable* paintable) {
  GdkPaintable* picture = pictureOf(paintable);
  return picture == nullptr ? 0 : gdk_paintable_get_intrinsic_height(picture);
}

void implementPaintable(gpointer interface, gpointer /*data*/) {
  auto* const paintable = static_cast<GdkPaintableInterface*>(interface);
  paintable->snapshot = snapshot;
  paintable->get_intrinsic_width = intrinsicWidth;
  paintable->get_intrinsic_height = intrinsicHeight;
}

gpointer parentClass = nullptr;

void finalize(GObject* object) {
  g_clear_object(&frameOf(object).picture);
  G_OBJECT_CLASS(parentClass)->finalize(object);
}

void initialiseClass(gpointer type, gpointer /*data*/) {
  parentClass = g_type_class_peek_parent(type);
  G_OBJECT_CLASS(type)->finalize = finalize;
}

GType frameType() {
  static const GType type = [] {
    const GType registered = g_type_register_static_simple(
        G_TYPE_OBJECT, "TavoVideoFrame", sizeof(FrameClass), initialiseClass, sizeof(Frame),
        nullptr, static_cast<GTypeFlags>(0));
    const GInterfaceInfo paintable{implementPaintable, nullptr, nullptr};
    g_type_add_interface_static(registered, GDK_TYPE_PAINTABLE, &paintable);
    return registered;
  }();
  return type;
}

bool haveOneSize(GdkTexture* left, GdkTexture* right) {
  if (left == nullptr || right == nullptr) return left == right;
  return gdk_texture_get_width(left) == gdk_texture_get_width(right) &&
         gdk_texture_get_height(left) == gdk_texture_get_height(right);
}

}  // namespace

FramePaintable::FramePaintable()
    : paintable_{GPtr<GdkPaintable>::adopt(GDK_PAINTABLE(g_object_new(frameType(), nullptr)))} {}

void FramePaintable::show(GdkTexture* picture) {
  Frame& frame = frameOf(paintable_.get());
  const bool sameSize = haveOneSize(frame.picture, picture);
  g_set_object(&frame.picture, picture);
  if (!sameSize) gdk_paintable_invalidate_size(paintable_.get());
  gdk_paintable_invalidate_contents(paintable_.get());
}

}  // namespace tavo::gtk
