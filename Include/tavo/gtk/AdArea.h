#pragma once

#include <gtkmm.h>

#include <memory>

#include <tavo/Export.h>

namespace tavo::gtk {

// A part of a window that ads treat as their screen: for hosts whose window shows more than the
// content that carries ads, such as a list beside it.
//
//   area.set_child(content);  // with its slots
//   window.set_child(panes);  // with the area somewhere in it
//
// What leaves its slot (an expanded or resized ad, an interstitial, the browser) covers the area
// and not the window; creatives are told of the area's size and shape, and of their place in it.
// The window's close button means the host, not the ad.
//
// One area a window; slots outside of it are not for use beside one. Put it into the window before
// the first ad is loaded. Main thread only, in a running Runtime with the platform of makePlatform.
class TAVO_EXPORT AdArea : public Gtk::Overlay {
 public:
  AdArea();
  ~AdArea() override;
  AdArea(const AdArea&) = delete;
  AdArea& operator=(const AdArea&) = delete;

 private:
  void enterWindow();
  void leaveWindow();

  Gtk::Window* window_ = nullptr;
  sigc::connection frameClock_;
};

}  // namespace tavo::gtk
