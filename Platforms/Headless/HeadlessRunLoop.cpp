#include "Headless/HeadlessRunLoop.h"

#include <algorithm>
#include <vector>

namespace tavo::headless {

struct HeadlessRunLoop::Entry {
  Seconds due{0};
  Seconds period{0};  // 0: one shot
  std::uint64_t order = 0;
  bool running = true;
  std::function<void()> task;
};

class HeadlessRunLoop::EntryHandle : public Timer::Handle {
 public:
  explicit EntryHandle(std::shared_ptr<Entry> entry) : entry_{std::move(entry)} {}
  ~EntryHandle() override { entry_->running = false; }
  [[nodiscard]] bool isRunning() const override { return entry_->running; }

 private:
  std::shared_ptr<Entry> entry_;
};

HeadlessRunLoop::HeadlessRunLoop() = default;
HeadlessRunLoop::~HeadlessRunLoop() = default;

void HeadlessRunLoop::post(std::function<void()> task) {
  const std::scoped_lock lock{mutex_};
  tasks_.push_back({false, std::move(task)});
}

void HeadlessRunLoop::background(std::function<void()> task) {
  const std::scoped_lock lock{mutex_};
  tasks_.push_back({true, std::move(task)});
}

Timer HeadlessRunLoop::after(Seconds delay, std::function<void()> task) {
  return schedule(std::max(delay, Seconds{0}), Seconds{0}, std::move(task));
}

Timer HeadlessRunLoop::every(Seconds period, std::function<void()> tick) {
  const Seconds shortest{0.001};
  const Seconds bounded = std::max(period, shortest);
  return schedule(bounded, bounded, std::move(tick));
}

Timer HeadlessRunLoop::schedule(Seconds delay, Seconds period, std::function<void()> task) {
  auto entry =
      std::make_shared<Entry>(Entry{now_ + delay, period, nextOrder_++, true, std::move(task)});
  timers_.push_back(entry);
  return Timer{std::make_unique<EntryHandle>(entry)};
}

Date HeadlessRunLoop::today() const {
  return epoch_ + std::chrono::duration_cast<Date::duration>(now_);
}

std::shared_ptr<HeadlessRunLoop::Entry> HeadlessRunLoop::nextDue(Seconds time) {
  std::erase_if(timers_, [](const auto& weak) {
    const auto entry = weak.lock();
    return !entry || !entry->running;
  });
  std::shared_ptr<Entry> next;
  for (const auto& weak : timers_) {
    const auto entry = weak.lock();
    if (entry->due > time) continue;
    if (!next || entry->due < next->due ||
        (entry->due == next->due && entry->order < next->order)) {
      next = entry;
    }
  }
  return next;
}

void HeadlessRunLoop::fire(const std::shared_ptr<Entry>& entry) {
  if (entry->period > Seconds{0}) {
    entry->due += entry->period;
    entry->order = nextOrder_++;
  } else {
    entry->running = false;
  }
  const auto task = entry->task;  // the task may drop its timer
  task();
}

bool HeadlessRunLoop::runOneTask() {
  Task task;
  {
    const std::scoped_lock lock{mutex_};
    if (tasks_.empty()) return false;
    task = std::move(tasks_.front());
    tasks_.pop_front();
  }
  inBackground_ = task.background;
  task.run();
  inBackground_ = false;
  return true;
}

void HeadlessRunLoop::runPending() {
  constexpr int most = 1'000'000;
  for (int count = 0; count < most; ++count) {
    if (runOneTask()) continue;
    const auto entry = nextDue(now_);
    if (!entry) return;
    fire(entry);
  }
}

void HeadlessRunLoop::advance(Seconds duration) {
  const Seconds end = now_ + duration;
  runPending();
  while (const auto entry = nextDue(end)) {
    now_ = std::max(now_, entry->due);
    fire(entry);
    runPending();
  }
  now_ = end;
}

std::size_t HeadlessRunLoop::activeTimers() const {
  return static_cast<std::size_t>(
      std::count_if(timers_.begin(), timers_.end(), [](const auto& weak) {
        const auto entry = weak.lock();
        return entry && entry->running;
      }));
}

}  // namespace tavo::headless
