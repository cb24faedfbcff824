#pragma once

#include "Services/NetworkMonitor.h"

namespace tavo {

// Which network leads to a target. Nothing is looked up: a name is as reachable as the internet.
enum class WayToTarget {
  none,         // a target that makes no sense: no host, or an address that is none
  thisMachine,  // always reachable, as a local address
  localWiFi,
  internet,
};

[[nodiscard]] WayToTarget wayTo(const ReachabilityTarget& target);

inline constexpr std::uint32_t thisMachineFlags =
    reachabilityReachable | reachabilityIsLocalAddress | reachabilityIsDirect;

}  // namespace tavo
