#include "Gtk/Services/GtkSystemEvents.h"

#include <memory>
#include <utility>

#include "Gtk/Guarded.h"
#include "Gtk/Services/BusQuestions.h"

namespace tavo::gtk {

// One signal that tells of the screen.
struct GtkSystemEvents::Source {
  const char* sender;  // null: whoever says it
  const char* interface;
  const char* signal;
  const char* path;  // null: of any object
  GDBusSignalCallback heard;
};

namespace {

constexpr const char* logind = "org.freedesktop.login1";
constexpr const char* logindSession = "org.freedesktop.login1.Session";

// A question that may outlive whoever asks; a cancelled one has nobody to answer.
struct Question {
  GtkSystemEvents* self;
  GBusType type;
  GPtr<GCancellable> cancellable;
  [[nodiscard]] bool isCancelled() const {
    return g_cancellable_is_cancelled(cancellable.get()) != FALSE;
  }
};

void tell(gpointer events, bool locked) {
  guarded([&] { static_cast<const GtkSystemEvents::Events*>(events)->screenLocked(locked); });
}

// logind: the session is to be locked, or is to be open again.
void heardLock(GDBusConnection*, const char*, const char*, const char*, const char*, GVariant*,
               gpointer events) {
  tell(events, true);
}

void heardUnlock(GDBusConnection*, const char*, const char*, const char*, const char*, GVariant*,
                 gpointer events) {
  tell(events, false);
}

// logind: what the lock screen itself has told it.
void heardHint(GDBusConnection*, const char*, const char*, const char*, const char*,
               GVariant* parameters, gpointer events) {
  if (g_variant_is_of_type(parameters, G_VARIANT_TYPE("(sa{sv}as)")) == FALSE) return;
  const GVariantPtr changed{g_variant_get_child_value(parameters, 1)};
  gboolean locked = FALSE;
  if (g_variant_lookup(changed.get(), "LockedHint", "b", &locked) != FALSE) {
    tell(events, locked != FALSE);
  }
}

// Screen savers: true when the screen is covered.
void heardActiveChanged(GDBusConnection*, const char*, const char*, const char*, const char*,
                        GVariant* parameters, gpointer events) {
  gboolean active = FALSE;
  if (g_variant_is_of_type(parameters, G_VARIANT_TYPE("(b)")) == FALSE) return;
  g_variant_get(parameters, "(b)", &active);
  tell(events, active != FALSE);
}

}  // namespace

GtkSystemEvents::GtkSystemEvents(Events events)
    : events_{std::move(events)}, cancellable_{GPtr<GCancellable>::adopt(g_cancellable_new())} {
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
  const auto heard = +[](GMemoryMonitor*, GMemoryMonitorWarningLevel level, gpointer events) {
    // Below this the system only asks for thrift; content on the screen stays.
    if (level >= G_MEMORY_MONITOR_WARNING_LEVEL_MEDIUM) {
      guarded(static_cast<const Events*>(events)->memoryIsLow);
    }
  };
  lowMemoryHandler_ = g_signal_connect(memory_.get(), "low-memory-warning", G_CALLBACK(heard),
                                       const_cast<Events*>(&events_));
}

// Connecting waits for a daemon that may not be there, so it happens beside the loop.
void GtkSystemEvents::watchBus(GBusType type) {
  g_bus_get(
      type, cancellable_.get(),
      [](GObject*, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Question> question{static_cast<Question*>(data)};
        const auto bus = GPtr<GDBusConnection>::adopt(g_bus_get_finish(result, nullptr));
        if (!bus || question->isCancelled()) return;
        guarded([&] { question->self->gotBus(bus, question->type); });
      },
      new Question{this, type, cancellable_});
}

void GtkSystemEvents::gotBus(const GPtr<GDBusConnection>& bus, GBusType type) {
  if (type == G_BUS_TYPE_SYSTEM) {
    // By default GIO ends the process with its bus; a daemon that restarts must not take the host.
    g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
    return askForSession(bus);
  }
  for (const char* saver : {"org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver"}) {
    subscribe(bus, {nullptr, saver, "ActiveChanged", nullptr, heardActiveChanged});
  }
}

// logind's signals come for every session of the machine; only this program's is of interest, or
// that of its user's screen for a program that runs outside a session.
void GtkSystemEvents::askForSession(const GPtr<GDBusConnection>& bus) {
  g_dbus_connection_call(
      bus.get(), logind, "/org/freedesktop/login1", "org.freedesktop.login1.Manager", "GetSession",
      g_variant_new("(s)", "auto"), G_VARIANT_TYPE("(o)"), G_DBUS_CALL_FLAGS_NONE, -1,
      cancellable_.get(),
      [](GObject* connection, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Question> question{static_cast<Question*>(data)};
        const GVariantPtr answer{
            g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, nullptr)};
        if (!answer || question->isCancelled()) return;
        const char* path = nullptr;
        g_variant_get(answer.get(), "(&o)", &path);
        guarded([&] {
          question->self->watchSession(GPtr<GDBusConnection>::share(G_DBUS_CONNECTION(connection)),
                                       path);
        });
      },
      new Question{this, G_BUS_TYPE_SYSTEM, cancellable_});
}

void GtkSystemEvents::watchSession(const GPtr<GDBusConnection>& bus, const char* path) {
  subscribe(bus, {logind, logindSession, "Lock", path, heardLock});
  subscribe(bus, {logind, logindSession, "Unlock", path, heardUnlock});
  subscribe(bus, {logind, "org.freedesktop.DBus.Properties", "PropertiesChanged", path, heardHint});
}

void GtkSystemEvents::subscribe(const GPtr<GDBusConnection>& bus, const Source& source) {
  const guint id = g_dbus_connection_signal_subscribe(
      bus.get(), source.sender, source.interface, source.signal, source.path, nullptr,
      G_DBUS_SIGNAL_FLAGS_NONE, source.heard, const_cast<Events*>(&events_), nullptr);
  subscriptions_.push_back({bus, id});
}

}  // namespace tavo::gtk
