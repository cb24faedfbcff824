#include "AdPlayer/PingReport.h"

#include <cmath>
#include <string>

namespace tavo::adplayer {

namespace {

// Empty for the moments that a ping only passes.
std::string outcomeOf(const PingRecord& ping) {
  const auto milliseconds = std::to_string(std::lround(ping.took.count() * 1000)) + " ms";
  switch (ping.state) {
    case PingState::due:
    case PingState::sent:
      return {};
    case PingState::answered:
      return "answered " + std::to_string(ping.status) + " after " + milliseconds;
    case PingState::failed:
      return "failed after " + milliseconds + " (" +
             (ping.error ? ping.error->description : std::string{"no reason"}) + ")";
    case PingState::suppressed:
      return "kept back, the network is away";
    case PingState::dropped:
      return "dropped, too many were waiting";
  }
  return {};
}

}  // namespace

PingReport::PingReport(EventReport& report)
    : events_{std::make_shared<TrackingLedgerObserver>(
          TrackingLedgerObserver{.pingDidChange = [&report](const PingRecord& ping) {
            const std::string outcome = outcomeOf(ping);
            if (!outcome.empty()) report.add("ping", outcome + ": " + ping.url.text());
          }})} {
  TrackingLedger::sharedInstance().observer.set(events_);
}

}  // namespace tavo::adplayer
