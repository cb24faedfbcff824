#include "Gtk/Web/ProcessorAlarm.h"

#include <csignal>
#include <map>
#include <mutex>
#include <utility>

#include "Gtk/Guarded.h"

namespace tavo::gtk {

namespace {

// The system's thread may come when the alarm is gone already, so it brings a number.
struct Alarms {
  std::mutex mutex;
  std::map<int, std::function<void()>> all;
  int last = 0;
};

// Never destroyed: a thread of the system's may come at the end of the process.
Alarms& alarms() {
  static auto* const all = new Alarms;
  return *all;
}

void ring(sigval number) {
  std::function<void()> rings;
  {
    auto& [mutex, all, last] = alarms();
    const std::scoped_lock lock{mutex};
    const auto found = all.find(number.sival_int);
    if (found != all.end()) rings = std::exchange(found->second, {});
  }
  if (rings) guarded(rings);
}

timespec timeOf(Seconds length) {
  const auto whole = static_cast<time_t>(length.count());
  return {whole, static_cast<long>((length.count() - static_cast<double>(whole)) * 1e9)};
}

}  // namespace

ProcessorAlarm::ProcessorAlarm(int process, Seconds after, std::function<void()> rings) {
  clockid_t clock{};
  if (clock_getcpuclockid(process, &clock) != 0) return;
  {
    auto& [mutex, all, last] = alarms();
    const std::scoped_lock lock{mutex};
    number_ = ++last;
    all.emplace(number_, std::move(rings));
  }
  sigevent event{};
  event.sigev_notify = SIGEV_THREAD;
  event.sigev_notify_function = ring;
  event.sigev_value.sival_int = number_;
  isMade_ = timer_create(clock, &event, &timer_) == 0;
  const itimerspec due{{}, timeOf(after)};
  isSet_ = isMade_ && timer_settime(timer_, 0, &due, nullptr) == 0;
}

ProcessorAlarm::~ProcessorAlarm() {
  if (isMade_) timer_delete(timer_);
  auto& [mutex, all, last] = alarms();
  const std::scoped_lock lock{mutex};
  all.erase(number_);
}

}  // namespace tavo::gtk
