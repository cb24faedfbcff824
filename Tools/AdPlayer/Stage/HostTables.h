#pragma once

#include <functional>
#include <optional>

#include <tavo/XAdInterstitialViewControllerDelegate.h>
#include <tavo/XAdViewDelegate.h>

#include "AdPlayer/Events/EventLog.h"

namespace tavo::adplayer {

// The outcomes among what the library tells its host, and what it offers.
struct HostOutcomes {
  std::function<void()> loaded{};
  std::function<void(const std::optional<Error>&)> failed{};
  std::function<void(VastCompanionOffer&)> companion{};  // of a film in a slot, the largest
};

// Tables that write every call of the library into `log`, which must outlive them.
[[nodiscard]] XAdViewDelegate bannerTable(EventLog& log, HostOutcomes outcomes);
[[nodiscard]] XAdInterstitialViewControllerDelegate interstitialTable(EventLog& log,
                                                                      HostOutcomes outcomes);

}  // namespace tavo::adplayer
