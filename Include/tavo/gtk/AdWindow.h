#pragma once

#include <gtkmm.h>

#include <memory>

#include <tavo/Export.h>
#include <tavo/ViewController.h>

namespace tavo::gtk {

// The controller behind everything in a window of the host's, from which interstitials are
// presented above the window's content:
//
//   gtk::rootViewControllerOf(window)->presentViewController(interstitial, Animated::yes);
//
// While one is there it fills the window, takes all input and keeps the keyboard; Escape and the
// window's close button mean it and not the host. Afterwards the content is as it was, the focus
// included. The window may have slots, too, or none.
//
// Main thread only, in a running Runtime with the platform of makePlatform; null with another
// platform. The window owns the controller, the same one on each call: it goes with the window.
[[nodiscard]] TAVO_EXPORT std::shared_ptr<ViewController> rootViewControllerOf(Gtk::Window& window);

// The host's window that a controller stands in, for an ad network that opens windows of its own
// above it. Null where the controller's view is in none, and with another platform. Main thread
// only.
[[nodiscard]] TAVO_EXPORT Gtk::Window* windowOf(ViewController& controller);

}  // namespace tavo::gtk
