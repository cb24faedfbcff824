#pragma once

#include <memory>

#include <tavo/Platform.h>
#include <tavo/XDeviceInformation.h>

#include "Values/Carrier.h"

namespace tavo {

// What is known about the mobile network, and kept between launches in the user defaults. Main
// thread only.
class CarrierRecord : public std::enable_shared_from_this<CarrierRecord> {
 public:
  using CarrierInfo = XDeviceInformation::CarrierInfo;

  explicit CarrierRecord(const Platform& platform);

  [[nodiscard]] const CarrierInfo& carrierInfo() const { return carrierInfo_; }

  // Starts with the record of an earlier launch and asks the network in the background; its answer
  // reaches a record that is still shared then.
  void initializeCarrierInfo();
  // Puts what the network says in place of what was known, and keeps it for the next launch.
  void updateCarrierInfoForCTCarrier(const Carrier& carrier);

 private:
  const std::shared_ptr<UserDefaults> userDefaults_;
  const std::shared_ptr<Telephony> telephony_;
  const std::shared_ptr<RunLoop> runLoop_;
  CarrierInfo carrierInfo_;
};

}  // namespace tavo
