#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "Services/NetworkMonitor.h"

namespace tavo::headless {

// A network whose flags a test sets: those of the way to other machines, by whatever link.
class HeadlessNetworkMonitor : public NetworkMonitor {
 public:
  [[nodiscard]] std::optional<std::uint32_t> flagsFor(
      const ReachabilityTarget& target) const override;
  [[nodiscard]] std::unique_ptr<Watch> watch(const ReachabilityTarget& target,
                                             std::function<void()> changed) override;

  // None: the platform cannot tell. Tells the watchers whose flags have become others.
  void setFlags(std::optional<std::uint32_t> flags);
  void setReachable(bool reachable) { setFlags(reachable ? reachabilityReachable : 0U); }

 private:
  struct Watched;
  class HeadlessWatch;

  std::optional<std::uint32_t> flags_ = reachabilityReachable;
  std::vector<std::weak_ptr<Watched>> watched_;
};

}  // namespace tavo::headless
