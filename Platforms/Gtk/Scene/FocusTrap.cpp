#include "Gtk/Scene/FocusTrap.h"

namespace tavo::gtk {

namespace {

GtkWidget* watched(GtkWidget* widget, GtkWidget** place) {
  if (widget == nullptr) return nullptr;
  g_object_add_weak_pointer(G_OBJECT(widget), reinterpret_cast<gpointer*>(place));
  return widget;
}

void forget(GtkWidget** place) {
  if (*place == nullptr) return;
  g_object_remove_weak_pointer(G_OBJECT(*place), reinterpret_cast<gpointer*>(place));
  *place = nullptr;
}

void setHiddenFromReaders(GtkWidget* widget, bool hidden) {
  gtk_accessible_update_state(GTK_ACCESSIBLE(widget), GTK_ACCESSIBLE_STATE_HIDDEN,
                              hidden ? TRUE : FALSE, -1);
}

}  // namespace

FocusTrap::FocusTrap(Gtk::Window& window, Gtk::Widget* content)
    : window_{window},
      content_{watched(content == nullptr ? nullptr : content->gobj(), &content_)},
      lastFocus_{watched(gtk_window_get_focus(window.gobj()), &lastFocus_)} {
  if (content_ != nullptr) {
    couldFocus_ = gtk_widget_get_can_focus(content_) != FALSE;
    gtk_widget_set_can_focus(content_, FALSE);
    setHiddenFromReaders(content_, true);
  }
}

FocusTrap::~FocusTrap() {
  if (content_ != nullptr) {
    gtk_widget_set_can_focus(content_, couldFocus_ ? TRUE : FALSE);
    setHiddenFromReaders(content_, false);
  }
  if (lastFocus_ != nullptr && gtk_widget_get_root(lastFocus_) == GTK_ROOT(window_.gobj())) {
    gtk_widget_grab_focus(lastFocus_);
  }
  forget(&content_);
  forget(&lastFocus_);
}

}  // namespace tavo::gtk
