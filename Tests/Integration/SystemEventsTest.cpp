#include <gtest/gtest.h>

#include <tavo/Runtime.h>

#include "Gtk/Services/GtkSystemEvents.h"
#include "Headless/HeadlessPlatform.h"
#include "Runtime/NotificationCenter.h"
#include "Services/Application.h"
#include "Support/GtkLoopTest.h"
#include "Support/PrivateBus.h"

namespace tavo::test {
namespace {

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
    const gtk::GtkSystemEvents events{runtime_.platform().notifications};
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
  const gtk::GtkSystemEvents events{runtime_.platform().notifications};
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
  const gtk::GtkSystemEvents events{runtime_.platform().notifications};
  GMemoryMonitor* monitor = g_memory_monitor_dup_default();
  g_signal_emit_by_name(monitor, "low-memory-warning", G_MEMORY_MONITOR_WARNING_LEVEL_LOW);
  EXPECT_EQ(warningCount_, 0);
  g_signal_emit_by_name(monitor, "low-memory-warning", G_MEMORY_MONITOR_WARNING_LEVEL_CRITICAL);
  EXPECT_EQ(warningCount_, 1);
  g_object_unref(monitor);
}

}  // namespace
}  // namespace tavo::test
