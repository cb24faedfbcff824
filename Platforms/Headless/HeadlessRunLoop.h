#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>

#include "Services/RunLoop.h"

namespace tavo::headless {

// A run loop whose clock stands still until a test moves it. Background tasks run one after the
// other between two main tasks, so that a test always sees the same order.
class HeadlessRunLoop : public RunLoop {
 public:
  HeadlessRunLoop();
  ~HeadlessRunLoop() override;

  void post(std::function<void()> task) override;
  [[nodiscard]] Timer after(Seconds delay, std::function<void()> task) override;
  [[nodiscard]] Timer every(Seconds period, std::function<void()> tick) override;
  void background(std::function<void()> task) override;
  [[nodiscard]] Seconds now() const override { return now_; }
  [[nodiscard]] Date today() const override;
  [[nodiscard]] bool isMainThread() const override { return !inBackground_; }

  // Runs what is posted or due now, and what that posts in turn, until nothing is left. A chain
  // that never ends is cut after a million tasks.
  void runPending();

  // Moves the clock forward, stopping at every timer on the way.
  void advance(Seconds duration);

  // What `today` answers at clock zero.
  void setEpoch(Date epoch) { epoch_ = epoch; }
  // Somebody sets the calendar's clock; or the system was asleep, and its other clock with it.
  void jumpCalendar(std::chrono::hours by) { epoch_ += by; }

  [[nodiscard]] std::size_t activeTimers() const;

 private:
  struct Entry;
  class EntryHandle;
  struct Task {
    bool background = false;
    std::function<void()> run;
  };

  [[nodiscard]] Timer schedule(Seconds delay, Seconds period, std::function<void()> task);
  // The earliest timer that is due at `time` or before; null when there is none.
  [[nodiscard]] std::shared_ptr<Entry> nextDue(Seconds time);
  void fire(const std::shared_ptr<Entry>& entry);
  bool runOneTask();

  mutable std::mutex mutex_;
  std::deque<Task> tasks_;
  std::vector<std::weak_ptr<Entry>> timers_;
  std::uint64_t nextOrder_ = 0;
  Seconds now_{0};
  Date epoch_{};
  bool inBackground_ = false;
};

}  // namespace tavo::headless
