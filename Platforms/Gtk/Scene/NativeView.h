#pragma once

#include <gtk/gtk.h>

namespace tavo::gtk {

// A scene view that brings a native widget of its own instead of being painted. Found by the scene
// mirror with dynamic_cast<NativeView*>. Main thread only.
//
// The mirror parents the widget while the view is in a window, places it by the view's frame, and
// unparents it when the view leaves the tree. A widget that is kept stays where it is then, hidden,
// for the next view that brings it: each way out of a window and back costs the engine's widgets
// memory that is never given back. Whoever ends such a widget unparents it.
class NativeView {
 public:
  virtual ~NativeView() = default;

  // Never null; the same one for as long as the view lives. While it is not mapped the view itself
  // gives it its size.
  [[nodiscard]] virtual GtkWidget* widget() = 0;

  // False until there is something worth showing: attaching a page that still loads stalls the
  // loop. Turns false again when the content is lost. View::Listener::treeChanged follows each
  // change.
  [[nodiscard]] virtual bool isReadyToShow() const = 0;

  // Seen by nobody: the widget is to be unmapped, with its last picture in its place.
  [[nodiscard]] virtual bool isResting() const { return false; }

  // Another view may bring the same widget when this one is gone.
  [[nodiscard]] virtual bool isKept() const { return false; }
};

}  // namespace tavo::gtk
