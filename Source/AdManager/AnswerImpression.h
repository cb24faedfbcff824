#pragma once

#include <memory>

#include <tavo/Url.h>
#include <tavo/XAdSlotConfiguration.h>

#include "Tracker/XAdTracker.h"

namespace tavo {

// The impression of one answer. It belongs to the answer and to whoever shows it, not to the slot,
// which may have asked for the next ad meanwhile. It counts once at most. Main thread only.
class AnswerImpression {
 public:
  // `url` is empty when the server wants no impression told.
  AnswerImpression(std::shared_ptr<XAdTracker> tracker, Url url,
                   std::shared_ptr<XAdSlotConfiguration> slotConfiguration);

  void processImpressionTracking();

 private:
  const std::shared_ptr<XAdTracker> tracker_;
  const Url url_;
  const std::shared_ptr<XAdSlotConfiguration> slotConfiguration_;
  bool isCounted_ = false;
};

}  // namespace tavo
