#pragma once

#include <tavo/XAdSlotConfiguration.h>
#include <tavo/XGlobalConfiguration.h>

namespace tavo {

// Whether an ad is treated as the public standards say: the slot's own value, else the
// application's. A host's player without a slot has the application's.
[[nodiscard]] inline bool standardsModeIsOn(const XGlobalConfiguration& application,
                                            const XAdSlotConfiguration* slot) {
  return slot != nullptr ? slot->standardsMode.value_or(application.standardsMode)
                         : application.standardsMode;
}

}  // namespace tavo
