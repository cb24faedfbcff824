#include "LoopWatch.h"

#include <time.h>

#include <algorithm>

namespace tavo::benchmark {

namespace {

double usedByThisThread() {
  timespec used{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
  return static_cast<double>(used.tv_sec) * 1e3 + static_cast<double>(used.tv_nsec) / 1e6;
}

}  // namespace

LoopWatch* LoopWatch::only = nullptr;

LoopWatch::LoopWatch() : processorAtStart_{usedByThisThread()} {
  only = this;
  g_main_context_set_poll_func(nullptr, poll);
}

LoopWatch::~LoopWatch() {
  g_main_context_set_poll_func(nullptr, nullptr);
  only = nullptr;
}

double LoopWatch::processorTime() const { return usedByThisThread() - processorAtStart_; }

int LoopWatch::poll(GPollFD* files, guint count, int timeout) {
  const std::chrono::duration<double, std::milli> turn = Clock::now() - only->turnBegan_;
  only->longest_ = std::max(only->longest_, turn.count());
  const int ready = g_poll(files, count, timeout);
  only->turnBegan_ = Clock::now();
  return ready;
}

}  // namespace tavo::benchmark
