#include <atomic>
#include <limits>
#include <stdexcept>
#include <thread>

#include "Gtk/Services/GtkRunLoop.h"
#include "Headless/HeadlessRunLoop.h"
#include "Support/HostLoop.h"
#include "Support/Testing.h"

namespace tavo::test {
namespace {

class RunLoopRig {
 public:
  virtual ~RunLoopRig() = default;
  [[nodiscard]] virtual RunLoop& loop() = 0;
  virtual void runUntil(const std::function<bool()>& done) = 0;
};

class HeadlessRunLoopRig : public RunLoopRig {
 public:
  RunLoop& loop() override { return loop_; }
  void runUntil(const std::function<bool()>& done) override {
    loop_.runPending();
    for (int step = 0; step < 20'000 && !done(); ++step) loop_.advance(Seconds{0.001});
  }

 private:
  headless::HeadlessRunLoop loop_;
};

class GtkRunLoopRig : public RunLoopRig {
 public:
  RunLoop& loop() override { return loop_; }
  void runUntil(const std::function<bool()>& done) override { test::runUntil(done); }

 private:
  gtk::GtkRunLoop loop_;
};

struct RigMaker {
  std::string name;
  std::unique_ptr<RunLoopRig> (*make)();
};
template <typename Rig>
std::unique_ptr<RunLoopRig> make() {
  return std::make_unique<Rig>();
}

class RunLoopContract : public testing::TestWithParam<RigMaker> {
 protected:
  std::function<void()> note(std::string text) {
    return [this, text = std::move(text)] { notes_.push_back(text); };
  }
  void runUntilNotes(std::size_t count) {
    rig_->runUntil([this, count] { return notes_.size() >= count; });
  }
  void settle() {
    bool settled = false;
    loop_.post([&] { settled = true; });
    rig_->runUntil([&] { return settled; });
  }

