#include "Gtk/Services/GtkSystemEvents.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "Runtime/NotificationCenter.h"
#include "Services/Application.h"

namespace tavo::gtk {

namespace {

// logind: "Lock" is sent to the session that is to be locked.
void heardLock(GDBusConnection*, const char*, const char*, const char*, const char*, GVariant*,
               gpointer center) {
  static_cast<NotificationCenter*>(center)->post(notifications::screenLocked);
}

// Screen savers: true when the screen is covered.
void heardActiveChanged(GDBusConnection*, const char*, const char*, const char*, const char*,
                        GVariant* parameters, gpointer center) {
  gboolean active = FALSE;
  if (g_variant_is_of_type(parameters, G_VARIANT_TYPE("(b)")) == FALSE) return;
  g_variant_get(parameters, "(b)", &active);
  if (active != FALSE) static_cast<NotificationCenter*>(center)->post(notifications::screenLocked);
}

}  // namespace

GtkSystemEvents::GtkSystemEvents(std::shared_ptr<NotificationCenter> notifications)
    : notifications_{std::move(notifications)},
      cancellable_{GPtr<GCancellable>::adopt(g_cancellable_new())} {
  watchMemory();
  watchBus(G_BUS_TYPE_SYSTEM);
  watchBus(G_BUS_TYPE_SESSION);
}

GtkSystemEvents::~GtkSystemEvents() {
  g_cancellable_cancel(cancellable_.get());
  if (memory_) g_signal_handler_disconnect(memory_.get(), lowMemoryHandler_);
  for (const auto& subscription : subscriptions_) {
    g_dbus_connection_signal_unsubscribe(subscription.bus.get(), subscription.id);
  }
}

void GtkSystemEvents::watchMemory() {
  memory_ = GPtr<GMemoryMonitor>::adopt(g_memory_monitor_dup_default());
  const auto heard = +[](GMemoryMonitor*, GMemoryMonitorWarningLevel level, gpointer center) {
    // Below this the system only asks for thrift; content on the screen stays.
    if (level >= G_MEMORY_MONITOR_WARNING_LEVEL_MEDIUM) {
      static_cast<NotificationCenter*>(center)->post(notifications::didReceiveMemoryWarning);
    }
  };
  lowMemoryHandler_ = g_signal_connect(memory_.get(), "low-memory-warning", G_CALLBACK(heard),
                                       notifications_.get());
}

// Connecting waits for a daemon that may not be there, so it happens beside the loop.
void GtkSystemEvents::watchBus(GBusType type) {
  struct Request {
    GtkSystemEvents* self;
    GBusType type;
    GPtr<GCancellable> cancellable;
  };
  g_bus_get(
      type, cancellable_.get(),
      [](GObject*, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Request> request{static_cast<Request*>(data)};
        const auto bus = GPtr<GDBusConnection>::adopt(g_bus_get_finish(result, nullptr));
        if (!bus || g_cancellable_is_cancelled(request->cancellable.get()) != FALSE) return;
        request->self->gotBus(bus, request->type);
      },
      new Request{this, type, cancellable_});
}

void GtkSystemEvents::gotBus(const GPtr<GDBusConnection>& bus, GBusType type) {
  if (type == G_BUS_TYPE_SYSTEM) {
    // By default GIO ends the process with its bus; a daemon that restarts must not take the host.
    g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
    subscribe(bus, "org.freedesktop.login1.Session", "Lock", heardLock);
    return;
  }
  subscribe(bus, "org.freedesktop.ScreenSaver", "ActiveChanged", heardActiveChanged);
  subscribe(bus, "org.gnome.ScreenSaver", "ActiveChanged", heardActiveChanged);
}

void GtkSystemEvents::subscribe(const GPtr<GDBusConnection>& bus, const char* interface,
                                const char* signal, GDBusSignalCallback heard) {
  const guint id = g_dbus_connection_signal_subscribe(bus.get(), nullptr, interface, signal,
                                                      nullptr, nullptr, G_DBUS_SIGNAL_FLAGS_NONE,
                                                      heard, notifications_.get(), nullptr);
  subscriptions_.push_back({bus, id});
}

}  // namespace tavo::gtk
