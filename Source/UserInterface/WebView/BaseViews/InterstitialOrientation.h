#pragma once

#include <optional>

#include <tavo/ViewController.h>

#include "AdController/AdGenerator/XMRAIDOrientationProperties.h"

namespace tavo {

// How an interstitial follows the screen's rotation, by what its creative has asked for; none once
// its memory was released. Videos follow every rotation and are not asked about here.
using OrientationRules = std::optional<XMRAIDOrientationProperties>;

[[nodiscard]] bool mayAutorotate(const OrientationRules& rules);
[[nodiscard]] bool mayAutorotateTo(InterfaceOrientation orientation, const OrientationRules& rules);
[[nodiscard]] OrientationMask supportedOrientations(const OrientationRules& rules);
// `current` is the one in which the screen is held.
[[nodiscard]] InterfaceOrientation preferredOrientation(const OrientationRules& rules,
                                                        InterfaceOrientation current);

}  // namespace tavo
