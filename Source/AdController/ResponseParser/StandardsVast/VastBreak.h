#pragma once

#include <memory>
#include <vector>

#include "AdController/ResponseParser/StandardsVast/VastDocument.h"
#include "AdController/ResponseParser/StandardsVast/VastMerge.h"

namespace tavo {

// The ads of one document in the order in which they are tried: a pod by its places, where an ad
// that cannot be shown is replaced by one of those that stand alone; without a pod the first of
// these that can be shown. Pure bookkeeping; loadings are others' affair.
class VastBreak {
 public:
  // What the wrappers on the way here allow.
  struct Rules {
    bool multipleAds = true;
    bool wrappers = true;
  };

  VastBreak(const VastDocument& document, VastTrail trail, Rules rules);

  // The ad to try now; null when there is none left.
  [[nodiscard]] std::shared_ptr<const VastAd> take();
  // What has become of it.
  void settle(bool shown);

  // Whether any has been shown.
  [[nodiscard]] bool hasShown() const { return shown_; }
  [[nodiscard]] const VastTrail& trail() const { return trail_; }
  [[nodiscard]] const Rules& rules() const { return rules_; }
  // The ad's place in its pod, from 1; 0: it stands alone. And how many the pod has.
  [[nodiscard]] std::size_t place() const { return pod_.empty() ? 0 : nextOfPod_; }
  [[nodiscard]] std::size_t size() const { return pod_.size(); }

 private:
  [[nodiscard]] std::shared_ptr<const VastAd> takeAlone();

  const VastTrail trail_;
  const Rules rules_;
  std::vector<std::shared_ptr<const VastAd>> pod_;
  std::vector<std::shared_ptr<const VastAd>> alone_;
  std::shared_ptr<const VastAd> current_;
  std::size_t nextOfPod_ = 0;
  std::size_t nextAlone_ = 0;
  bool replaces_ = false;  // the next one takes the place of an ad of the pod
  bool over_ = false;
  bool shown_ = false;
};

}  // namespace tavo
