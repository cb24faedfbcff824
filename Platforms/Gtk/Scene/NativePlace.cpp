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
  gtk_widget_set_child_visible(widget_, view.isReadyToShow() ? TRUE : FALSE);
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
  if (!isKept_) release();
  return widget() != nullptr;
}

void NativePlace::release() {
  if (widget_ == nullptr) return;
  g_object_remove_weak_pointer(G_OBJECT(widget_), reinterpret_cast<gpointer*>(&widget_));
  if (GtkWidget* const here = widget()) gtk_widget_unparent(here);
  widget_ = nullptr;
}

}  // namespace tavo::gtk
