#include "Gtk/Scene/WindowScene.h"

#include <algorithm>
#include <utility>

#include "Gtk/Guarded.h"
#include "Gtk/Scene/SlotContainer.h"
#include "Rules/OrientationRules.h"

namespace tavo::gtk {

WindowScene::WindowScene(Gtk::Window& window, double longestSide, Events events)
    : native_{window},
      longestSide_{longestSide},
      events_{std::move(events)},
      window_{std::make_shared<Window>()},
      root_{std::make_shared<ViewController>()} {
  window_->setRootViewController(root_);
  window_->setListener(this);
  connections_.push_back(
      native_.signal_realize().connect(guardedSlot([this] { followSurface(); })));
  const auto shown = guardedSlot([this] { events_.visibilityChanged(*this); });
  connections_.push_back(native_.signal_map().connect(shown));
  connections_.push_back(native_.signal_unmap().connect(shown));
  connections_.push_back(native_.property_is_active().signal_changed().connect(guardedSlot([this] {
    if (native_.is_active()) events_.activated(*this);
  })));
  // Before the page or the host hears of them.
  connections_.push_back(native_.signal_close_request().connect(
      guardedSlot([this] { return cancelInsteadOfClosing(); }), false));
  const auto keys = Gtk::EventControllerKey::create();
  keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
  connections_.push_back(
      keys->signal_key_pressed().connect(guardedSlot([this](guint key, guint, Gdk::ModifierType) {
                                           return key == GDK_KEY_Escape && cancel();
                                         }),
                                         false));
  native_.add_controller(keys);
  if (native_.get_realized()) followSurface();
}

WindowScene::~WindowScene() {
  pendingLayer_.disconnect();
  pendingFocus_.disconnect();
  for (auto& connection : connections_) connection.disconnect();
  if (surface_ != nullptr) {
    g_signal_handler_disconnect(surface_, layoutHandler_);
    g_signal_handler_disconnect(surface_, stateHandler_);
    g_object_unref(surface_);
  }
  window_->setListener(nullptr);
}

void WindowScene::followSurface() {
  if (surface_ != nullptr) return;
  surface_ = GDK_SURFACE(g_object_ref(gtk_native_get_surface(GTK_NATIVE(native_.gobj()))));
  layoutHandler_ = g_signal_connect(
      surface_, "layout", G_CALLBACK(+[](GdkSurface*, int width, int height, gpointer self) {
        guarded([&] { static_cast<WindowScene*>(self)->resized(width, height); });
      }),
      this);
  stateHandler_ = g_signal_connect(surface_, "notify::state",
                                   G_CALLBACK(+[](GdkSurface*, GParamSpec*, gpointer self) {
                                     auto& scene = *static_cast<WindowScene*>(self);
                                     guarded([&] { scene.events_.visibilityChanged(scene); });
                                   }),
                                   this);
  if (native_.get_width() > 0) resized(native_.get_width(), native_.get_height());
}

void WindowScene::setArea(Gtk::Overlay* area) {
  // What covers the area goes with it.
  if (area == nullptr && layer_ && layer_->widget().get_parent() != nullptr) {
    layer_->widget().unparent();
  }
  area_ = area;
  areaResized();
}

void WindowScene::areaResized() {
  if (area_ != nullptr && area_->get_width() > 0) follow(area_->get_width(), area_->get_height());
}

Gtk::Widget& WindowScene::reference() const {
  return area_ != nullptr ? static_cast<Gtk::Widget&>(*area_) : native_;
}

void WindowScene::resized(int width, int height) {
  if (area_ == nullptr) follow(width, height);
}

void WindowScene::follow(int width, int height) {
  const Rect frame{0, 0, static_cast<double>(width), static_cast<double>(height)};
  if (frame == window_->frame()) return;
  const auto before = orientationOf(window_->interfaceSize());
  window_->setFrame(frame);
  events_.resized(*this, before);
}

bool WindowScene::isShown() const {
  if (!native_.get_mapped() || surface_ == nullptr) return false;
  return (gdk_toplevel_get_state(GDK_TOPLEVEL(surface_)) & GDK_TOPLEVEL_STATE_MINIMIZED) == 0;
}

void WindowScene::addSlot(const std::shared_ptr<View>& container) {
  const auto above = root_->view()->subviews();
  container->setFrame(root_->view()->bounds());
  container->setAutoresizingMask(flexibleWidth | flexibleHeight);
  root_->view()->addSubview(container);
  // What stands above the host's content stays there.
  for (const auto& view : above) {
    if (dynamic_cast<const SlotContainer*>(view.get()) == nullptr) {
      root_->view()->bringSubviewToFront(*view);
    }
  }
}

bool WindowScene::needsLayer() const {
  const auto& below = root_->view()->subviews();
  const bool beside = std::any_of(below.begin(), below.end(), [](const auto& view) {
    return dynamic_cast<const SlotContainer*>(view.get()) == nullptr;
  });
  return beside || window_->subviews().size() > 1;
}

bool WindowScene::isCovered() const {
  const ViewController* top = window_->topViewController();
  return top != nullptr && top != root_.get();
}

void WindowScene::followCover() {
  const void* const front = isCovered() ? window_->topViewController() : nullptr;
  if (std::exchange(inFront_, front) == front) return;
  if (front == nullptr) return trap_.reset();
  if (!trap_)
    trap_ = std::make_unique<FocusTrap>(
        native_, area_ != nullptr ? area_->get_child() : overlay_->get_child());
  // The new widgets take the keyboard once they have a place.
  pendingFocus_ = Glib::signal_idle().connect(guardedSlot([this] {
    auto& layer = layer_->widget();
    if (gtk_widget_get_focus_child(layer.gobj()) == nullptr) {
      layer.child_focus(Gtk::DirectionType::TAB_FORWARD);
    }
    return false;
  }));
}

bool WindowScene::cancel() {
  if (!isCovered()) return false;
  const auto top = window_->topViewController()->shared_from_this();
  return top->cancelOperation();
}

// An ad that may not be left yet keeps the Escape key to itself, but not the window's own button.
bool WindowScene::cancelInsteadOfClosing() {
  if (area_ != nullptr) return false;
  const auto window = window_;  // the host may drop this one's inside
  const ViewController* const before = window->topViewController();
  return cancel() && window->topViewController() != before;
}

void WindowScene::treeChanged() {
  if (layer_ || pendingLayer_.connected() || !needsLayer()) return;
  pendingLayer_ = Glib::signal_idle().connect(guardedSlot([this] {
                                                if (!layer_ && needsLayer()) installLayer();
                                                return false;
                                              }),
                                              Glib::PRIORITY_HIGH_IDLE);
}

// The host's content keeps its place: it becomes the lower part of an overlay. That comes first,
// because the layer looks at once for what it covers.
void WindowScene::installLayer() {
  if (area_ == nullptr) {
    Gtk::Widget* content = native_.get_child();
    overlay_ = std::make_unique<Gtk::Overlay>();
    if (content != nullptr) {
      content->reference();
      native_.unset_child();
      overlay_->set_child(*content);
      content->unreference();
    }
    native_.set_child(*overlay_);
  }
  layer_ = std::make_unique<SceneRoot>(window_, longestSide_, [this] {
    followCover();
    window_->tellCover();
  });
  Gtk::Overlay& below = area_ != nullptr ? *area_ : *overlay_;
  below.add_overlay(layer_->widget());
}

}  // namespace tavo::gtk
