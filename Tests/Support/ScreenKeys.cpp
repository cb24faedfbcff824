#include "Support/ScreenKeys.h"

#include <X11/Xlib.h>
#include <dlfcn.h>
#include <gdk/x11/gdkx.h>

namespace tavo::test {

ScreenKeys::ScreenKeys(Gtk::Window& window) {
  auto* const surface = gtk_native_get_surface(GTK_NATIVE(window.gobj()));
  void* const library = dlopen("libXtst.so.6", RTLD_NOW);
  if (library == nullptr || surface == nullptr || !GDK_IS_X11_SURFACE(surface)) return;
  key_ = reinterpret_cast<Key>(dlsym(library, "XTestFakeKeyEvent"));
  if (key_ == nullptr) return;
  Display* const display = gdk_x11_display_get_xdisplay(gdk_surface_get_display(surface));
  // Without a window manager nobody else would.
  XSetInputFocus(display, gdk_x11_surface_get_xid(surface), RevertToParent, CurrentTime);
  XFlush(display);
  display_ = display;
}

void ScreenKeys::press(unsigned key, unsigned held) {
  auto* const display = static_cast<Display*>(display_);
  const unsigned code = XKeysymToKeycode(display, key);
  const unsigned heldCode = held == 0 ? 0 : XKeysymToKeycode(display, held);
  if (held != 0) key_(display, heldCode, True, 0);
  key_(display, code, True, 0);
  key_(display, code, False, 0);
  if (held != 0) key_(display, heldCode, False, 0);
  XFlush(display);
}

}  // namespace tavo::test
