// What the system says about the whole session, and what the application makes of it.

#include <tavo/Limits.h>

#include "Gtk/Services/GtkApplication.h"
#include "Support/FakeLogind.h"
#include "Support/GtkLoopTest.h"
#include "Support/PrivateBus.h"

namespace tavo::test {
namespace {

constexpr const char* logindSession = "org.freedesktop.login1.Session";

class SystemEventsTest : public GtkLoopTest {
 protected:
  // One for all tests: GIO gives the same end of a bus to everybody as long as anybody has it.
  static void SetUpTestSuite() {
    bus_ = std::make_unique<PrivateBus>();
    logind_ = std::make_unique<FakeLogind>(*bus_);
  }
  static void TearDownTestSuite() {
    logind_.reset();
    bus_.reset();
  }

  SystemEventsTest() {
    for (const auto name : {notifications::screenLocked, notifications::willEnterForeground,
                            notifications::didReceiveMemoryWarning}) {
      subscriptions_.push_back(center_->subscribe(
          name, [this](const Notification& posted) { posted_.push_back(posted.name); }));
    }
  }

  [[nodiscard]] std::unique_ptr<gtk::GtkApplication> makeApplication() const {
    return std::make_unique<gtk::GtkApplication>(center_, Limits{}.widgetSide);
  }

  // Says it until it is heard: subscriptions are made beside the loop.
  void hear(const std::function<void()>& say, std::size_t count) {
    const Timer again = runLoop_->every(Seconds{0.02}, say);
    runUntil([&] { return posted_.size() >= count; });
    ASSERT_GE(posted_.size(), count);
  }

  inline static std::unique_ptr<PrivateBus> bus_;
  inline static std::unique_ptr<FakeLogind> logind_;

  const std::shared_ptr<NotificationCenter> center_ = std::make_shared<NotificationCenter>();
  std::vector<Subscription> subscriptions_;
  std::vector<std::string> posted_;
};

struct Source {
  const char* interface;
  const char* lock;
  const char* lockParameters;
  const char* unlock;
  const char* unlockParameters;
};

TEST_F(SystemEventsTest, ALockAndItsEndArriveFromEverySource) {
  const Source sources[] = {
      {logindSession, "Lock", "()", "Unlock", "()"},
      {"org.freedesktop.DBus.Properties", "PropertiesChanged",
       "('org.freedesktop.login1.Session', {'LockedHint': <true>}, @as [])", "PropertiesChanged",
       "('org.freedesktop.login1.Session', {'LockedHint': <false>}, @as [])"},
      {"org.freedesktop.ScreenSaver", "ActiveChanged", "(true,)", "ActiveChanged", "(false,)"},
      {"org.gnome.ScreenSaver", "ActiveChanged", "(true,)", "ActiveChanged", "(false,)"},
  };
  const auto application = makeApplication();
  for (const auto& source : sources) {
    SCOPED_TRACE(source.interface);
    posted_.clear();
    const auto say = [&](const char* signal, const char* parameters) {
      bus_->emit(source.interface, signal, g_variant_new_parsed(parameters),
                 FakeLogind::sessionPath);
    };
    hear([&] { say(source.lock, source.lockParameters); }, 1);
    hear([&] { say(source.unlock, source.unlockParameters); }, 2);
    EXPECT_THAT(posted_,
                ElementsAre(notifications::screenLocked, notifications::willEnterForeground));
  }
}

TEST_F(SystemEventsTest, OnlyTheLockOfThisSessionCounts) {
  const auto application = makeApplication();
  const auto say = [&](const char* interface, const char* signal, const char* parameters,
                       const char* path) {
    bus_->emit(interface, signal, g_variant_new_parsed(parameters), path);
  };
  hear([&] { say(logindSession, "Lock", "()", FakeLogind::sessionPath); }, 1);
  hear([&] { say(logindSession, "Unlock", "()", FakeLogind::sessionPath); }, 2);
  posted_.clear();

  say(logindSession, "Lock", "()", "/org/freedesktop/login1/session/other");
  say(logindSession, "Unlock", "()", FakeLogind::sessionPath);
  say("org.gnome.ScreenSaver", "ActiveChanged", "('x',)", "/");
  bus_->waitForSignals();
  settle();
  EXPECT_THAT(posted_, IsEmpty());
}

TEST_F(SystemEventsTest, OnlyRealShortageOfMemoryIsAWarning) {
  const auto application = makeApplication();
  const auto monitor = gtk::GPtr<GMemoryMonitor>::adopt(g_memory_monitor_dup_default());
  g_signal_emit_by_name(monitor.get(), "low-memory-warning", G_MEMORY_MONITOR_WARNING_LEVEL_LOW);
  EXPECT_THAT(posted_, IsEmpty());
  g_signal_emit_by_name(monitor.get(), "low-memory-warning",
                        G_MEMORY_MONITOR_WARNING_LEVEL_CRITICAL);
  EXPECT_THAT(posted_, ElementsAre(notifications::didReceiveMemoryWarning));
}

}  // namespace
}  // namespace tavo::test
