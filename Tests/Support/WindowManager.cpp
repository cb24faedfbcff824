#include "Support/WindowManager.h"

#include <gtkmm.h>

// Last, for its macros carry everyday names.
#include <gdk/x11/gdkx.h>

namespace tavo::test {

void setMinimised(Gtk::Window& window, bool minimised) {
  GdkSurface* surface = gtk_native_get_surface(GTK_NATIVE(window.gobj()));
  Display* display = gdk_x11_display_get_xdisplay(gdk_surface_get_display(surface));
  const ::Window id = gdk_x11_surface_get_xid(surface);
  minimised ? XUnmapWindow(display, id) : XMapWindow(display, id);
  XFlush(display);
}

}  // namespace tavo::test
