#pragma once

#include <tavo/XAdViewDelegate.h>

#include "Slots/SlotCore.h"

namespace tavo::gobject {

// What an ad view reports that is a signal of every slot. The table lives no longer than `core`.
[[nodiscard]] XAdViewDelegate viewReports(SlotCore& core);

}  // namespace tavo::gobject
