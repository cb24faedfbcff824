#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <tavo/VastAd.h>
#include <tavo/VastCompanionOffer.h>

#include "Tracker/VastPings.h"
#include "UserInterface/StandardsVideo/VastResourceView.h"

namespace tavo {

// One companion of a film in the host's hands.
class CompanionOffer : public VastCompanionOffer,
                       public std::enable_shared_from_this<CompanionOffer> {
 public:
  struct Settings {
    std::shared_ptr<Environment> environment;
    std::shared_ptr<VastPings> pings;
    std::string name;  // for its pings
    std::function<void(const Url&)> open;
  };

  CompanionOffer(VastCompanion companion, Settings settings)
      : companion_{std::move(companion)}, settings_{std::move(settings)} {}

  [[nodiscard]] const VastCompanion& companion() const override { return companion_; }
  [[nodiscard]] std::shared_ptr<View> view() override;
  void didShow() override;
  void didClick() override;

 private:
  void opened(const Url& url);

  const VastCompanion companion_;
  const Settings settings_;
  std::weak_ptr<View> view_;
};

// The companions that a host with these places (none: anywhere) has room for and that can be drawn,
// the largest first.
[[nodiscard]] std::vector<VastCompanion> fittingCompanions(const VastAd& ad,
                                                           const std::vector<Size>& places);

}  // namespace tavo
