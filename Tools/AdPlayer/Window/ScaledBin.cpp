#include "AdPlayer/Window/ScaledBin.h"

#include <algorithm>
#include <cmath>

namespace tavo::adplayer {

namespace {
constexpr double smallestScale = 0.35;
}  // namespace

ScaledBin::ScaledBin() : Glib::ObjectBase{"TavoScaledBin"} { set_overflow(Gtk::Overflow::HIDDEN); }

ScaledBin::~ScaledBin() {
  if (child_ != nullptr) child_->unparent();
}

void ScaledBin::setChild(Gtk::Widget& child) {
  child_ = &child;
  child.set_parent(*this);
}

void ScaledBin::setScale(double scale) {
  scale_ = scale;
  queue_resize();
}

Gtk::SizeRequestMode ScaledBin::get_request_mode_vfunc() const {
  return Gtk::SizeRequestMode::CONSTANT_SIZE;
}

int ScaledBin::childLength(Gtk::Orientation orientation) const {
  if (child_ == nullptr) return 0;
  int minimum = 0;
  int natural = 0;
  gtk_widget_measure(child_->gobj(), static_cast<GtkOrientation>(orientation), -1, &minimum,
                     &natural, nullptr, nullptr);
  return natural;
}

void ScaledBin::measure_vfunc(Gtk::Orientation orientation, int /*for_size*/, int& minimum,
                              int& natural, int& minimum_baseline, int& natural_baseline) const {
  const double length = childLength(orientation);
  minimum = static_cast<int>(std::ceil(length * (scale_ > 0 ? scale_ : smallestScale)));
  natural = static_cast<int>(std::ceil(length * (scale_ > 0 ? scale_ : 1)));
  minimum_baseline = natural_baseline = -1;
}

void ScaledBin::size_allocate_vfunc(int width, int height, int /*baseline*/) {
  if (child_ == nullptr) return;
  const int childWidth = childLength(Gtk::Orientation::HORIZONTAL);
  const int childHeight = childLength(Gtk::Orientation::VERTICAL);
  double scale = scale_;
  if (scale <= 0) {
    scale = std::min({1.0, static_cast<double>(width) / std::max(childWidth, 1),
                      static_cast<double>(height) / std::max(childHeight, 1)});
  }
  const graphene_point_t corner{static_cast<float>((width - childWidth * scale) / 2),
                                static_cast<float>((height - childHeight * scale) / 2)};
  GskTransform* transform = gsk_transform_translate(nullptr, &corner);
  transform = gsk_transform_scale(transform, static_cast<float>(scale), static_cast<float>(scale));
  gtk_widget_allocate(child_->gobj(), childWidth, childHeight, -1, transform);
}

void ScaledBin::snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) {
  if (child_ != nullptr) snapshot_child(*child_, snapshot);
}

}  // namespace tavo::adplayer
