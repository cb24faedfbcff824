#include "Gtk/Services/GtkApplication.h"

#include <giomm.h>
#include <libintl.h>

#include <algorithm>
#include <utility>

#include "Gtk/ForeignText.h"
#include "Gtk/Guarded.h"
#include "Rules/OrientationRules.h"
#include "Runtime/NotificationCenter.h"

namespace tavo::gtk {

GtkApplication::GtkApplication(std::shared_ptr<NotificationCenter> notifications,
                               double longestSide, OrientationFit fit)
    : notifications_{std::move(notifications)},
      longestSide_{longestSide},
      fit_{fit},
      systemEvents_{
          {.screenLocked = [this](bool locked) { post(presence_.screenLocked(locked)); },
           .memoryIsLow =
               [this] { notifications_->post(notifications::didReceiveMemoryWarning); }}} {}
GtkApplication::~GtkApplication() = default;

WindowScene::Events GtkApplication::events() {
  return {.resized =
              [this](WindowScene&, InterfaceOrientation before) {
                updateOrientation(before);
                notifications_->post(notifications::windowSizeDidChange);
              },
          .activated =
              [this](WindowScene& scene) {
                lastActive_ = &scene.nativeWindow();
                updateOrientation(orientation_);
              },
          .visibilityChanged = [this](WindowScene&) { updateVisibility(); }};
}

std::shared_ptr<WindowScene> GtkApplication::sceneOf(Gtk::Window& window) {
  for (const auto& scene : scenes_) {
    if (&scene->nativeWindow() == &window) return scene;
  }
  scenes_.push_back(std::make_shared<WindowScene>(window, longestSide_, events()));
  scenes_.back()->window()->setOrientationFit(fit_);
  // A window of the host may outlive the last runtime.
  window.signal_destroy().connect(guardedSlot([this, alive = std::weak_ptr{life_}, &window] {
    if (!alive.expired()) drop(window);
  }));
  updateOrientation(orientation_);
  updateVisibility();
  return scenes_.back();
}

void GtkApplication::drop(const Gtk::Window& window) {
  if (lastActive_ == &window) lastActive_ = nullptr;
  std::erase_if(scenes_, [&](const auto& scene) { return &scene->nativeWindow() == &window; });
}

std::vector<std::shared_ptr<Window>> GtkApplication::windows() const {
  std::vector<std::shared_ptr<Window>> all;
  for (const auto& scene : scenes_) all.push_back(scene->window());
  return all;
}

WindowScene* GtkApplication::keyScene() const {
  for (const auto& scene : scenes_) {
    if (&scene->nativeWindow() == lastActive_) return scene.get();
  }
  return scenes_.empty() ? nullptr : scenes_.front().get();
}

std::shared_ptr<Window> GtkApplication::keyWindow() const {
  const WindowScene* scene = keyScene();
  return scene == nullptr ? nullptr : scene->window();
}

Gtk::Window* GtkApplication::keyNativeWindow() const {
  const WindowScene* scene = keyScene();
  return scene == nullptr ? nullptr : &scene->nativeWindow();
}

Gtk::Window* GtkApplication::nativeWindowOf(const Window& window) const {
  for (const auto& scene : scenes_) {
    if (scene->window().get() == &window) return &scene->nativeWindow();
  }
  return nullptr;
}

InterfaceOrientation GtkApplication::statusBarOrientation() const {
  const auto window = keyWindow();
  const auto now = window ? orientationOf(window->interfaceSize()) : InterfaceOrientation::unknown;
  return now == InterfaceOrientation::unknown ? orientation_ : now;
}

void GtkApplication::updateOrientation(InterfaceOrientation before) {
  const auto window = keyWindow();
  if (!window || window->frame().empty()) return;
  const auto now = orientationOf(window->frame().size());
  if (now == std::exchange(orientation_, now)) return;
  notifications_->post(notifications::deviceOrientationDidChange);
  ViewController* top = window->topViewController();
  // What keeps its orientation has not rotated, whatever its window did.
  if (top == nullptr || statusBarOrientation() == before) return;
  const auto held = top->shared_from_this();
  // Videos make ready for the new shape inside the question.
  (void)held->shouldAutorotate();
  held->didRotateFromInterfaceOrientation(before);
}

void GtkApplication::updateVisibility() {
  const bool shown = std::any_of(scenes_.begin(), scenes_.end(),
                                 [](const auto& scene) { return scene->isShown(); });
  post(presence_.windowsShown(shown));
}

void GtkApplication::post(const Presence::Due& due) const {
  if (due) notifications_->post(*due);
}

void GtkApplication::setStatusBarHidden(bool hidden, StatusBarAnimation /*animation*/) {
  statusBarHidden_ = hidden;
}

std::string GtkApplication::localizedString(std::string_view key) const {
  // The empty key stands for the head of a translation file, which is not for users.
  return key.empty() ? std::string{} : textOf(dgettext(nullptr, std::string{key}.c_str()));
}

}  // namespace tavo::gtk
