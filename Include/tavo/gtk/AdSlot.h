#pragma once

#include <gtkmm.h>

#include <memory>

#include <tavo/View.h>

#include "Gtk/Scene/SceneRoot.h"

namespace tavo::gtk {

// A widget that shows an ad view in a gtkmm layout. It asks for the size of the view's frame and
// stands centred where the layout gives it more. The slot shares the view with the host.
//
// The ad follows the widget: it counts as visible while the widget is mapped in a window that the
// user sees, and it is released when the widget has left its window for good.
class AdSlot : public Gtk::Widget {
 public:
  explicit AdSlot(const std::shared_ptr<View>& adView);
  ~AdSlot() override;

  [[nodiscard]] const std::shared_ptr<View>& adView() const { return adView_; }

 protected:
  void measure_vfunc(Gtk::Orientation orientation, int for_size, int& minimum, int& natural,
                     int& minimum_baseline, int& natural_baseline) const override;
  void size_allocate_vfunc(int width, int height, int baseline) override;
  void snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) override;
  void on_map() override;
  void on_unmap() override;
  void on_realize() override;
  void on_unrealize() override;

 private:
  void enterWindow();
  void leaveWindow();
  void updatePlace();

  std::shared_ptr<View> adView_;
  std::shared_ptr<View> container_;
  SceneRoot root_;
  bool appearing_ = false;  // on the screen, but not told to the ad view yet
  sigc::connection frameClock_;
  sigc::connection leaving_;
  sigc::connection destroyed_;
};

}  // namespace tavo::gtk
