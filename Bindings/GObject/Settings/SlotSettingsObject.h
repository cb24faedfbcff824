#pragma once

#include <memory>

#include <tavo/XAdSlotConfiguration.h>

#include "tavo-ads/tavo-ads-slot-settings.h"

namespace tavo::gobject {

// The record that the object writes to, shared with the library; never null.
[[nodiscard]] const std::shared_ptr<XAdSlotConfiguration>& recordOf(TavoAdsSlotSettings* settings);

}  // namespace tavo::gobject
