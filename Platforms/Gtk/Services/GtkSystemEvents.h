#pragma once

#include <gio/gio.h>

#include <functional>
#include <vector>

#include "Gtk/GPtr.h"

namespace tavo::gtk {

// Listens to what the system says about the whole session: low memory (GMemoryMonitor), and the
// lock of the screen and its end (logind, about this program's own session only, and the desktops'
// screen savers). One lock may be told by several of them. Where a service is not there, its events
// do not come. Main thread only.
class GtkSystemEvents {
 public:
  struct Events {
    std::function<void(bool locked)> screenLocked{};
    std::function<void()> memoryIsLow{};
  };

  explicit GtkSystemEvents(Events events);
  ~GtkSystemEvents();
  GtkSystemEvents(const GtkSystemEvents&) = delete;
  GtkSystemEvents& operator=(const GtkSystemEvents&) = delete;

 private:
  struct BusSubscription {
    GPtr<GDBusConnection> bus;
    guint id = 0;
  };
  struct Source;

  void watchMemory();
  void watchBus(GBusType type);
  void gotBus(const GPtr<GDBusConnection>& bus, GBusType type);
  void askForSession(const GPtr<GDBusConnection>& bus);
  void watchSession(const GPtr<GDBusConnection>& bus, const char* path);
  void subscribe(const GPtr<GDBusConnection>& bus, const Source& source);

  const Events events_;
  GPtr<GMemoryMonitor> memory_;
  gulong lowMemoryHandler_ = 0;
  GPtr<GCancellable> cancellable_;
  std::vector<BusSubscription> subscriptions_;
};

}  // namespace tavo::gtk
