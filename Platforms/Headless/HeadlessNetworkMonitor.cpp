#include "Headless/HeadlessNetworkMonitor.h"

#include "Rules/WayToTarget.h"

namespace tavo::headless {

struct HeadlessNetworkMonitor::Watched {
  ReachabilityTarget target;
  std::function<void()> changed;
  std::optional<std::uint32_t> flags;
};

class HeadlessNetworkMonitor::HeadlessWatch : public Watch {
 public:
  explicit HeadlessWatch(std::shared_ptr<Watched> watched) : watched_{std::move(watched)} {}

 private:
  std::shared_ptr<Watched> watched_;
};

std::optional<std::uint32_t> HeadlessNetworkMonitor::flagsFor(
    const ReachabilityTarget& target) const {
  const WayToTarget way = wayTo(target);
  if (way == WayToTarget::none || !flags_) return std::nullopt;
  return way == WayToTarget::thisMachine ? thisMachineFlags : *flags_;
}

std::unique_ptr<NetworkMonitor::Watch> HeadlessNetworkMonitor::watch(
    const ReachabilityTarget& target, std::function<void()> changed) {
  if (wayTo(target) == WayToTarget::none) return nullptr;
  auto watched = std::make_shared<Watched>(Watched{target, std::move(changed), flagsFor(target)});
  watched_.push_back(watched);
  return std::make_unique<HeadlessWatch>(std::move(watched));
}

void HeadlessNetworkMonitor::setFlags(std::optional<std::uint32_t> flags) {
  flags_ = flags;
  const auto all = watched_;
  for (const auto& weak : all) {
    const auto watched = weak.lock();
    if (!watched || watched->flags == flagsFor(watched->target)) continue;
    watched->flags = flagsFor(watched->target);
    watched->changed();
  }
}

}  // namespace tavo::headless
