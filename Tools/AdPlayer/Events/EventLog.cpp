#include "AdPlayer/Events/EventLog.h"

#include <algorithm>
#include <utility>

namespace tavo::adplayer {

EventLog::EventLog(std::shared_ptr<RunLoop> runLoop)
    : runLoop_{std::move(runLoop)}, start_{runLoop_->now()} {}

void EventLog::begin() {
  events_.clear();
  start_ = runLoop_->now();
}

void EventLog::add(std::string kind, std::string text, std::vector<InspectionField> fields) {
  addAt(runLoop_->now(), {{}, std::move(kind), std::move(text), std::move(fields)});
}

void EventLog::addAt(Seconds loopTime, PlayEvent event) {
  if (events_.size() >= mostEvents) return;
  event.time = std::max(loopTime - start_, Seconds{0});
  if (events_.size() == mostEvents - 1) {
    event = {event.time, "step", "Too much happened: nothing more is written down.", {}};
  }
  events_.push_back(std::move(event));
  const PlayEvent& added = events_.back();
  std::erase_if(listeners_, [](const auto& one) { return one.expired(); });
  const auto listeners = listeners_;
  for (const auto& weak : listeners) {
    if (const auto listener = weak.lock()) (*listener)(added);
  }
}

std::shared_ptr<void> EventLog::listen(Listener listener) {
  auto held = std::make_shared<Listener>(std::move(listener));
  listeners_.push_back(held);
  return held;
}

}  // namespace tavo::adplayer
