#include "AdPlayer/Events/Watchers.h"

#include <cmath>
#include <cstdio>
#include <string>
#include <utility>

namespace tavo::adplayer {

namespace {

constexpr Seconds loopTick{0.008};

// Empty for the moments that a ping only passes.
std::string outcomeOf(const PingRecord& ping) {
  switch (ping.state) {
    case PingState::due:
    case PingState::sent:
      return {};
    case PingState::answered:
      return "answered " + std::to_string(ping.status);
    case PingState::failed:
      return "failed: " + (ping.error ? ping.error->description : std::string{"no reason"});
    case PingState::suppressed:
      return "kept back, the network is away";
    case PingState::dropped:
      return "dropped, too many were waiting";
  }
  return {};
}

std::string secondsText(Seconds time) {
  char text[32];
  std::snprintf(text, sizeof text, "%.3f", time.count());
  return text;
}

// An error without a text needs a word about why.
std::string wordsFor(const InspectionEvent& event) {
  if (event.kind != InspectionKind::scriptError || event.text != "Script error.") return event.text;
  return "Script error. The page has no address, and the engine keeps the text back: give pages an "
         "address (--page-address) to read it.";
}

void addPing(EventLog& log, const PingRecord& ping) {
  const std::string outcome = outcomeOf(ping);
  if (outcome.empty()) return;
  log.add("ping", outcome + ": " + ping.url.text(),
          {{"url", ping.url.text()},
           {"context", ping.context},
           {"outcome", outcome},
           {"status", std::to_string(ping.status)},
           {"seconds", secondsText(ping.took)}});
}

}  // namespace

Watchers::Watchers(EventLog& log, std::shared_ptr<RunLoop> runLoop)
    : log_{log},
      runLoop_{std::move(runLoop)},
      inspection_{std::make_shared<InspectionObserver>(InspectionObserver{
          .inspectionDidSee =
              [&log](const InspectionEvent& event) {
                log.addAt(event.time,
                          {{}, std::string{nameOf(event.kind)}, wordsFor(event), event.fields});
              }})},
      pings_{std::make_shared<TrackingLedgerObserver>(TrackingLedgerObserver{
          .pingDidChange = [&log](const PingRecord& ping) { addPing(log, ping); }})},
      lastLook_{runLoop_->now()},
      loopTimer_{runLoop_->every(loopTick, [this] { lookAtLoop(); })} {
  Inspection::sharedInstance().observer.set(inspection_);
  TrackingLedger::sharedInstance().observer.set(pings_);
}

void Watchers::lookAtLoop() {
  const Seconds now = runLoop_->now();
  const Seconds stood = now - std::exchange(lastLook_, now) - loopTick;
  if (stood <= longestTurn) return;
  const auto milliseconds = std::to_string(std::lround(stood.count() * 1000));
  log_.add("stall", "the loop stood still for " + milliseconds + " ms",
           {{"milliseconds", milliseconds}});
}

}  // namespace tavo::adplayer
