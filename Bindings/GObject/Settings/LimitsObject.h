#pragma once

#include <tavo/Limits.h>

#include "tavo-ads/tavo-ads-limits.h"

namespace tavo::gobject {

// The record behind the object; null: the defaults.
[[nodiscard]] Limits limitsOf(TavoAdsLimits* limits);

}  // namespace tavo::gobject
