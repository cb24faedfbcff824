#pragma once

#include <memory>
#include <vector>

#include <tavo/VastAd.h>

namespace tavo {

// The wrappers that lead to an ad, the outermost first.
using VastTrail = std::vector<std::shared_ptr<const VastAd>>;

// An inline ad with what its wrappers carry: their addresses stand before its own, the outermost
// first. Of icons of one program the nearest to the film stays; companions of a wrapper count where
// nothing nearer has any.
[[nodiscard]] VastAd mergedAd(const VastAd& ad, const VastTrail& trail);

// Whether a wrapper on the way refuses the ad for what it is about.
[[nodiscard]] bool isBlocked(const VastAd& ad, const VastTrail& trail);

}  // namespace tavo
