#include "Headless/HeadlessNetworkMonitor.h"

namespace tavo::headless {

namespace {
class HeadlessWatch : public NetworkMonitor::Watch {
 public:
  explicit HeadlessWatch(std::shared_ptr<std::function<void()>> changed)
      : changed_{std::move(changed)} {}

 private:
  std::shared_ptr<std::function<void()>> changed_;
};
}  // namespace

std::optional<std::uint32_t> HeadlessNetworkMonitor::flagsFor(
    const ReachabilityTarget& /*target*/) const {
  return flags_;
}

std::unique_ptr<NetworkMonitor::Watch> HeadlessNetworkMonitor::watch(
    const ReachabilityTarget& /*target*/, std::function<void()> changed) {
  auto shared = std::make_shared<std::function<void()>>(std::move(changed));
  watchers_.push_back(shared);
  return std::make_unique<HeadlessWatch>(std::move(shared));
}

void HeadlessNetworkMonitor::setFlags(std::optional<std::uint32_t> flags) {
  if (flags == flags_) return;
  flags_ = flags;
  const auto watchers = watchers_;
  for (const auto& weak : watchers) {
    if (const auto watcher = weak.lock()) (*watcher)();
  }
}

}  // namespace tavo::headless
