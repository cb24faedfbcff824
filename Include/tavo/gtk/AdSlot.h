#pragma once

#include <gtkmm.h>

#include <memory>

#include <tavo/Export.h>
#include <tavo/View.h>

namespace tavo::gtk {

// A widget that shows an ad view, or any other view, in a gtkmm layout:
//
//   auto banner = tavo::XAdView::create({0, 0, 320, 50});
//   auto slot = std::make_unique<tavo::gtk::AdSlot>(banner);
//   column.append(*slot);
//   banner->loadWithDomainName("example.com", "home", "top");
//
// It asks the layout for the size of the view's frame, in logical pixels, and stands centred where
// it is given more. The frame's origin follows the widget: it is the slot's place in its window,
// from the first layout on, whatever the host has set. Frames beyond `Limits::widgetSide` are cut
// there. Expanded ads and resized ones leave the slot for a layer above the window's content; the
// slot keeps its place meanwhile.
//
// The ad follows the widget. It counts as visible while the widget is mapped in a window that the
// user sees. A widget that is moved inside its window keeps its ad running; one that has left its
// window, or whose window was closed, takes the view out of the scene in the next turn of the loop,
// and brings it back when it gets a window again.
//
// Main thread only, in a running Runtime with the platform of makePlatform.
class TAVO_EXPORT AdSlot : public Gtk::Widget {
 public:
  // Shares `adView` with the host. A view can be in one slot at a time: the last one that is given
  // it shows it. Null is a mistake, which the log names; the slot then stays empty.
  explicit AdSlot(const std::shared_ptr<View>& adView);
  // The view lives on if the host still has it, outside every window.
  ~AdSlot() override;
  AdSlot(const AdSlot&) = delete;
  AdSlot& operator=(const AdSlot&) = delete;

  // Never null.
  [[nodiscard]] const std::shared_ptr<View>& adView() const;

 protected:
  // The toolkit's side of a widget; not for hosts.
  void measure_vfunc(Gtk::Orientation orientation, int for_size, int& minimum, int& natural,
                     int& minimum_baseline, int& natural_baseline) const override;
  void size_allocate_vfunc(int width, int height, int baseline) override;
  void snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) override;
  void on_map() override;
  void on_unmap() override;
  void on_realize() override;
  void on_unrealize() override;

 private:
  class Core;
  std::unique_ptr<Core> core_;
};

}  // namespace tavo::gtk
