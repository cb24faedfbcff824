#include "Gtk/Scene/ViewWidget.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>
#include <utility>

#include <tavo/Button.h>
#include <tavo/ImageView.h>
#include <tavo/Label.h>
#include <tavo/MoviePlayer.h>
#include <tavo/ViewController.h>

#include "Gtk/Guarded.h"
#include "Gtk/Scene/ButtonWidget.h"
#include "Gtk/Scene/NativeView.h"
#include "Gtk/Scene/SlotContainer.h"
#include "Gtk/Scene/SpinnerWidget.h"
#include "Gtk/Scene/ViewPainter.h"
#include "Rules/KeyboardReach.h"
#include "Scene/Toolbar.h"
#include "Values/Text.h"

namespace tavo::gtk {

namespace {

constexpr float quarter = 90;  // degrees

// An offset may lie far outside the parent; only its size is a burden to the toolkit.
int offset(double position) {
  constexpr double farthest = 1'000'000;
  return static_cast<int>(std::lround(std::clamp(position, -farthest, farthest)));
}

// The first kept widget that the view or one below it brings; null when there is none.
GtkWidget* keptWidgetOf(View& view) {
  auto* const native = dynamic_cast<NativeView*>(&view);
  if (native != nullptr && native->isKept()) return native->widget();
  for (const auto& subview : view.subviews()) {
    if (GtkWidget* const widget = keptWidgetOf(*subview)) return widget;
  }
  return nullptr;
}

// What assistive technology takes the view for; none: a mere container.
std::optional<GtkAccessibleRole> roleOf(const View& view) {
  if (isReachedByKeyboard(view)) return GTK_ACCESSIBLE_ROLE_LINK;
  if (dynamic_cast<const Label*>(&view) != nullptr) return GTK_ACCESSIBLE_ROLE_LABEL;
  if (dynamic_cast<const ImageView*>(&view) != nullptr) return GTK_ACCESSIBLE_ROLE_IMG;
  if (dynamic_cast<const Toolbar*>(&view) != nullptr) return GTK_ACCESSIBLE_ROLE_TOOLBAR;
  const ViewController* const controller = view.controller();
  if (controller != nullptr && controller->presentingViewController() != nullptr) {
    return GTK_ACCESSIBLE_ROLE_DIALOG;
  }
  // A host's film has a name for as long as an ad plays in it.
  const bool mayBeNamed = dynamic_cast<const MoviePlayer*>(&view) != nullptr;
  if (mayBeNamed || !view.accessibilityLabel().empty()) return GTK_ACCESSIBLE_ROLE_GROUP;
  return std::nullopt;
}

// Leads from a widget of the toolkit's to ours.
GQuark ownQuark() {
  static const GQuark quark = g_quark_from_static_string("tavo-view-widget");
  return quark;
}

bool isPress(guint key, Gdk::ModifierType state) {
  const auto shortcuts =
      Gdk::ModifierType::CONTROL_MASK | Gdk::ModifierType::ALT_MASK | Gdk::ModifierType::SUPER_MASK;
  if ((state & shortcuts) != Gdk::ModifierType{}) return false;
  return key == GDK_KEY_Return || key == GDK_KEY_KP_Enter || key == GDK_KEY_ISO_Enter ||
         key == GDK_KEY_space || key == GDK_KEY_KP_Space;
}

}  // namespace

ViewWidget::ViewWidget(const std::shared_ptr<View>& view, double longestSide)
    : Glib::ObjectBase{"TavoViewWidget"},
      Glib::ExtraClassInit{&ViewWidget::initialize},
      view_{view},
      longestSide_{longestSide} {
  g_object_set_qdata(G_OBJECT(gobj()), ownQuark(), this);
  if (const auto role = roleOf(*view)) {
    g_object_set(gobj(), "accessible-role", *role, nullptr);
  }
}

ViewWidget::~ViewWidget() {
  g_object_set_qdata(G_OBJECT(gobj()), ownQuark(), nullptr);
  native_.release();
  for (const auto* widgets : {&children_, &spares_}) {
    for (const auto& child : *widgets) child.widget->unparent();
  }
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
  // The native widget stands wherever its view is now; it may come from another picture of it.
  if (auto* native = dynamic_cast<NativeView*>(current.get())) native_.follow(*native);
  queue_allocate();
  queue_draw();
}

void ViewWidget::show(const std::shared_ptr<View>& view) {
  view_ = view;
  nameIt({});
}

// Said once, for a reader tells of each change.
void ViewWidget::nameIt(const std::string& name) {
  if (name == name_) return;
  name_ = name;
  if (name.empty()) {
    gtk_accessible_reset_property(GTK_ACCESSIBLE(gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL);
  } else {
    gtk_accessible_update_property(GTK_ACCESSIBLE(gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   name.c_str(), -1);
  }
}

// The view is gone. True when a native widget that is kept stands here or below.
bool ViewWidget::retire() {
  view_.reset();
  set_visible(false);
  // A parent would look for the keyboard's next place behind this one, and find none.
  GtkWidget* const parent = gtk_widget_get_parent(GTK_WIDGET(gobj()));
  if (gtk_widget_get_focus_child(parent) == GTK_WIDGET(gobj())) {
    gtk_widget_set_focus_child(parent, nullptr);
  }
  discard(std::exchange(children_, {}));
  return native_.retire() || !spares_.empty();
}

void ViewWidget::syncProperties(const View& view) {
  set_visible(!view.isHidden());
  set_opacity(view.alpha());
  set_can_target(view.isUserInteractionEnabled());
  letKeysReach(isReachedByKeyboard(view));
  const auto* const label = dynamic_cast<const Label*>(&view);
  nameIt(label == nullptr ? view.accessibilityLabel() : validUtf8(label->text()));
  isPainted_ = ViewPainter::isNeededFor(view);
  set_overflow(view.clipsToBounds() ? Gtk::Overflow::HIDDEN : Gtk::Overflow::VISIBLE);
}

// The keyboard taps what it stands on.
void ViewWidget::letKeysReach(bool reached) {
  set_focusable(reached);
  if (!reached || keys_) return;
  keys_ = Gtk::EventControllerKey::create();
  keys_->signal_key_pressed().connect(
      guardedSlot([this](guint key, guint, Gdk::ModifierType state) {
        const auto current = view();
        if (!current || !is_focus() || !isPress(key, state)) return false;
        recognizeTap(*current);
        return true;
      }),
      false);
  add_controller(keys_);
  signal_state_flags_changed().connect(guardedSlot([this](Gtk::StateFlags) { queue_draw(); }));
}

void ViewWidget::syncChildren(const View& view) {
  std::vector<Child> before = std::exchange(children_, {});
  const auto takeFrom = [&before](const auto& isWanted) -> std::unique_ptr<Gtk::Widget> {
    const auto found = std::find_if(before.begin(), before.end(), [&](const Child& child) {
      return child.widget && isWanted(child);
    });
    return found == before.end() ? nullptr : std::move(found->widget);
  };
  for (const auto& subview : view.subviews()) {
    if (dynamic_cast<const SlotContainer*>(subview.get()) != nullptr) continue;
    children_.push_back(
        {subview, takeFrom([&](const Child& child) { return child.view.lock() == subview; })});
  }
  std::move(spares_.begin(), spares_.end(), std::back_inserter(before));
  spares_.clear();
  for (auto& child : children_) {
    if (child.widget) continue;
    const auto subview = child.view.lock();
    GtkWidget* const kept = keptWidgetOf(*subview);
    child.widget = takeFrom([kept](const Child& former) {
      return kept != nullptr && gtk_widget_is_ancestor(kept, former.widget->gobj()) != FALSE;
    });
    if (child.widget) {
      dynamic_cast<ViewWidget&>(*child.widget).show(subview);
    } else {
      child.widget = makeWidget(subview);
      child.widget->set_parent(*this);
    }
  }
  discard(std::move(before));
  for (const auto& child : children_) {
    child.widget->insert_at_end(*this);  // the order of drawing and of the keyboard
    if (auto* plain = dynamic_cast<ViewWidget*>(child.widget.get())) plain->sync();
    if (auto* button = dynamic_cast<ButtonWidget*>(child.widget.get())) button->sync();
    if (auto* spinner = dynamic_cast<SpinnerWidget*>(child.widget.get())) spinner->sync();
  }
}

// Keeps those that hold a native widget for later.
void ViewWidget::discard(std::vector<Child> children) {
  for (auto& child : children) {
    if (!child.widget) continue;
    auto* const plain = dynamic_cast<ViewWidget*>(child.widget.get());
    if (plain != nullptr && plain->retire()) {
      spares_.push_back({{}, std::move(child.widget)});
    } else {
      child.widget->unparent();
    }
  }
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
  const int x = offset(frame.x - origin_.x);
  const int y = offset(frame.y - origin_.y);
  const int width = bearable(frame.width);
  const int height = bearable(frame.height);
  if (!view.isTurned()) return child.size_allocate({x, y, width, height}, -1);
  const graphene_point_t corner{static_cast<float>(x + height), static_cast<float>(y)};
  auto* turn = gsk_transform_rotate(gsk_transform_translate(nullptr, &corner), quarter);
  gtk_widget_allocate(child.gobj(), width, height, -1, turn);
}

void ViewWidget::size_allocate_vfunc(int width, int height, int /*baseline*/) {
  for (const auto& child : children_) {
    const auto subview = child.view.lock();
    if (subview && child.widget->get_visible()) {
      guarded([&] { allocateChild(*subview, *child.widget); });
    }
  }
  if (GtkWidget* const native = native_.widget()) {
    const GtkAllocation place{0, 0, width, height};
    gtk_widget_measure(native, GTK_ORIENTATION_HORIZONTAL, -1, nullptr, nullptr, nullptr, nullptr);
    gtk_widget_measure(native, GTK_ORIENTATION_VERTICAL, -1, nullptr, nullptr, nullptr, nullptr);
    gtk_widget_size_allocate(native, &place, -1);
  }
}

void ViewWidget::initialize(gpointer widgetClass, gpointer /*data*/) {
  GTK_WIDGET_CLASS(widgetClass)->snapshot = fenced<&ViewWidget::draw>;
}

void ViewWidget::draw(GtkWidget* widget, GtkSnapshot* snapshot) {
  auto* const self = static_cast<ViewWidget*>(g_object_get_qdata(G_OBJECT(widget), ownQuark()));
  if (self != nullptr) self->drawOn(snapshot);
}

void ViewWidget::drawOn(GtkSnapshot* snapshot) {
  if (isPainted_) {
    if (const auto current = view()) {
      guarded([&] { ViewPainter{snapshot, *this}.paint(*current); });
    }
  }
  native_.draw(snapshot);
  for (const auto& child : children_) {
    gtk_widget_snapshot_child(gobj(), child.widget->gobj(), snapshot);
  }
  if (has_visible_focus()) ViewPainter{snapshot, *this}.paintFocus();
}

}  // namespace tavo::gtk
