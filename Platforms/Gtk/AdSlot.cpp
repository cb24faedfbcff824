#include <algorithm>
#include <cmath>
#include <string_view>

#include <tavo/Runtime.h>
#include <tavo/gtk/AdSlot.h>

#include "Gtk/Guarded.h"
#include "Gtk/Scene/SceneRoot.h"
#include "Gtk/Scene/SlotContainer.h"
#include "Gtk/Services/GtkApplication.h"
#include "Gtk/SignalConnections.h"
#include "Runtime/Environment.h"
#include "Runtime/MainThread.h"
#include "Services/Log.h"

namespace tavo::gtk {

// The view's place in the scene, kept where the widget is in its window.
class TAVO_HIDDEN AdSlot::Core {
 public:
  Core(AdSlot& slot, const std::shared_ptr<View>& adView);
  ~Core();
  Core(const Core&) = delete;
  Core& operator=(const Core&) = delete;

  [[nodiscard]] const std::shared_ptr<View>& adView() const { return adView_; }
  [[nodiscard]] Gtk::Widget& widget() { return root_.widget(); }
  [[nodiscard]] int length(Gtk::Orientation orientation) const;
  void resize(int width, int height);
  void show();
  void hide();
  void enterWindow();
  void leaveWindowSoon();

 private:
  void followSurroundings();
  static void surroundingsChanged(GObject* widget, GParamSpec* property, gpointer self);
  void updatePlace();
  [[nodiscard]] Gtk::Widget* placeReference() const;
  void tellShownPart();
  [[nodiscard]] Rect shownPart() const;
  void moveTo(const Rect& place);

