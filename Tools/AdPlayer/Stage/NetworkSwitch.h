#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "Services/HttpClient.h"
#include "Services/NetworkMonitor.h"
#include "Services/RunLoop.h"

namespace tavo::adplayer {

// The network of the simulated phone, which can be switched off: the library hears of it and its
// new requests fail. What the engine fetches for a page by itself goes on.
class NetworkSwitch : public NetworkMonitor, public HttpClient {
 public:
  NetworkSwitch(std::shared_ptr<NetworkMonitor> monitor, std::shared_ptr<HttpClient> http,
                std::shared_ptr<RunLoop> runLoop);

  void setOn(bool isOn);
  [[nodiscard]] bool isOn() const { return isOn_; }

  [[nodiscard]] std::optional<std::uint32_t> flagsFor(
      const ReachabilityTarget& target) const override;
  [[nodiscard]] std::unique_ptr<Watch> watch(const ReachabilityTarget& target,
                                             std::function<void()> changed) override;
  std::shared_ptr<Exchange> send(HttpRequest request, HttpCompletion completion) override;

 private:
  std::shared_ptr<NetworkMonitor> monitor_;
  std::shared_ptr<HttpClient> http_;
  std::shared_ptr<RunLoop> runLoop_;
  bool isOn_ = true;
  std::vector<std::weak_ptr<std::function<void()>>> watchers_;
};

}  // namespace tavo::adplayer
