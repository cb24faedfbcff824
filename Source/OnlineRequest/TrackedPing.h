#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <tavo/XAdSlotConfiguration.h>

#include "OnlineRequest/PingLedger.h"
#include "OnlineRequest/QueuedPing.h"
#include "Runtime/Environment.h"

namespace tavo {

// One ping of XTrackingRequest. It writes down in the ledger what becomes of it.
class TrackedPing : public QueuedPing {
 public:
  // `number` is the ping's in the ledger. The environment owns the queue, so it outlives the ping's
  // way through it.
  TrackedPing(Environment& environment, Url url, std::string context,
              std::shared_ptr<XAdSlotConfiguration> slotConfiguration, std::uint64_t number);

  [[nodiscard]] std::optional<HttpRequest> prepare() override;
  void dropped() override;
  void answered(const HttpResult& result) override;
  void settled(const HttpResult& result, Seconds took) override;

 private:
  Environment& environment_;
  PingLedger& ledger_;
  const std::string context_;
  const std::shared_ptr<XAdSlotConfiguration> slotConfiguration_;
  const std::uint64_t number_;
};

}  // namespace tavo
