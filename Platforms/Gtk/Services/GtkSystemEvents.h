#pragma once

#include <gio/gio.h>

#include <memory>
#include <vector>

#include "Gtk/GPtr.h"
#include "Runtime/NotificationCenter.h"

namespace tavo::gtk {

// Listens to what the system says about the whole session and posts it as notifications: low memory
// (GMemoryMonitor) and the lock of the screen (logind's session and the desktops' screen savers).
// Where a service is not there, its events do not come. Main thread only.
class GtkSystemEvents {
 public:
  explicit GtkSystemEvents(std::shared_ptr<NotificationCenter> notifications);
  ~GtkSystemEvents();
  GtkSystemEvents(const GtkSystemEvents&) = delete;
  GtkSystemEvents& operator=(const GtkSystemEvents&) = delete;

 private:
  struct BusSubscription {
    GPtr<GDBusConnection> bus;
    guint id = 0;
  };

  void watchMemory();
  void watchBus(GBusType type);
  void gotBus(const GPtr<GDBusConnection>& bus, GBusType type);
  void subscribe(const GPtr<GDBusConnection>& bus, const char* interface, const char* signal,
                 GDBusSignalCallback heard);

  std::shared_ptr<NotificationCenter> notifications_;
  GPtr<GMemoryMonitor> memory_;
  gulong lowMemoryHandler_ = 0;
  GPtr<GCancellable> cancellable_;
  std::vector<BusSubscription> subscriptions_;
};

}  // namespace tavo::gtk
