#pragma once

#include <glib.h>

#include <chrono>

namespace tavo::benchmark {

// Watches the main loop between two of its waits: how long it kept everything else from running,
// and how much of the processor its thread used. One at a time.
class LoopWatch {
 public:
  LoopWatch();
  ~LoopWatch();
  LoopWatch(const LoopWatch&) = delete;
  LoopWatch& operator=(const LoopWatch&) = delete;

  // Milliseconds, since it was made.
  [[nodiscard]] double longestTurn() const { return longest_; }
  [[nodiscard]] double processorTime() const;

 private:
  using Clock = std::chrono::steady_clock;

  static int poll(GPollFD* files, guint count, int timeout);
  static LoopWatch* only;

  Clock::time_point turnBegan_ = Clock::now();
  double longest_ = 0;
  double processorAtStart_ = 0;
};

}  // namespace tavo::benchmark
