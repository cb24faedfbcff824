#pragma once

#include <memory>
#include <string>

#include <tavo/Url.h>
#include <tavo/XAdSlotConfiguration.h>

#include "Runtime/Environment.h"

namespace tavo {

// Fires tracking URLs and forgets them; TrackingLedger remembers what came of each.
class XTrackingRequest {
 public:
  // Sends one GET for `url`, at once or as soon as the pings before it allow. `context` names what
  // is tracked, in the log and in the ledger. Nothing is sent without a connection, without a URL,
  // or for the text "(null)". Nothing is retried and no result reaches the caller; the cookies of
  // the answer are stored. Main thread; the answer is dealt with on another.
  static void sendAsynchronousRequest(
      Environment& environment, const Url& url, const std::string& context,
      const std::shared_ptr<XAdSlotConfiguration>& slotConfiguration);
};

}  // namespace tavo
