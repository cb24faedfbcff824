#include "Gtk/Scene/ViewWidget.h"

#include <algorithm>
#include <cmath>

#include <tavo/Button.h>
#include <tavo/ImageView.h>

#include "Gtk/Guarded.h"
#include "Gtk/Scene/ButtonWidget.h"
#include "Gtk/Scene/NativeView.h"
#include "Gtk/Scene/SlotContainer.h"
#include "Gtk/Scene/SpinnerWidget.h"
#include "Gtk/Scene/ViewPainter.h"

namespace tavo::gtk {

namespace {

// An offset may lie far outside the parent; only its size is a burden to the toolkit.
int offset(double position) {
  constexpr double farthest = 1'000'000;
  return static_cast<int>(std::lround(std::clamp(position, -farthest, farthest)));
}

}  // namespace

ViewWidget::ViewWidget(const std::shared_ptr<View>& view, double longestSide)
    : Glib::ObjectBase{"TavoViewWidget"}, view_{view}, longestSide_{longestSide} {
  set_overflow(view->clipsToBounds() ? Gtk::Overflow::HIDDEN : Gtk::Overflow::VISIBLE);
}

ViewWidget::~ViewWidget() {
  releaseNative();
  for (const auto& child : children_) child.widget->unparent();
}

std::unique_ptr<Gtk::Widget> ViewWidget::makeWidget(const std::shared_ptr<View>& view) const {
  if (const auto button = std::dynamic_pointer_cast<Button>(view)) {
    return std::make_unique<ButtonWidget>(button);
  }
  if (const auto spinner = std::dynamic_pointer_cast<Spinner>(view)) {
    return std::make_unique<SpinnerWidget>(spinner);
  }
  return std::make_unique<ViewWidget>(view, longestSide_);
}

void ViewWidget::setOrigin(Point origin) {
  if (origin == origin_) return;
  origin_ = origin;
  queue_allocate();
}

void ViewWidget::sync() {
  const auto current = view();
  if (!current) return;
  syncProperties(*current);
  syncChildren(*current);
  syncNative();
  queue_allocate();
  queue_draw();
}

void ViewWidget::syncProperties(const View& view) {
  set_visible(!view.isHidden());
  set_opacity(view.alpha());
  set_can_target(view.isUserInteractionEnabled());
  if (!view.accessibilityLabel().empty()) {
    gtk_accessible_update_property(GTK_ACCESSIBLE(gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   view.accessibilityLabel().c_str(), -1);
  }
  set_overflow(view.clipsToBounds() ? Gtk::Overflow::HIDDEN : Gtk::Overflow::VISIBLE);
}

void ViewWidget::syncChildren(const View& view) {
  std::vector<Child> next;
  next.reserve(view.subviews().size());
  for (const auto& subview : view.subviews()) {
    if (dynamic_cast<const SlotContainer*>(subview.get()) != nullptr) continue;
    const auto known = std::find_if(children_.begin(), children_.end(), [&](const Child& child) {
      return child.widget && child.view.lock() == subview;
    });
    if (known != children_.end()) {
      next.push_back(std::move(*known));
    } else {
      next.push_back({subview, makeWidget(subview)});
      next.back().widget->set_parent(*this);
    }
  }
  for (const auto& child : children_) {
    if (child.widget) child.widget->unparent();
  }
  children_ = std::move(next);
  for (const auto& child : children_) {
    child.widget->insert_at_end(*this);  // the order of drawing and of the keyboard
    if (auto* plain = dynamic_cast<ViewWidget*>(child.widget.get())) plain->sync();
    if (auto* button = dynamic_cast<ButtonWidget*>(child.widget.get())) button->sync();
    if (auto* spinner = dynamic_cast<SpinnerWidget*>(child.widget.get())) spinner->sync();
  }
}

// A native widget stands in the picture of the view that brings it, wherever that view is now; it
// may come here from another picture of the same view.
void ViewWidget::syncNative() {
  auto* native = dynamic_cast<NativeView*>(view().get());
  if (native == nullptr) return;
  GtkWidget* widget = native->isReadyToShow() ? native->widget() : nullptr;
  GtkWidget* parent = widget != nullptr ? gtk_widget_get_parent(widget) : nullptr;
  if (widget == native_ && parent == gobj()) return;
  releaseNative();
  if (widget == nullptr) return;
  native_ = GTK_WIDGET(g_object_ref(widget));
  if (parent != nullptr && parent != gobj()) gtk_widget_unparent(widget);
  gtk_widget_insert_after(widget, gobj(), nullptr);
}

void ViewWidget::releaseNative() {
  if (native_ == nullptr) return;
  if (gtk_widget_get_parent(native_) == gobj()) gtk_widget_unparent(native_);
  g_object_unref(native_);
  native_ = nullptr;
}

void ViewWidget::measure_vfunc(Gtk::Orientation /*orientation*/, int /*for_size*/, int& minimum,
                               int& natural, int& minimum_baseline, int& natural_baseline) const {
  // The scene says how large a view is; a widget is told and never asks.
  minimum = natural = 0;
  minimum_baseline = natural_baseline = -1;
}

// What paints or listens takes input; a bare container lets it through to what lies behind.
bool ViewWidget::contains_vfunc(double x, double y) const {
  const auto current = view();
  if (!current || !current->bounds().contains(Point{x, y})) return false;
  return current->backgroundColor() || !current->tapRecognizers().empty() ||
         dynamic_cast<const ImageView*>(current.get()) != nullptr;
}

int ViewWidget::bearable(double length) const {
  return static_cast<int>(std::lround(std::clamp(length, 0.0, longestSide_)));
}

void ViewWidget::allocateChild(const View& view, Gtk::Widget& child) {
  const Rect& frame = view.frame();
  // The toolkit wants to be asked before it is told.
  int minimum = 0;
  int natural = 0;
  int baseline = 0;
  child.measure(Gtk::Orientation::HORIZONTAL, -1, minimum, natural, baseline, baseline);
  child.measure(Gtk::Orientation::VERTICAL, -1, minimum, natural, baseline, baseline);
  child.size_allocate({offset(frame.x - origin_.x), offset(frame.y - origin_.y),
                       bearable(frame.width), bearable(frame.height)},
                      -1);
}

void ViewWidget::size_allocate_vfunc(int width, int height, int /*baseline*/) {
  for (const auto& child : children_) {
    const auto subview = child.view.lock();
    if (subview && child.widget->get_visible()) {
      guarded([&] { allocateChild(*subview, *child.widget); });
    }
  }
  if (native_ != nullptr && gtk_widget_get_parent(native_) == gobj()) {
    const GtkAllocation place{0, 0, width, height};
    gtk_widget_measure(native_, GTK_ORIENTATION_HORIZONTAL, -1, nullptr, nullptr, nullptr, nullptr);
    gtk_widget_measure(native_, GTK_ORIENTATION_VERTICAL, -1, nullptr, nullptr, nullptr, nullptr);
    gtk_widget_size_allocate(native_, &place, -1);
  }
}

void ViewWidget::snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) {
  if (const auto current = view()) {
    guarded([&] { ViewPainter{*snapshot.get(), *this}.paint(*current); });
  }
  if (native_ != nullptr && gtk_widget_get_parent(native_) == gobj()) {
    gtk_widget_snapshot_child(gobj(), native_, snapshot->gobj());
  }
  for (const auto& child : children_) snapshot_child(*child.widget, snapshot);
}

}  // namespace tavo::gtk
