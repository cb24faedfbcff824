#pragma once

#include <gtk/gtk.h>

namespace tavo::gtk {

// A scene view that brings a native widget of its own instead of being painted. Found by the scene
// mirror with dynamic_cast<NativeView*>. Main thread only.
//
// The mirror parents the widget while the view is in a window, places it by the view's frame, and
// unparents it when the view leaves the tree. It holds a reference of its own for as long as it has
// the widget parented: the scene view may be gone before the mirror looks again, and its widget is
// then kept aside (blank) until the mirror has let go of it.
class NativeView {
 public:
  virtual ~NativeView() = default;

  // Never null; the same one for as long as the view lives. While it has no parent the view itself
  // gives it its size.
  [[nodiscard]] virtual GtkWidget* widget() = 0;

  // False until there is something worth showing: attaching a page that still loads stalls the
  // loop. Turns false again when the content is lost. View::Listener::treeChanged follows each
  // change.
  [[nodiscard]] virtual bool isReadyToShow() const = 0;
};

}  // namespace tavo::gtk
