#include "AdManager/AnswerImpression.h"

#include <utility>

#include "ErrorHandler/OperationLog.h"

namespace tavo {

AnswerImpression::AnswerImpression(std::shared_ptr<XAdTracker> tracker, Url url,
                                   std::shared_ptr<XAdSlotConfiguration> slotConfiguration)
    : tracker_{std::move(tracker)},
      url_{std::move(url)},
      slotConfiguration_{std::move(slotConfiguration)} {}

void AnswerImpression::processImpressionTracking() {
  const OperationLog log{"-[XAdManager processImpressionTracking:]"};
  if (url_.empty() || std::exchange(isCounted_, true)) return;
  tracker_->impressionURL = url_;
  tracker_->impressionURLs = {url_};
  tracker_->slotConfiguration = slotConfiguration_;
  tracker_->trackImpressions();
}

}  // namespace tavo
