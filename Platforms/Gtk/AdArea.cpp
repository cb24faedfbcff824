#include <utility>

#include <tavo/Runtime.h>
#include <tavo/gtk/AdArea.h>

#include "Gtk/Guarded.h"
#include "Gtk/Services/GtkApplication.h"
#include "Runtime/Environment.h"

namespace tavo::gtk {

namespace {

// Null where the runtime is gone or of another platform.
WindowScene* sceneOfWindow(Gtk::Window* window) {
  const auto environment = Runtime::currentEnvironment();
  if (window == nullptr || !environment) return nullptr;
  auto* application = dynamic_cast<GtkApplication*>(environment->platform().application.get());
  return application == nullptr ? nullptr : application->sceneOf(*window).get();
}

}  // namespace

AdArea::AdArea() {
  signal_realize().connect(guardedSlot([this] { enterWindow(); }));
  signal_unrealize().connect(guardedSlot([this] { leaveWindow(); }), false);
}

AdArea::~AdArea() { leaveWindow(); }

void AdArea::enterWindow() {
  window_ = dynamic_cast<Gtk::Window*>(get_root());
  auto* const scene = sceneOfWindow(window_);
  if (scene == nullptr) return;
  scene->setArea(this);
  // An overlay is not told of its size: look once a frame.
  if (const auto clock = get_frame_clock()) {
    frameClock_ = clock->signal_paint().connect(guardedSlot([this] {
      if (auto* const there = sceneOfWindow(window_)) there->areaResized();
    }));
  }
}

void AdArea::leaveWindow() {
  frameClock_.disconnect();
  if (auto* const scene = sceneOfWindow(std::exchange(window_, nullptr))) scene->setArea(nullptr);
}

}  // namespace tavo::gtk
