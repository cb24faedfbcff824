#include "AdPlayer/Stage/Fingers.h"

#include <dlfcn.h>
#include <gdk/x11/gdkx.h>

#include <cmath>
#include <cstdio>

namespace tavo::adplayer {

namespace {

// A string literal of JavaScript.
std::string literal(const std::string& text) {
  std::string made = "'";
  for (const char letter : text) {
    if (letter == '\'' || letter == '\\') made += '\\';
    made += letter == '\n' ? ' ' : letter;
  }
  return made + "'";
}

}  // namespace

Fingers::Fingers() {
  GdkDisplay* const display = gdk_display_get_default();
  if (display == nullptr || !GDK_IS_X11_DISPLAY(display)) return;
  void* const library = dlopen("libXtst.so.6", RTLD_NOW);
  if (library == nullptr) return;
  move_ = reinterpret_cast<Move>(dlsym(library, "XTestFakeMotionEvent"));
  button_ = reinterpret_cast<Button>(dlsym(library, "XTestFakeButtonEvent"));
  flush_ = reinterpret_cast<Flush>(dlsym(library, "XFlush"));
  if (move_ == nullptr || button_ == nullptr || flush_ == nullptr) return;
  display_ = gdk_x11_display_get_xdisplay(display);
}

void Fingers::tap(Phone& phone, Point point) {
  if (!canTouch()) return;
  auto* const window = dynamic_cast<Gtk::Window*>(phone.get_root());
  if (window == nullptr) return;
  double x = 0;
  double y = 0;
  phone.screen().translate_coordinates(*window, point.x, point.y, x, y);
  double offsetX = 0;
  double offsetY = 0;
  gtk_native_get_surface_transform(GTK_NATIVE(window->gobj()), &offsetX, &offsetY);
  constexpr int currentScreen = -1;
  constexpr unsigned long longPress = 60;  // milliseconds
  move_(display_, currentScreen, static_cast<int>(x + offsetX), static_cast<int>(y + offsetY), 0);
  button_(display_, 1, 1, 0);
  button_(display_, 1, 0, longPress);
  flush_(display_);
}

void Fingers::find(Session& session, const std::string& selector, bool isFirst,
                   const std::function<void(std::optional<Point>)>& found) {
  const auto page = session.page();
  if (!page) return found(std::nullopt);
  const std::string script =
      std::string{"(() => { "} + (isFirst ? "" : "if (window.tavoTouched === 'yes') return ''; ") +
      "const e = document.querySelector(" + literal(selector) +
      "); if (!e) return ''; const r = e.getBoundingClientRect();"
      " window.tavoTouched = 'no';"
      " addEventListener('mousedown', () => window.tavoTouched = 'yes',"
      " {capture: true, once: true}); return r.width && r.height ? (r.x + r.width / 2) + ' ' +"
      " (r.y + r.height / 2) : ''; })()";
  page->evaluate(script, [found, weak = std::weak_ptr{page}](const std::string& result) {
    double x = 0;
    double y = 0;
    const auto there = weak.lock();
    if (!there || std::sscanf(result.c_str(), "%lf %lf", &x, &y) != 2) return found(std::nullopt);
    const Rect place = there->convertTo(nullptr, there->bounds());
    found(Point{place.x + x, place.y + y});
  });
}

void Fingers::ask(Session& session, const std::function<void(bool)>& landed) {
  const auto page = session.page();
  if (!page) return landed(true);
  page->evaluate("window.tavoTouched || ''",
                 [landed](const std::string& touched) { landed(touched != "no"); });
}

}  // namespace tavo::adplayer
