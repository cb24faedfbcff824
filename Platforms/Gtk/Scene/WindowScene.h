#pragma once

#include <gtkmm.h>

#include <functional>
#include <memory>

#include <tavo/ViewController.h>

#include "Gtk/Scene/FocusTrap.h"
#include "Gtk/Scene/SceneRoot.h"
#include "Scene/Window.h"

namespace tavo::gtk {

// The scene of one window of the host: the tree of its ad views, and above the host's content a
// layer for what does not stand in a slot (presented controllers, resized ads). The layer is put in
// when there is first something for it to show: until then the host's window is untouched.
//
// While a presented controller covers the window, the keyboard stays with it, and Escape and the
// window's close button mean it and not the host: a user always gets out of an ad. Main thread
// only.
class WindowScene : private View::Listener {
 public:
  // What the window does, for whoever keeps the windows together.
  struct Events {
    std::function<void(WindowScene&, InterfaceOrientation before)> resized{};  // of the interface
    std::function<void(WindowScene&)> activated{};
    std::function<void(WindowScene&)> visibilityChanged{};
  };

  WindowScene(Gtk::Window& window, double longestSide, Events events);
  ~WindowScene() override;

  [[nodiscard]] Gtk::Window& nativeWindow() const { return native_; }
  [[nodiscard]] const std::shared_ptr<Window>& window() const { return window_; }

  // Mapped and not minimised.
  [[nodiscard]] bool isShown() const;

  // The part of the window that stands for the whole of it; null: none. Before the first layer.
  void setArea(Gtk::Overlay* area);
  void areaResized();
  // What places are counted in.
  [[nodiscard]] Gtk::Widget& reference() const;

  // Gives a slot's container a window and a controller.
  void addSlot(const std::shared_ptr<View>& container);

 private:
  void treeChanged() override;
  void followSurface();
  void resized(int width, int height);
  void follow(int width, int height);
  [[nodiscard]] bool needsLayer() const;
  [[nodiscard]] bool isCovered() const;
  void followCover();
  bool cancel();
  bool cancelInsteadOfClosing();
  void installLayer();

  Gtk::Window& native_;
  Gtk::Overlay* area_ = nullptr;
  const double longestSide_;  // the longest, in points
  Events events_;
  std::shared_ptr<Window> window_;
  std::shared_ptr<ViewController> root_;
  std::unique_ptr<Gtk::Overlay> overlay_;
  std::unique_ptr<SceneRoot> layer_;
  std::vector<sigc::connection> connections_;
  std::unique_ptr<FocusTrap> trap_;  // while something covers the host's content
  sigc::connection pendingLayer_;
  sigc::connection pendingFocus_;
  const void* inFront_ = nullptr;  // the controller that is presented last, by identity
  gulong layoutHandler_ = 0;
  gulong stateHandler_ = 0;
  GdkSurface* surface_ = nullptr;
};

}  // namespace tavo::gtk