  AdSlot& slot_;
  const std::shared_ptr<Environment> environment_ = Runtime::current().environment();
  const std::shared_ptr<View> adView_;
  const std::shared_ptr<View> container_ = std::make_shared<SlotContainer>();
  Rect place_;                 // of the slot, in its window
  std::optional<Rect> shown_;  // the part of the ad view that the host shows, as it was told
  bool appearing_ = false;     // on the screen, but not told to the ad view yet
  sigc::connection layouts_;
  SignalConnections surroundings_;
  sigc::connection leaving_;
  sigc::connection disappearing_;
  sigc::connection destroyed_;
  SceneRoot root_{container_, environment_->limits().widgetSide, [this] {
                    tellShownPart();
                    adView_->coverDidChange();
                  }};
};

namespace {

// The host shows a slot without an ad, and not the end of its process.
std::shared_ptr<View> viewFor(const std::shared_ptr<View>& adView) {
  requireMainThread("AdSlot::AdSlot");
  if (adView) return adView;
  Runtime::current().platform().log->write(
      LogLevel::error,
      "An AdSlot was made of a null pointer: nothing will be shown there. Give it the view that "
      "XAdView::create returns.");
  return std::make_shared<View>();
}

constexpr const char* slotTypeName = "TavoAdSlot";

// The toolkit's own way of drawing a child, which is all there is to draw: its C++ interface makes
// an object for each frame. A class that was derived from the slot's may draw more, and keeps its.
void drawPlainly(GtkWidget* slot) {
  const bool isDerived = !std::string_view{G_OBJECT_TYPE_NAME(slot)}.ends_with(slotTypeName);
  if (isDerived) return;
  GTK_WIDGET_GET_CLASS(slot)->snapshot =
      GTK_WIDGET_CLASS(g_type_class_peek(GTK_TYPE_WIDGET))->snapshot;
}

}  // namespace

AdSlot::Core::Core(AdSlot& slot, const std::shared_ptr<View>& adView)
    : slot_{slot}, adView_{viewFor(adView)} {
  container_->setHidden(true);
  container_->setAutoresizesSubviews(false);  // the toolkit lays the slot out
  container_->addSubview(adView_);
  root_.widget().set_parent(slot_);
  // A widget that its container owns is taken apart before its destructor comes to run.
  destroyed_ = slot_.signal_destroy().connect(guardedSlot([this] { root_.widget().unparent(); }));
}

AdSlot::Core::~Core() {
  destroyed_.disconnect();
  leaving_.disconnect();
  disappearing_.disconnect();
  layouts_.disconnect();
  container_->removeAllSubviews();
  container_->removeFromSuperview();
  if (root_.widget().get_parent() != nullptr) root_.widget().unparent();
}

int AdSlot::Core::length(Gtk::Orientation orientation) const {
  const Size size = adView_->frame().size();
  const double length = orientation == Gtk::Orientation::HORIZONTAL ? size.width : size.height;
  return static_cast<int>(std::ceil(std::clamp(length, 0.0, environment_->limits().widgetSide)));
}

void AdSlot::Core::resize(int width, int height) {
  updatePlace();
  root_.widget().size_allocate({0, 0, width, height}, -1);
}

void AdSlot::Core::show() {
  disappearing_.disconnect();
  container_->setHidden(false);
  appearing_ = true;
  updatePlace();
}

// What holds the slot may be put elsewhere in its window, which takes less than a turn: the
// window's layer does so when it is first needed.
void AdSlot::Core::hide() {
  appearing_ = false;
  container_->setHidden(true);
  disappearing_ = Glib::signal_idle().connect(guardedSlot([this] {
    tellShownPart();
    adView_->didDisappearFromScreen();
    return false;
  }));
}

void AdSlot::Core::enterWindow() {
  leaving_.disconnect();
  auto* window = dynamic_cast<Gtk::Window*>(slot_.get_root());
  auto* application = dynamic_cast<GtkApplication*>(environment_->platform().application.get());
  if (window == nullptr || application == nullptr) return;
  application->sceneOf(*window)->addSlot(container_);
  // It may stand elsewhere in the window for a while: a video in full screen.
  if (adView_->superview() == nullptr) container_->addSubview(adView_);
  followSurroundings();
}

// The widget is told of a new size, but neither of a new place nor of what becomes of those around
// it, which stay the same ones for as long as it stays in the window.
void AdSlot::Core::followSurroundings() {
  if (const auto clock = slot_.get_frame_clock()) {
    layouts_ = clock->signal_layout().connect(guardedSlot([this] { updatePlace(); }));
  }
  for (GtkWidget* widget = GTK_WIDGET(slot_.gobj()); widget != nullptr;
       widget = gtk_widget_get_parent(widget)) {
    for (const char* change : {"notify::opacity", "notify::overflow"}) {
      surroundings_.connect(widget, change, fenced<&surroundingsChanged>, this);
    }
  }
}

void AdSlot::Core::surroundingsChanged(GObject* /*widget*/, GParamSpec* /*property*/,
                                       gpointer self) {
  static_cast<Core*>(self)->tellShownPart();
}

// A widget that is moved to another place of the window leaves it for less than a turn.
void AdSlot::Core::leaveWindowSoon() {
  layouts_.disconnect();
  surroundings_.disconnect();
  leaving_ = Glib::signal_idle().connect(guardedSlot([this] {
    adView_->removeFromSuperview();
    container_->removeFromSuperview();
    return false;
  }));
}

Gtk::Widget* AdSlot::Core::placeReference() const {
  auto* window = dynamic_cast<Gtk::Window*>(slot_.get_root());
  auto* application = dynamic_cast<GtkApplication*>(environment_->platform().application.get());
  if (window == nullptr || application == nullptr) return window;
  return &application->sceneOf(*window)->reference();
}

void AdSlot::Core::updatePlace() {
  Gtk::Widget* const reference = placeReference();
  if (reference == nullptr) return;
  graphene_rect_t bounds;
  if (!gtk_widget_compute_bounds(GTK_WIDGET(slot_.gobj()), reference->gobj(), &bounds)) return;
  root_.showFrom({bounds.origin.x, bounds.origin.y});
  moveTo(Rect{bounds.origin.x, bounds.origin.y, bounds.size.width, bounds.size.height});
  tellShownPart();
  if (!appearing_ || place_.empty()) return;
  appearing_ = false;
  adView_->didAppearOnScreen();
}

void AdSlot::Core::tellShownPart() {
  const Rect part = shownPart();
  if (part == shown_) return;
  shown_ = part;
  adView_->shownPartDidChange(part);
}

// What the widgets around it do not cut off.
Rect AdSlot::Core::shownPart() const {
  if (container_->isHidden() || adView_->isHidden() || !slot_.get_mapped()) return {};
  GtkWidget* const slot = GTK_WIDGET(slot_.gobj());
  if (gtk_widget_get_opacity(slot) <= 0) return {};
  const Size size = adView_->frame().size();
  Rect part{0, 0, std::min(size.width, static_cast<double>(slot_.get_width())),
            std::min(size.height, static_cast<double>(slot_.get_height()))};
  for (GtkWidget* above = gtk_widget_get_parent(slot); above != nullptr;
       above = gtk_widget_get_parent(above)) {
    if (gtk_widget_get_opacity(above) <= 0) return {};
    const bool cuts = gtk_widget_get_overflow(above) == GTK_OVERFLOW_HIDDEN ||
                      gtk_widget_get_parent(above) == nullptr;
    graphene_point_t corner{};
    const graphene_point_t own{0, 0};
    if (!cuts || !gtk_widget_compute_point(above, slot, &own, &corner)) continue;
    part = part.intersection({corner.x, corner.y, static_cast<double>(gtk_widget_get_width(above)),
                              static_cast<double>(gtk_widget_get_height(above))});
  }
  return part;
}

// The view's frame says where it stands among the host's content, unless it stands elsewhere now.
void AdSlot::Core::moveTo(const Rect& place) {
  if (adView_->superview() != container_.get()) return;
  const Size size = adView_->frame().size();
  const Rect frame{place.x, place.y, size.width, size.height};
  if (place == place_ && frame == adView_->frame()) return;
  place_ = place;
  adView_->setFrame(frame);
  adView_->didMoveOnScreen();
}

AdSlot::AdSlot(const std::shared_ptr<View>& adView) : Glib::ObjectBase{slotTypeName} {
  drawPlainly(GTK_WIDGET(gobj()));
  set_halign(Gtk::Align::CENTER);
  set_valign(Gtk::Align::CENTER);
  set_overflow(Gtk::Overflow::HIDDEN);
  core_ = std::make_unique<Core>(*this, adView);
}

AdSlot::~AdSlot() = default;

const std::shared_ptr<View>& AdSlot::adView() const { return core_->adView(); }

void AdSlot::measure_vfunc(Gtk::Orientation orientation, int /*for_size*/, int& minimum,
                           int& natural, int& minimum_baseline, int& natural_baseline) const {
  minimum = natural = core_->length(orientation);
  minimum_baseline = natural_baseline = -1;
}

void AdSlot::size_allocate_vfunc(int width, int height, int /*baseline*/) {
  guarded([&] { core_->resize(width, height); });
}

void AdSlot::snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) {
  guarded([&] { snapshot_child(core_->widget(), snapshot); });
}

void AdSlot::on_realize() {
  Gtk::Widget::on_realize();
  guarded([&] { core_->enterWindow(); });
}

void AdSlot::on_unrealize() {
  guarded([&] { core_->leaveWindowSoon(); });
  Gtk::Widget::on_unrealize();
}

void AdSlot::on_map() {
  Gtk::Widget::on_map();
  guarded([&] { core_->show(); });
}

void AdSlot::on_unmap() {
  guarded([&] { core_->hide(); });
  Gtk::Widget::on_unmap();
}

}  // namespace tavo::gtk
