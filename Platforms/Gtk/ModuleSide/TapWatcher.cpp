#include "Gtk/ModuleSide/TapWatcher.h"

#include <cmath>
#include <utility>

#include "Gtk/Guarded.h"

namespace tavo::gtk {
namespace {

constexpr double furthestMove = 20;  // points; more is a drag

Point pointOf(GdkEvent* event) {
  Point point;
  gdk_event_get_position(event, &point.x, &point.y);
  return point;
}

bool isPrimary(GdkEvent* button) {
  return gdk_button_event_get_button(button) == GDK_BUTTON_PRIMARY;
}

}  // namespace

TapWatcher::TapWatcher(GtkWidget* widget, std::function<void()> tapped)
    : widget_{widget}, controller_{gtk_event_controller_legacy_new()}, tapped_{std::move(tapped)} {
  gtk_event_controller_set_propagation_phase(controller_, GTK_PHASE_CAPTURE);
  g_signal_connect(controller_, "event", G_CALLBACK(fenced<&onEvent>), this);
  gtk_widget_add_controller(widget_, controller_);
}

TapWatcher::~TapWatcher() { gtk_widget_remove_controller(widget_, controller_); }

gboolean TapWatcher::onEvent(GtkEventControllerLegacy* /*controller*/, GdkEvent* event,
                             TapWatcher* self) {
  self->look(event);
  return GDK_EVENT_PROPAGATE;
}

void TapWatcher::look(GdkEvent* event) {
  switch (gdk_event_get_event_type(event)) {
    case GDK_BUTTON_PRESS:
      pressed_ = isPrimary(event) ? std::optional{pointOf(event)} : std::nullopt;
      break;
    case GDK_TOUCH_BEGIN:
      pressed_ = pointOf(event);
      break;
    case GDK_BUTTON_RELEASE:
      if (isPrimary(event)) release(pointOf(event));
      break;
    case GDK_TOUCH_END:
      release(pointOf(event));
      break;
    case GDK_TOUCH_CANCEL:
    case GDK_GRAB_BROKEN:
      pressed_.reset();
      break;
    default:
      break;
  }
}

void TapWatcher::release(Point point) {
  const auto pressed = std::exchange(pressed_, std::nullopt);
  if (!pressed || std::hypot(point.x - pressed->x, point.y - pressed->y) > furthestMove) return;
  // The call may end the life of this watcher.
  const auto tapped = tapped_;
  tapped();
}

}  // namespace tavo::gtk
