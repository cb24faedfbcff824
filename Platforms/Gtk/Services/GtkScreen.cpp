#include "Gtk/Services/GtkScreen.h"

#include <gtkmm.h>

#include <algorithm>

#include "Scene/Window.h"

namespace tavo::gtk {

namespace {

Glib::RefPtr<Gdk::Monitor> firstMonitor() {
  const auto display = Gdk::Display::get_default();
  if (!display) return {};
  const auto monitors = display->get_monitors();
  if (monitors->get_n_items() == 0) return {};
  return std::dynamic_pointer_cast<Gdk::Monitor>(monitors->get_object(0));
}

Rect upright(double width, double height) {
  return {0, 0, std::min(width, height), std::max(width, height)};
}

}  // namespace

Rect GtkScreen::bounds() const {
  const auto window = application_->keyWindow();
  if (window && !window->frame().empty()) {
    const Size size = window->interfaceSize();
    return upright(size.width, size.height);
  }
  const auto monitor = firstMonitor();
  if (!monitor) return {};
  Gdk::Rectangle geometry;
  monitor->get_geometry(geometry);
  return upright(geometry.get_width(), geometry.get_height());
}

std::optional<double> GtkScreen::scale() const {
  const auto monitor = firstMonitor();
  if (!monitor) return std::nullopt;
  return monitor->get_scale_factor();
}

}  // namespace tavo::gtk
