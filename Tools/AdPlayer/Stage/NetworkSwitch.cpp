#include "AdPlayer/Stage/NetworkSwitch.h"

#include <utility>

namespace tavo::adplayer {

namespace {

class SwitchedWatch : public NetworkMonitor::Watch {
 public:
  SwitchedWatch(std::unique_ptr<Watch> real, std::shared_ptr<std::function<void()>> changed)
      : real_{std::move(real)}, changed_{std::move(changed)} {}

 private:
  std::unique_ptr<Watch> real_;
  std::shared_ptr<std::function<void()>> changed_;
};

class NoExchange : public HttpClient::Exchange {
 public:
  void cancel() override {}
};

}  // namespace

NetworkSwitch::NetworkSwitch(std::shared_ptr<NetworkMonitor> monitor,
                             std::shared_ptr<HttpClient> http, std::shared_ptr<RunLoop> runLoop)
    : monitor_{std::move(monitor)}, http_{std::move(http)}, runLoop_{std::move(runLoop)} {}

void NetworkSwitch::setOn(bool isOn) {
  if (std::exchange(isOn_, isOn) == isOn) return;
  std::erase_if(watchers_, [](const auto& one) { return one.expired(); });
  const auto watchers = watchers_;
  for (const auto& weak : watchers) {
    if (const auto changed = weak.lock()) (*changed)();
  }
}

std::optional<std::uint32_t> NetworkSwitch::flagsFor(const ReachabilityTarget& target) const {
  return isOn_ ? monitor_->flagsFor(target) : std::optional<std::uint32_t>{0};
}

std::unique_ptr<NetworkMonitor::Watch> NetworkSwitch::watch(const ReachabilityTarget& target,
                                                            std::function<void()> changed) {
  auto held = std::make_shared<std::function<void()>>(std::move(changed));
  watchers_.push_back(held);
  auto real = monitor_->watch(target, [weak = std::weak_ptr{held}] {
    if (const auto there = weak.lock()) (*there)();
  });
  return std::make_unique<SwitchedWatch>(std::move(real), std::move(held));
}

std::shared_ptr<HttpClient::Exchange> NetworkSwitch::send(HttpRequest request,
                                                          HttpCompletion completion) {
  if (isOn_) return http_->send(std::move(request), std::move(completion));
  auto fail = [completion = std::move(completion)] {
    if (completion) {
      completion({std::nullopt, makeError(TransportError::cannotConnect, "The network is off.")});
    }
  };
  if (request.completionThread == CompletionThread::background) {
    runLoop_->background(std::move(fail));
  } else {
    runLoop_->post(std::move(fail));
  }
  return std::make_shared<NoExchange>();
}

}  // namespace tavo::adplayer
