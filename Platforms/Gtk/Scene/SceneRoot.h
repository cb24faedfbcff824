#pragma once

#include <gtkmm.h>

#include <functional>
#include <memory>

#include <tavo/View.h>

#include "Gtk/Scene/ViewWidget.h"

namespace tavo::gtk {

// Keeps the picture of one tree of views up to date and gives its taps to the scene. The holder
// parents `widget()` and gives it its size. Main thread only.
class SceneRoot : private View::Listener {
 public:
  // No widget is made larger than `longestSide` points a side: tens of thousands end the process.
  // `synced` is called each time the picture has been made to match the tree.
  SceneRoot(const std::shared_ptr<View>& view, double longestSide,
            std::function<void()> synced = {});
  ~SceneRoot() override;

  // The point of the view that stands in the widget's corner.
  void showFrom(Point origin) { widget_.setOrigin(origin); }

  [[nodiscard]] ViewWidget& widget() { return widget_; }
  [[nodiscard]] const std::shared_ptr<View>& view() const { return view_; }

 private:
  void treeChanged() override;
  void sync();
  void tapped(double x, double y);

  std::shared_ptr<View> view_;
  ViewWidget widget_;
  std::function<void()> synced_;
  sigc::connection pending_;
  bool isPending_ = false;
};

}  // namespace tavo::gtk
