#include "Gtk/Web/ProcessWatch.h"

#include <algorithm>
#include <csignal>

#include <tavo/WebView.h>

namespace tavo::gtk {
namespace {

constexpr Seconds busyPeriod{1};    // while a page loads, and
constexpr Seconds loadingTime{10};  // so long after it has begun to
constexpr Seconds calmPeriod{2};
constexpr Seconds reasonLife{5};  // until the engine has told of the end
// A process that uses less than this part of the processor between two looks is calm, and enough of
// them let the watch sleep. What wakes it is little beside every budget, and more than a still page
// uses in minutes.
constexpr double calmShare = 0.02;
constexpr int calmLooksToSleep = 2;
constexpr Seconds wakingTime{0.1};

std::string inSeconds(Seconds time) {
  return std::to_string(static_cast<int>(time.count())) + " seconds";
}

}  // namespace

ProcessWatch::ProcessWatch(std::shared_ptr<RunLoop> runLoop, std::shared_ptr<Log> log,
                           const Limits& limits, std::shared_ptr<Inspection> inspection)
    : runLoop_{std::move(runLoop)},
      log_{std::move(log)},
      inspection_{std::move(inspection)},
      limits_{limits} {}

ProcessWatch::~ProcessWatch() { *self_ = nullptr; }

std::shared_ptr<void> ProcessWatch::pageBegins(PageKind kind, std::function<void()> ping) {
  if (kind == PageKind::browser) ++browsers_;
  ++pages_;
  pings_.emplace(++lastPage_, std::move(ping));
  wake();
  return {this, [kind, page = lastPage_](ProcessWatch* watch) { watch->pageEnds(kind, page); }};
}

void ProcessWatch::pageEnds(PageKind kind, int page) {
  if (kind == PageKind::browser) --browsers_;
  pings_.erase(page);
  if (--pages_ > 0) return;
  timer_.invalidate();
  heartbeat_.invalidate();
  alarms_.clear();
  // Nobody looks after what is paused any more, and the next page would wait in it.
  for (const auto& [id, use] : uses_) {
    if (use.pausedAt) kill(id, SIGKILL);
  }
  uses_.clear();
}

void ProcessWatch::pageLoads() {
  const bool wasCalm = runLoop_->now() - lastLoad_ > loadingTime;
  lastLoad_ = runLoop_->now();
  startsAnew_ = true;
  wake();
  if (wasCalm && pages_ > 0) lookLater();
}

void ProcessWatch::wake() {
  calmLooks_ = 0;
  asleep_ = false;
  alarms_.clear();
  if (pages_ == 0) return;
  if (!heartbeat_.isValid()) {
    heartbeat_ = runLoop_->every(limits_.webProcessWatch, [this] { pingAll(); });
  }
  if (!timer_.isValid() && !isLooking_) lookLater();
}

// A page whose answer is another's end is not asked any more.
void ProcessWatch::pingAll() {
  const auto pings = pings_;
  for (const auto& [page, ping] : pings) {
    if (pings_.contains(page)) ping();
  }
}

// What is paused for its hunger goes on: the person wants it.
void ProcessWatch::touched() {
  for (auto& [id, use] : uses_) {
    if (use.pausedAt) kill(id, SIGCONT);
    use = {};
  }
  startsAnew_ = true;
}

std::optional<Error> ProcessWatch::reason() const {
  const bool isRecent = blamed_ && runLoop_->now() - blamed_->first < reasonLife;
  return isRecent ? std::optional{blamed_->second} : std::nullopt;
}

void ProcessWatch::lookLater() {
  const bool isBusy = runLoop_->now() - lastLoad_ <= loadingTime;
  timer_ = runLoop_->after(isBusy ? busyPeriod : calmPeriod, [this] { look(); });
}

// The system's files about some processes take a millisecond and more to read.
void ProcessWatch::look() {
  if (std::exchange(isLooking_, true)) return;
  runLoop_->background([weak = std::weak_ptr{runLoop_}, self = self_] {
    const auto processes = webProcessesOfThisProgram();
    const auto runLoop = weak.lock();
    if (!runLoop) return;
    runLoop->post([self, processes] {
      if (*self != nullptr) (*self)->looked(processes);
    });
  });
}

bool ProcessWatch::isCalm(const std::vector<WebProcess>& processes) {
  const auto before = std::exchange(processor_, {});
  const Seconds most = busyPeriod * calmShare;
  bool calm = true;
  for (const auto& process : processes) {
    processor_[process.id] = process.processor;
    const auto known = before.find(process.id);
    calm = calm && known != before.end() && process.processor - known->second <= most &&
           !uses_[process.id].pausedAt;
  }
  return calm;
}

// Not where the system does not tell.
void ProcessWatch::sleep(const std::vector<WebProcess>& processes) {
  for (const auto& process : processes) {
    auto alarm =
        std::make_unique<ProcessorAlarm>(process.id, wakingTime, [loop = runLoop_, self = self_] {
          loop->post([self] {
            if (*self != nullptr) (*self)->wake();
          });
        });
    if (!alarm->isSet()) return alarms_.clear();
    alarms_.push_back(std::move(alarm));
  }
  heartbeat_.invalidate();
  asleep_ = true;
}

void ProcessWatch::looked(const std::vector<WebProcess>& processes) {
  isLooking_ = false;
  if (pages_ == 0) return;
  std::erase_if(uses_, [&](const auto& entry) {
    return std::none_of(processes.begin(), processes.end(),
                        [&](const auto& process) { return process.id == entry.first; });
  });
  for (const auto& process : processes) {
    const bool isKnown = uses_.contains(process.id);
    Use& use = uses_[process.id];
    if (startsAnew_ && isKnown) use.start = process.processor;
    follow(process, use);
  }
  startsAnew_ = false;
  calmLooks_ = isCalm(processes) ? calmLooks_ + 1 : 0;
  if (calmLooks_ >= calmLooksToSleep) sleep(processes);
  if (!asleep_) lookLater();
}

void ProcessWatch::follow(const WebProcess& process, Use& use) {
  const Seconds now = runLoop_->now();
  if (process.megabytes > static_cast<double>(limits_.webProcessMegabytes)) {
    return end(process.id, {std::string{webErrorDomain}, webProcessGoneError,
                            "The page used too much memory."});
  }
  if (use.pausedAt) {
    if (now - *use.pausedAt >= limits_.webProcessPing) end(process.id, *use.pausedFor);
    return;
  }
  if (browsers_ > 0) {
    use = {.start = process.processor};
    return;
  }
  use.looks.emplace_back(now, process.processor);
  while (use.looks.size() > 2 && now - use.looks[1].first >= limits_.pageProcessorWindow) {
    use.looks.pop_front();
  }
  if (const auto error = judge(process, use)) pause(process.id, use, *error);
}

std::optional<Error> ProcessWatch::judge(const WebProcess& process, const Use& use) const {
  const std::string domain{webErrorDomain};
  if (process.processor - use.looks.front().second > limits_.pageProcessorTime) {
    return Error{domain, webPageProcessorPeakError,
                 "The page used more than " + inSeconds(limits_.pageProcessorTime) +
                     " of the processor in " + inSeconds(limits_.pageProcessorWindow) +
                     ", and nobody had touched it."};
  }
  if (limits_.pageProcessorTotal > Seconds{0} &&
      process.processor - use.start > limits_.pageProcessorTotal) {
    return Error{domain, webPageProcessorTotalError,
                 "The page used more than " + inSeconds(limits_.pageProcessorTotal) +
                     " of the processor in all, and nobody had touched it."};
  }
  return std::nullopt;
}

void ProcessWatch::pause(int id, Use& use, Error error) {
  use.pausedAt = runLoop_->now();
  use.pausedFor = error;
  kill(id, SIGSTOP);
  note("Paused, and to be ended: " + error.description);
  blame(std::move(error));
}

void ProcessWatch::end(int id, Error error) {
  note("Ended: " + error.description);
  blame(std::move(error));
  kill(id, SIGKILL);
}

void ProcessWatch::note(const std::string& what) const {
  log_->write(LogLevel::warning, what);
  if (inspection_) inspection_->tell(InspectionKind::pause, nullptr, what, {{"why", what}});
}

void ProcessWatch::blame(Error error) { blamed_ = {runLoop_->now(), std::move(error)}; }

}  // namespace tavo::gtk
