#pragma once

#include <gtkmm.h>

#include <memory>
#include <vector>

#include "Gtk/Scene/WindowScene.h"
#include "Gtk/Services/GtkSystemEvents.h"
#include "Gtk/Services/UrlHandlers.h"
#include "Rules/Presence.h"
#include "Runtime/NotificationCenter.h"
#include "Services/Application.h"

namespace tavo::gtk {

// The host application on a desktop or phone: its windows, their shape and whether the user sees
// them, and the applications beside it that open URLs. Posts background, foreground, orientation,
// lock and memory notifications. Main thread only.
class GtkApplication : public Application {
 public:
  // The notifications are posted to `notifications`; no widget is made larger than `longestSide`
  // points a side. `fit` is for controllers that allow one orientation only.
  GtkApplication(std::shared_ptr<NotificationCenter> notifications, double longestSide,
                 OrientationFit fit = OrientationFit::letterbox);
  ~GtkApplication() override;

  // The scene of a window of the host's, made on the first call and kept until the window is
  // destroyed.
  [[nodiscard]] std::shared_ptr<WindowScene> sceneOf(Gtk::Window& window);

  // The host's window behind a window of the scene; null when it is gone.
  [[nodiscard]] Gtk::Window* nativeWindowOf(const Window& window) const;

  // The host's window that has the keyboard, or had it last; null when there is none.
  [[nodiscard]] Gtk::Window* keyNativeWindow() const;

  [[nodiscard]] std::vector<std::shared_ptr<Window>> windows() const override;
  [[nodiscard]] std::shared_ptr<Window> keyWindow() const override;
  // By the shape of what full-screen content covers in the key window: wider than high is
  // landscape.
  [[nodiscard]] InterfaceOrientation statusBarOrientation() const override;
  [[nodiscard]] Rect statusBarFrame() const override { return {}; }
  [[nodiscard]] bool isStatusBarHidden() const override { return statusBarHidden_; }
  void setStatusBarHidden(bool hidden, StatusBarAnimation animation) override;
  [[nodiscard]] bool canOpenUrl(const Url& url) const override { return urls_.canOpen(url); }
  bool openUrl(const Url& url) override { return urls_.open(url); }
  // From the translations that the host has chosen with textdomain().
  [[nodiscard]] std::string localizedString(std::string_view key) const override;

 private:
  [[nodiscard]] WindowScene::Events events();
  [[nodiscard]] WindowScene* keyScene() const;
  // `before`: that of the interface.
  void updateOrientation(InterfaceOrientation before);
  void updateVisibility();
  void post(const Presence::Due& due) const;
  void drop(const Gtk::Window& window);

  const std::shared_ptr<NotificationCenter> notifications_;
  const double longestSide_;
  UrlHandlers urls_{UrlHandlers::surroundings()};
  std::vector<std::shared_ptr<WindowScene>> scenes_;
  const Gtk::Window* lastActive_ = nullptr;
  const OrientationFit fit_;
  InterfaceOrientation orientation_ = InterfaceOrientation::portrait;  // of the key window
  bool statusBarHidden_ = false;
  Presence presence_;
  GtkSystemEvents systemEvents_;
  const std::shared_ptr<int> life_ = std::make_shared<int>();
};

}  // namespace tavo::gtk
