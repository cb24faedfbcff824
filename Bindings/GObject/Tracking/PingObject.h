#pragma once

#include <tavo/TrackingLedger.h>

#include "Support/Pointers.h"
#include "tavo-ads/tavo-ads-ping.h"

namespace tavo::gobject {

[[nodiscard]] Ref<TavoAdsPing> makePing(const PingRecord& record);
[[nodiscard]] std::uint64_t numberOf(TavoAdsPing* ping);
// Takes over where the ping stands now, and notifies.
void updatePing(TavoAdsPing* ping, const PingRecord& record);

}  // namespace tavo::gobject
