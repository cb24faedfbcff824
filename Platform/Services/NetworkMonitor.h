#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tavo {

// Facts about the way to a target, as bits that can be combined.
enum ReachabilityFlags : std::uint32_t {
  reachabilityTransientConnection = 1U << 0U,
  reachabilityReachable = 1U << 1U,
  reachabilityConnectionRequired = 1U << 2U,
  reachabilityConnectionOnTraffic = 1U << 3U,
  reachabilityInterventionRequired = 1U << 4U,
  reachabilityConnectionOnDemand = 1U << 5U,
  reachabilityIsLocalAddress = 1U << 16U,
  reachabilityIsDirect = 1U << 17U,
  reachabilityIsWwan = 1U << 18U,
};

// What is to be reached.
struct ReachabilityTarget {
  enum class Kind { internet, localWiFi, hostName, address };
  Kind kind = Kind::internet;
  std::string host;  // a name or a numeric address, for the last two kinds
};

// Watches the network. Main thread only.
class NetworkMonitor {
 public:
  // Dropping it ends the watch.
  class Watch {
   public:
    virtual ~Watch() = default;
  };

  virtual ~NetworkMonitor() = default;

  // The flags of the way to `target` now, answered at once; none when the platform cannot tell.
  [[nodiscard]] virtual std::optional<std::uint32_t> flagsFor(
      const ReachabilityTarget& target) const = 0;

  // Calls `changed` each time the flags of `target` have become others, and only then, on the main
  // thread. Null when the platform refuses the target.
  [[nodiscard]] virtual std::unique_ptr<Watch> watch(const ReachabilityTarget& target,
                                                     std::function<void()> changed) = 0;
};

}  // namespace tavo
