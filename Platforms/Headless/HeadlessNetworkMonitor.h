#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "Services/NetworkMonitor.h"

namespace tavo::headless {

// A network whose flags a test sets; one network for every target.
class HeadlessNetworkMonitor : public NetworkMonitor {
 public:
  [[nodiscard]] std::optional<std::uint32_t> flagsFor(
      const ReachabilityTarget& target) const override;
  [[nodiscard]] std::unique_ptr<Watch> watch(const ReachabilityTarget& target,
                                             std::function<void()> changed) override;

  // Tells the watchers when the flags have become others.
  void setFlags(std::optional<std::uint32_t> flags);
  void setReachable(bool reachable) { setFlags(reachable ? reachabilityReachable : 0U); }

 private:
  std::optional<std::uint32_t> flags_ = reachabilityReachable;
  std::vector<std::weak_ptr<std::function<void()>>> watchers_;
};

}  // namespace tavo::headless
