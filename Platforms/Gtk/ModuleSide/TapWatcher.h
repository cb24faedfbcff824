#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <optional>

#include <tavo/Geometry.h>

namespace tavo::gtk {

// Sees the taps of a person on a widget before the widget does, and keeps none from it: a press and
// a release of the primary button, or of one finger, at about the same place. A page's script
// cannot produce one.
//
// It looks at the events themselves. A GtkGestureClick would be denied as soon as the web engine's
// own gesture claims the press, and so never see the release.
class TapWatcher {
 public:
  // The controller lives as long as the widget; `tapped` is not called once the watcher is gone.
  TapWatcher(GtkWidget* widget, std::function<void()> tapped);
  ~TapWatcher();
  TapWatcher(const TapWatcher&) = delete;
  TapWatcher& operator=(const TapWatcher&) = delete;

 private:
  static gboolean onEvent(GtkEventControllerLegacy*, GdkEvent* event, TapWatcher* self);
  void look(GdkEvent* event);
  void release(Point point);

  GtkWidget* widget_;
  GtkEventController* controller_;
  std::function<void()> tapped_;
  std::optional<Point> pressed_;
};

}  // namespace tavo::gtk
