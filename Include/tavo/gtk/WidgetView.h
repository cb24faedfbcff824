#pragma once

#include <gtkmm.h>

#include <memory>

#include <tavo/Export.h>
#include <tavo/View.h>

namespace tavo::gtk {

// A view that shows a widget of the toolkit's instead of being painted: for an ad network inside
// the host that draws its banner with widgets:
//
//   std::shared_ptr<tavo::View> view() override { return view_; }
//   ...
//   const std::shared_ptr<tavo::View> view_ = tavo::gtk::makeWidgetView(GTK_WIDGET(box.gobj()));
//
// The widget stands where the view does, at the size of the view's frame; views in front of it are
// drawn above it. It must not be null nor have a parent. The view shares it, and takes it out of
// its window before it lets go of it. Main thread only.
[[nodiscard]] TAVO_EXPORT std::shared_ptr<View> makeWidgetView(GtkWidget* widget,
                                                               const Rect& frame = {});

}  // namespace tavo::gtk
