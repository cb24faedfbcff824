#pragma once

#include <memory>

#include <tavo/Inspection.h>
#include <tavo/TrackingLedger.h>

#include "AdPlayer/Events/EventLog.h"
#include "Services/RunLoop.h"

namespace tavo::adplayer {

// Writes what the current runtime shows into a log: the inspection, the ends of tracking pings, and
// how long the program's own loop stood still. Made in a runtime, before anything is loaded.
class Watchers {
 public:
  static constexpr Seconds longestTurn{0.016};  // one picture of sixty a second

  Watchers(EventLog& log, std::shared_ptr<RunLoop> runLoop);

 private:
  void lookAtLoop();

  EventLog& log_;
  std::shared_ptr<RunLoop> runLoop_;
  std::shared_ptr<const InspectionObserver> inspection_;
  std::shared_ptr<const TrackingLedgerObserver> pings_;
  Seconds lastLook_;
  Timer loopTimer_;
};

}  // namespace tavo::adplayer
