#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <tavo/Export.h>
#include <tavo/Location.h>

namespace tavo {

class CarrierRecord;
class Device;
class Environment;

// Facts about the device and its mobile network, for hosts that put a query string together. Main
// thread only. Made for the runtime that is current; it may outlive that.
//
// The carrier record is asked for in the background, since a modem may take seconds: an object
// starts with what an earlier launch learned (kept in the user defaults under `carrierInfoKey`) and
// changes, on the main thread, once the network has answered.
class TAVO_EXPORT XDeviceInformation {
 public:
  // Keys: "carrierName", "isoCountryCode" ("ch"), "mobileCountryCode" ("228"), "mobileNetworkCode"
  // ("01"). A value that the network did not tell has no key; without a SIM there is none.
  using CarrierInfo = std::map<std::string, std::string, std::less<>>;

  static constexpr std::string_view carrierInfoKey = "com.CorvaneTAVO.deviceCarrierinfo";

  // Begins with the record of an earlier launch and asks the network for the present one.
  [[nodiscard]] static std::shared_ptr<XDeviceInformation> create();

  // The object's record, which the network's answer changes.
  [[nodiscard]] const CarrierInfo& carrierInfo() const;
  // A copy of the runtime's record, which the first call begins to look up.
  [[nodiscard]] static CarrierInfo sharedCarrierInfo();

  [[nodiscard]] std::string deviceCurrentLanguage() const;  // the user's first, for example "en"
  [[nodiscard]] std::string countryCode() const;            // the locale, for example "en_US"
  [[nodiscard]] std::string deviceModel() const;            // for example "Desktop"
  [[nodiscard]] std::string systemVersion() const;          // for example "12.5"
  [[nodiscard]] std::string appVersion() const;             // of the host application

  // A query piece for the time zone of now, summer time included: "&z=+0530".
  [[nodiscard]] static std::string deviceCurrentForTimeZone();

  // A query piece for a place: "&ll=47.3769,-8.5417" in degrees, with "&lla=65" in metres when the
  // accuracy is not 0. Empty for no place, for a negative accuracy (a place that is not known) and
  // for what is no number.
  [[nodiscard]] static std::string deviceCurrentLocation(const std::optional<Location>& location);

 private:
  explicit XDeviceInformation(const Environment& environment);

  std::shared_ptr<const Device> device_;
  std::shared_ptr<CarrierRecord> carrier_;
};

// The system's name of the machine, for example "iPhone6,1". Main thread only.
[[nodiscard]] TAVO_EXPORT std::string hardwareDeviceName();

}  // namespace tavo
