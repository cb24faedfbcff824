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

std::shared_ptr<void> ProcessWatch::pageBegins(PageKind kind) {
  if (kind == PageKind::browser) ++browsers_;
  if (pages_++ == 0) lookLater();
  return {this, [kind](ProcessWatch* watch) { watch->pageEnds(kind); }};
}

void ProcessWatch::pageEnds(PageKind kind) {
  if (kind == PageKind::browser) --browsers_;
  if (--pages_ > 0) return;
  timer_.invalidate();
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
  if (wasCalm && pages_ > 0) lookLater();
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
  timer_ = runLoop_->after(isBusy ? busyPeriod : calmPeriod, [this] {
    look();
    lookLater();
  });
}

void ProcessWatch::look() {
  const auto processes = webProcessesOfThisProgram();
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
