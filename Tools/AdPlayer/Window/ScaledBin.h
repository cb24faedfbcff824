#pragma once

#include <gtkmm.h>

namespace tavo::adplayer {

// Shows one widget smaller or larger than it is; the widget itself does not notice.
class ScaledBin : public Gtk::Widget {
 public:
  ScaledBin();
  ~ScaledBin() override;
  void setChild(Gtk::Widget& child);
  // 1: as it is. 0: as large as there is room for, but never larger than it is.
  void setScale(double scale);

 protected:
  Gtk::SizeRequestMode get_request_mode_vfunc() const override;
  void measure_vfunc(Gtk::Orientation orientation, int for_size, int& minimum, int& natural,
                     int& minimum_baseline, int& natural_baseline) const override;
  void size_allocate_vfunc(int width, int height, int baseline) override;
  void snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) override;

 private:
  [[nodiscard]] int childLength(Gtk::Orientation orientation) const;

  Gtk::Widget* child_ = nullptr;
  double scale_ = 0;
};

}  // namespace tavo::adplayer
