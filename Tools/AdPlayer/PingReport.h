#pragma once

#include <memory>

#include <tavo/TrackingLedger.h>

#include "AdPlayer/EventReport.h"

namespace tavo::adplayer {

// Writes into the report what became of each tracking ping, as the library's own book has it: sent
// and answered, failed, or kept back. Needs a current runtime.
class PingReport {
 public:
  explicit PingReport(EventReport& report);

 private:
  std::shared_ptr<const TrackingLedgerObserver> events_;
};

}  // namespace tavo::adplayer
