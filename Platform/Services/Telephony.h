#pragma once

#include <optional>
#include <string>

namespace tavo {

// What the network operator of the SIM says about itself; absent: not told.
struct Carrier {
  std::optional<std::string> name;
  std::optional<std::string> isoCountryCode;     // for example "ch"
  std::optional<std::string> mobileCountryCode;  // for example "228"
  std::optional<std::string> mobileNetworkCode;  // for example "01"
  friend bool operator==(const Carrier&, const Carrier&) = default;
};

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
