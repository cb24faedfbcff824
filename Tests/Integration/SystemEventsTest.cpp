#include <gtest/gtest.h>

#include "Gtk/Services/GtkSystemEvents.h"
#include "Headless/HeadlessPlatform.h"
#include "Runtime/Runtime.h"
#include "Services/Application.h"
#include "Support/GtkLoopTest.h"

namespace tavo::test {
namespace {

// A message bus of the test's own, which stands for the session's and the system's.
class PrivateBus {
 public:
  PrivateBus() : daemon_{g_test_dbus_new(G_TEST_DBUS_NONE)} {
    g_test_dbus_up(daemon_);
    g_setenv("DBUS_SYSTEM_BUS_ADDRESS", g_test_dbus_get_bus_address(daemon_), TRUE);
    sender_ = g_dbus_connection_new_for_address_sync(
        g_test_dbus_get_bus_address(daemon_),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr);
  }
  ~PrivateBus() {
    g_object_unref(sender_);
    // Unlike stopping alone, this lets go of the shared connection first: losing it would end us.
    g_test_dbus_down(daemon_);
    g_unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
    g_object_unref(daemon_);
  }
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;

  void emit(const char* interface, const char* signal, GVariant* parameters) const {
    g_dbus_connection_emit_signal(sender_, nullptr, "/somewhere", interface, signal, parameters,
                                  nullptr);
    g_dbus_connection_flush_sync(sender_, nullptr, nullptr);
  }

 private:
  GTestDBus* daemon_;
  GDBusConnection* sender_ = nullptr;
};

class SystemEventsTest : public GtkLoopTest {
 protected:
  SystemEventsTest() {
    locks_ = runtime_.notifications().subscribe(notifications::screenLocked,
                                                [this](const Notification&) { ++lockCount_; });
    warnings_ = runtime_.notifications().subscribe(
        notifications::didReceiveMemoryWarning, [this](const Notification&) { ++warningCount_; });
  }

  headless::HeadlessPlatform platform_;
  Runtime runtime_{platform_.platform()};
  int lockCount_ = 0;
  int warningCount_ = 0;
  Subscription locks_;
  Subscription warnings_;
};

TEST_F(SystemEventsTest, LocksOfTheScreenArriveFromEverySource) {
  struct Source {
    const char* interface;
    const char* signal;
    const char* parameters;
  };
  const Source sources[] = {
      {"org.freedesktop.login1.Session", "Lock", "()"},
      {"org.freedesktop.ScreenSaver", "ActiveChanged", "(true,)"},
      {"org.gnome.ScreenSaver", "ActiveChanged", "(true,)"},
  };
  const PrivateBus bus;
  {
    const gtk::GtkSystemEvents events;
    for (const auto& source : sources) {
      SCOPED_TRACE(source.interface);
      const int before = lockCount_;
      // The subscription is made beside the loop: say it until it is heard.
      const Timer again = runLoop_->every(Seconds{0.02}, [&] {
        bus.emit(source.interface, source.signal, g_variant_new_parsed(source.parameters));
      });
      runUntil([&] { return lockCount_ > before; });
      EXPECT_GT(lockCount_, before);
    }
  }
}

TEST_F(SystemEventsTest, AScreenSaverThatEndsOrTalksNonsenseLocksNothing) {
  const PrivateBus bus;
  const gtk::GtkSystemEvents events;
  int rounds = 0;
  const Timer again = runLoop_->every(Seconds{0.02}, [&] {
    ++rounds;
    bus.emit("org.gnome.ScreenSaver", "ActiveChanged", g_variant_new_parsed("(false,)"));
    bus.emit("org.gnome.ScreenSaver", "ActiveChanged", g_variant_new_parsed("('x',)"));
    bus.emit("org.gnome.ScreenSaver", "ActiveChanged", g_variant_new_parsed("(true,)"));
  });
  runUntil([&] { return lockCount_ >= 3; });
  EXPECT_LE(lockCount_, rounds) << "one of the three messages of a round is a lock";
}

TEST_F(SystemEventsTest, OnlyRealShortageOfMemoryIsAWarning) {
  const gtk::GtkSystemEvents events;
  GMemoryMonitor* monitor = g_memory_monitor_dup_default();
  g_signal_emit_by_name(monitor, "low-memory-warning", G_MEMORY_MONITOR_WARNING_LEVEL_LOW);
  EXPECT_EQ(warningCount_, 0);
  g_signal_emit_by_name(monitor, "low-memory-warning", G_MEMORY_MONITOR_WARNING_LEVEL_CRITICAL);
  EXPECT_EQ(warningCount_, 1);
  g_object_unref(monitor);
}

}  // namespace
}  // namespace tavo::test
