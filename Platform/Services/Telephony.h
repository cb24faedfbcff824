#pragma once

#include <optional>

#include "Values/Carrier.h"

namespace tavo {

// The mobile network side of the device.
class Telephony {
 public:
  virtual ~Telephony() = default;

  // The subscriber's home network: an empty record without a SIM or without a modem, none when
  // nobody could tell. May take its time, up to some seconds. Called on a background queue, so that
  // nothing waits for it.
  [[nodiscard]] virtual std::optional<Carrier> subscriberCarrier() const = 0;
};

}  // namespace tavo
