#include <algorithm>
#include <cmath>

#include <tavo/Runtime.h>
#include <tavo/gtk/AdSlot.h>

#include "Gtk/Scene/SlotContainer.h"
#include "Gtk/Services/GtkApplication.h"

namespace tavo::gtk {

AdSlot::AdSlot(const std::shared_ptr<View>& adView)
    : Glib::ObjectBase{"TavoAdSlot"},
      adView_{adView},
      container_{std::make_shared<SlotContainer>()},
      root_{container_} {
  set_halign(Gtk::Align::CENTER);
  set_valign(Gtk::Align::CENTER);
  set_overflow(Gtk::Overflow::HIDDEN);
  container_->setHidden(true);
  container_->addSubview(adView_);
  root_.widget().set_parent(*this);
  // A widget that its container owns is taken apart before the destructor below comes to run.
  destroyed_ = signal_destroy().connect([this] { root_.widget().unparent(); });
}

AdSlot::~AdSlot() {
  destroyed_.disconnect();
  leaving_.disconnect();
  frameClock_.disconnect();
  container_->removeAllSubviews();
  container_->removeFromSuperview();
  if (root_.widget().get_parent() != nullptr) root_.widget().unparent();
}

void AdSlot::measure_vfunc(Gtk::Orientation orientation, int /*for_size*/, int& minimum,
                           int& natural, int& minimum_baseline, int& natural_baseline) const {
  const Rect& frame = adView_->frame();
  const double length =
      orientation == Gtk::Orientation::HORIZONTAL ? frame.right() : frame.bottom();
  const double most = Runtime::current().limits().widgetSide;
  minimum = natural = static_cast<int>(std::ceil(std::clamp(length, 0.0, most)));
  minimum_baseline = natural_baseline = -1;
}

void AdSlot::size_allocate_vfunc(int width, int height, int /*baseline*/) {
  container_->setFrame({container_->frame().x, container_->frame().y, static_cast<double>(width),
                        static_cast<double>(height)});
  root_.widget().size_allocate({0, 0, width, height}, -1);
}

void AdSlot::snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) {
  snapshot_child(root_.widget(), snapshot);
}

void AdSlot::on_realize() {
  Gtk::Widget::on_realize();
  enterWindow();
}

void AdSlot::on_unrealize() {
  frameClock_.disconnect();
  Gtk::Widget::on_unrealize();
  // A widget that is moved to another place of the window leaves it for less than a turn.
  leaving_ = Glib::signal_idle().connect([this] {
    leaveWindow();
    return false;
  });
}

void AdSlot::on_map() {
  Gtk::Widget::on_map();
  container_->setHidden(false);
  appearing_ = true;
  updatePlace();
}

void AdSlot::on_unmap() {
  appearing_ = false;
  container_->setHidden(true);
  Gtk::Widget::on_unmap();
}

void AdSlot::enterWindow() {
  leaving_.disconnect();
  auto* window = dynamic_cast<Gtk::Window*>(get_root());
  auto* application =
      dynamic_cast<GtkApplication*>(Runtime::current().platform().application.get());
  if (window == nullptr || application == nullptr) return;
  application->sceneOf(*window)->addSlot(container_);
  // It may stand elsewhere in the window for a while: a video in full screen.
  if (adView_->superview() == nullptr) container_->addSubview(adView_);
  // The widget is told of a new size but not of a new place: look once a frame.
  if (const auto clock = get_frame_clock()) {
    frameClock_ = clock->signal_paint().connect([this] { updatePlace(); });
  }
}

void AdSlot::leaveWindow() {
  adView_->removeFromSuperview();
  container_->removeFromSuperview();
}

void AdSlot::updatePlace() {
  auto* window = dynamic_cast<Gtk::Widget*>(get_root());
  if (window == nullptr) return;
  graphene_rect_t bounds;
  if (!gtk_widget_compute_bounds(GTK_WIDGET(gobj()), window->gobj(), &bounds)) return;
  container_->setFrame({bounds.origin.x, bounds.origin.y, bounds.size.width, bounds.size.height});
  if (!appearing_ || container_->frame().empty()) return;
  appearing_ = false;
  adView_->didAppearOnScreen();
}

}  // namespace tavo::gtk
