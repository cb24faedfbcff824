#include "AdController/ResponseParser/StandardsVast/VastBreak.h"

#include <algorithm>
#include <utility>

namespace tavo {

VastBreak::VastBreak(const VastDocument& document, VastTrail trail, Rules rules)
    : trail_{std::move(trail)}, rules_{rules} {
  for (const auto& ad : document.ads) (ad->sequence ? pod_ : alone_).push_back(ad);
  std::stable_sort(pod_.begin(), pod_.end(), [](const auto& left, const auto& right) {
    return *left->sequence < *right->sequence;
  });
  if (rules_.multipleAds) return;
  // One ad is allowed. A server that numbers its only one means that one.
  if (alone_.empty() && !pod_.empty()) alone_.push_back(pod_.front());
  alone_.resize(std::min<std::size_t>(alone_.size(), 1));
  pod_.clear();
}

std::shared_ptr<const VastAd> VastBreak::takeAlone() {
  return nextAlone_ < alone_.size() ? alone_[nextAlone_++] : nullptr;
}

std::shared_ptr<const VastAd> VastBreak::take() {
  if (pod_.empty()) return current_ = over_ ? nullptr : takeAlone();
  current_ = std::exchange(replaces_, false) ? takeAlone() : nullptr;
  if (!current_ && nextOfPod_ < pod_.size()) current_ = pod_[nextOfPod_++];
  return current_;
}

// A wrapper may forbid that another ad takes the place of its own.
void VastBreak::settle(bool shown) {
  shown_ = shown_ || shown;
  const bool mayReplace =
      !current_ || !current_->isWrapper || current_->fallsBackOnNoAd.value_or(true);
  replaces_ = !shown && mayReplace;
  over_ = shown || !mayReplace;
}

}  // namespace tavo
