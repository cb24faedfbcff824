#pragma once

#include <gio/gio.h>

#include "Gtk/GPtr.h"

namespace tavo::test {

// A network monitor whose state a test sets. Like the system's it announces as often as it likes.
class FakeNetwork {
 public:
  FakeNetwork();

  [[nodiscard]] gtk::GPtr<GNetworkMonitor> monitor() const { return monitor_; }

  // Says nothing to anybody.
  void set(bool available, GNetworkConnectivity connectivity);
  // Emits the signal, whatever has changed.
  void announce();

 private:
  gtk::GPtr<GNetworkMonitor> monitor_;
};

}  // namespace tavo::test
