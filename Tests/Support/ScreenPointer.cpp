#include "Support/ScreenPointer.h"

#include <dlfcn.h>
#include <gdk/x11/gdkx.h>

namespace tavo::test {

ScreenPointer::ScreenPointer() {
  GdkDisplay* display = gdk_display_get_default();
  void* library = dlopen("libXtst.so.6", RTLD_NOW);
  if (library == nullptr || !GDK_IS_X11_DISPLAY(display)) return;
  move_ = reinterpret_cast<Move>(dlsym(library, "XTestFakeMotionEvent"));
  button_ = reinterpret_cast<Button>(dlsym(library, "XTestFakeButtonEvent"));
  flush_ = reinterpret_cast<Flush>(dlsym(library, "XFlush"));
  if (move_ == nullptr || button_ == nullptr || flush_ == nullptr) return;
  display_ = gdk_x11_display_get_xdisplay(display);
}

void ScreenPointer::moveTo(int x, int y) {
  constexpr int currentScreen = -1;
  move_(display_, currentScreen, x, y, 0);
  flush_(display_);
}

void ScreenPointer::press() { button(1); }

void ScreenPointer::release() { button(0); }

void ScreenPointer::button(int down) {
  button_(display_, 1, down, 0);
  flush_(display_);
}

}  // namespace tavo::test
