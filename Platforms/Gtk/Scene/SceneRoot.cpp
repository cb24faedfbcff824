#include "Gtk/Scene/SceneRoot.h"

#include <utility>

#include "Gtk/Guarded.h"
#include "Gtk/Scene/NativeView.h"

namespace tavo::gtk {

SceneRoot::SceneRoot(const std::shared_ptr<View>& view, double longestSide,
                     std::function<void()> synced)
    : view_{view}, widget_{view, longestSide}, synced_{std::move(synced)} {
  view_->setListener(this);
  const auto click = Gtk::GestureClick::create();
  click->signal_released().connect(guardedSlot([this](int, double x, double y) { tapped(x, y); }));
  widget_.add_controller(click);
  sync();
}

SceneRoot::~SceneRoot() {
  pending_.disconnect();
  view_->setListener(nullptr);
}

// A turn may change the tree many times; the picture follows once, before the next frame is drawn.
void SceneRoot::treeChanged() {
  if (std::exchange(isPending_, true)) return;
  pending_ = Glib::signal_idle().connect(guardedSlot([this] {
                                           isPending_ = false;  // what comes of it counts again
                                           sync();
                                           return false;
                                         }),
                                         Glib::PRIORITY_HIGH_IDLE);
}

void SceneRoot::sync() {
  widget_.sync();
  if (synced_) synced_();
}

void SceneRoot::tapped(double x, double y) {
  View* touched = view_->hitTest({x + widget_.origin().x, y + widget_.origin().y});
  // Native widgets and buttons hear their own taps.
  if (touched == nullptr || dynamic_cast<NativeView*>(touched) != nullptr) return;
  recognizeTap(*touched);
}

}  // namespace tavo::gtk
