#include "Gtk/Scene/NativePlace.h"

namespace tavo::gtk {

GtkWidget* NativePlace::widget() const {
  return widget_ != nullptr && gtk_widget_get_parent(widget_) == parent_ ? widget_ : nullptr;
}

void NativePlace::follow(NativeView& view) {
  if (widget() != view.widget()) {
    release();
    if (!view.isReadyToShow()) return;
    take(view);
  }
  const bool isReady = view.isReadyToShow();
  const bool isLive = isReady && !view.isResting();
  if (isReady && !isLive) {
    keepPicture();
  } else {
    picture_.reset();
  }
  gtk_widget_set_child_visible(widget_, isLive ? TRUE : FALSE);
}

// What lies above it may let it shine through.
void NativePlace::keepPicture() {
  if (picture_ || gtk_widget_get_mapped(widget_) == FALSE) return;
  const auto live = GPtr<GdkPaintable>::adopt(gtk_widget_paintable_new(widget_));
  picture_ = GPtr<GdkPaintable>::adopt(gdk_paintable_get_current_image(live.get()));
}

void NativePlace::draw(GtkSnapshot* snapshot) const {
  GtkWidget* const here = widget();
  if (here == nullptr) return;
  if (!picture_) return gtk_widget_snapshot_child(parent_, here, snapshot);
  gdk_paintable_snapshot(picture_.get(), GDK_SNAPSHOT(snapshot), gtk_widget_get_width(here),
                         gtk_widget_get_height(here));
}

void NativePlace::take(NativeView& view) {
  widget_ = view.widget();
  isKept_ = view.isKept();
  g_object_add_weak_pointer(G_OBJECT(widget_), reinterpret_cast<gpointer*>(&widget_));
  GtkWidget* const parent = gtk_widget_get_parent(widget_);
  const GtkWidget* const held = static_cast<GtkWidget*>(g_object_ref(widget_));
  if (parent != nullptr) gtk_widget_unparent(widget_);
  gtk_widget_insert_after(widget_, parent_, nullptr);
  g_object_unref(const_cast<GtkWidget*>(held));
}

bool NativePlace::retire() {
  picture_.reset();
  if (!isKept_) release();
  return widget() != nullptr;
}

void NativePlace::release() {
  picture_.reset();
  if (widget_ == nullptr) return;
  g_object_remove_weak_pointer(G_OBJECT(widget_), reinterpret_cast<gpointer*>(&widget_));
  if (GtkWidget* const here = widget()) gtk_widget_unparent(here);
  widget_ = nullptr;
}

}  // namespace tavo::gtk