  std::vector<std::string> notes_;
  std::unique_ptr<RunLoopRig> rig_ = GetParam().make();
  RunLoop& loop_ = rig_->loop();
};

TEST_P(RunLoopContract, RunsPostedTasksOnMainInOrderAndNeverAtOnce) {
  loop_.post([&] {
    EXPECT_TRUE(loop_.isMainThread());
    note("first")();
    loop_.post(note("posted by the first"));
  });
  loop_.post(note("second"));
  EXPECT_TRUE(notes_.empty());
  runUntilNotes(3);
  EXPECT_THAT(notes_, ElementsAre("first", "second", "posted by the first"));
}

TEST_P(RunLoopContract, TakesTasksFromEveryThread) {
  constexpr int threads = 4;
  constexpr int tasks = 250;
  std::vector<std::thread> posters;
  std::vector<std::vector<int>> seen(threads);
  for (std::size_t thread = 0; thread < threads; ++thread) {
    posters.emplace_back([&, thread] {
      for (int task = 0; task < tasks; ++task) {
        loop_.post([&, thread, task] { seen[thread].push_back(task); });
      }
    });
  }
  for (auto& poster : posters) poster.join();
  settle();
  for (const auto& order : seen) {
    EXPECT_EQ(order.size(), static_cast<std::size_t>(tasks));
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
  }
}

TEST_P(RunLoopContract, RunsBackgroundTasksOffMain) {
  std::atomic<bool> offMain = false;
  loop_.background([&] {
    offMain = !loop_.isMainThread();
    loop_.post(note("back"));
  });
  runUntilNotes(1);
  EXPECT_TRUE(offMain);
  EXPECT_THAT(notes_, ElementsAre("back"));
}

TEST_P(RunLoopContract, FiresOneShotTimersByTheirDelay) {
  const Seconds start = loop_.now();
  const Timer late = loop_.after(Seconds{0.05}, note("late"));
  const Timer soon = loop_.after(Seconds{0.02}, note("soon"));
  EXPECT_TRUE(late.isValid());
  runUntilNotes(2);
  EXPECT_THAT(notes_, ElementsAre("soon", "late"));
  EXPECT_GE((loop_.now() - start).count(), 0.05);
  EXPECT_FALSE(late.isValid());
}

TEST_P(RunLoopContract, FiresAtOnceButNotInsideForDelaysThatMakeNoSense) {
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  std::vector<Timer> timers;
  for (const double delay : {0.0, -5.0, nan}) {
    timers.push_back(loop_.after(Seconds{delay}, note("fired")));
  }
  EXPECT_TRUE(notes_.empty());
  runUntilNotes(3);
  EXPECT_EQ(notes_.size(), 3U);
}

TEST_P(RunLoopContract, TakesADelayBeyondAllTimeForNever) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  const Timer never = loop_.after(Seconds{infinity}, note("never"));
  const Timer soon = loop_.after(Seconds{0.01}, note("soon"));
  runUntilNotes(1);
  EXPECT_THAT(notes_, ElementsAre("soon"));
  EXPECT_TRUE(never.isValid());
}

TEST_P(RunLoopContract, StopsATimerWithItsHolder) {
  Timer replaced = loop_.after(Seconds{0}, note("replaced"));
  replaced = loop_.after(Seconds{0.02}, note("kept"));
  Timer invalidated = loop_.after(Seconds{0}, note("invalidated"));
  invalidated.invalidate();
  { const Timer dropped = loop_.after(Seconds{0}, note("dropped")); }
  Timer due;
  const Timer stopper = loop_.after(Seconds{0}, [&] { due.invalidate(); });
  due = loop_.after(Seconds{0}, note("due already when it was stopped"));
  runUntilNotes(1);
  EXPECT_THAT(notes_, ElementsAre("kept"));
  EXPECT_FALSE(due.isValid());
}

TEST_P(RunLoopContract, RepeatsUntilATickDropsItsOwnTimer) {
  Timer timer;
  timer = loop_.every(Seconds{0.01}, [&] {
    note("tick")();
    EXPECT_TRUE(timer.isValid());
    if (notes_.size() == 3) timer.invalidate();
  });
  const Timer end = loop_.after(Seconds{0.2}, note("end"));
  runUntilNotes(4);
  EXPECT_THAT(notes_, ElementsAre("tick", "tick", "tick", "end"));
}

TEST_P(RunLoopContract, BoundsThePeriodFromBelow) {
  const Seconds start = loop_.now();
  const Timer timer = loop_.every(Seconds{0}, note("tick"));
  runUntilNotes(5);
  EXPECT_GE((loop_.now() - start).count(), 0.0049);
}

TEST_P(RunLoopContract, LetsATaskReplaceTheTimerThatRunsIt) {
  Timer timer;
  timer = loop_.after(Seconds{0}, [&] {
    timer = loop_.after(Seconds{0}, note("second"));
    note("first")();
  });
  runUntilNotes(2);
  EXPECT_THAT(notes_, ElementsAre("first", "second"));
}

INSTANTIATE_TEST_SUITE_P(Platforms, RunLoopContract,
                         testing::Values(RigMaker{"Headless", make<HeadlessRunLoopRig>},
                                         RigMaker{"Gtk", make<GtkRunLoopRig>}),
                         [](const auto& instance) { return instance.param.name; });

// A dialog in a completion runs the loop again; what waits behind it must not wait for its end.
TEST(GtkRunLoop, RunsTheRestOfItsTasksInsideANestedLoop) {
  gtk::GtkRunLoop loop;
  std::vector<std::string> notes;
  loop.post([&] {
    while (notes.empty()) g_main_context_iteration(nullptr, TRUE);
    notes.emplace_back("outer");
  });
  loop.post([&] { notes.emplace_back("inner"); });
  while (notes.size() < 2) g_main_context_iteration(nullptr, TRUE);
  EXPECT_THAT(notes, ElementsAre("inner", "outer"));
}

// The loop is a C library's, which no exception may cross: one would end the host.
TEST(GtkRunLoop, OutlivesTasksThatThrow) {
  gtk::GtkRunLoop loop;
  std::atomic<int> thrown = 0;
  const auto throws = [&thrown] {
    ++thrown;
    throw std::runtime_error{"from a task"};
  };
  loop.post(throws);
  loop.post([&thrown] {
    ++thrown;
    throw 1;
  });
  loop.background(throws);
  const Timer once = loop.after(Seconds{0}, throws);
  const Timer often = loop.every(Seconds{0.001}, throws);
  while (thrown < 8) g_main_context_iteration(nullptr, TRUE);
  EXPECT_FALSE(once.isValid());
  EXPECT_TRUE(often.isValid());
}

TEST(GtkRunLoop, SkipsTheTicksThatABusyLoopMissed) {
  gtk::GtkRunLoop loop;
  int ticks = 0;
  const Timer timer = loop.every(Seconds{0.01}, [&] { ++ticks; });
  g_usleep(100'000);  // the busy loop
  const Timer end = loop.after(Seconds{0}, [&] {
    EXPECT_LE(ticks, 1);
    ticks = 100;
  });
  while (ticks < 100) g_main_context_iteration(nullptr, TRUE);
}

TEST(GtkRunLoop, DropsWhatHasNotBegunWhenItGoes) {
  const auto held = std::make_shared<int>(0);
  std::atomic<int> ran = 0;
  {
    gtk::GtkRunLoop loop;
    loop.post([held] { FAIL(); });
    loop.background([held, &ran] { ++ran; });
  }
  EXPECT_EQ(held.use_count(), 1);
  EXPECT_LE(ran, 1);
  while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
  }
}

}  // namespace
}  // namespace tavo::test
