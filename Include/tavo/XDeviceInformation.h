#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <tavo/Carrier.h>
#include <tavo/Location.h>

namespace tavo {

// Facts about the device and its mobile network. Main thread only.
class XDeviceInformation : public std::enable_shared_from_this<XDeviceInformation> {
 public:
  // Keys: "carrierName", "isoCountryCode", "mobileCountryCode", "mobileNetworkCode"; a value that
  // the network did not tell has no key.
  using CarrierInfo = std::map<std::string, std::string, std::less<>>;

  // Where the record is kept between launches.
  static constexpr std::string_view carrierInfoKey = "com.CorvaneTAVO.deviceCarrierinfo";

  // Starts with the record of an earlier launch and asks the network for the present one in the
  // background.
  [[nodiscard]] static std::shared_ptr<XDeviceInformation> create();

  [[nodiscard]] const CarrierInfo& carrierInfo() const { return carrierInfo_; }
  // The record of the process, which the first call begins to look up.
  [[nodiscard]] static CarrierInfo sharedCarrierInfo();

  [[nodiscard]] std::string deviceCurrentLanguage() const;  // the user's first, for example "en"
  [[nodiscard]] std::string countryCode() const;            // the locale, for example "en_US"
  [[nodiscard]] std::string deviceModel() const;
  [[nodiscard]] std::string systemVersion() const;
  [[nodiscard]] std::string appVersion() const;  // of the host application

  // Query pieces: "&z=+0530" for the time zone of now; "&ll=latitude,longitude", with "&lla=metres"
  // when the accuracy is not 0. Empty for no location and for one that is not known.
  [[nodiscard]] static std::string deviceCurrentForTimeZone();
  [[nodiscard]] static std::string deviceCurrentLocation(const std::optional<Location>& location);

  void initializeCarrierInfo();
  // Puts what the network says in place of what was known, and keeps it for the next launch.
  void updateCarrierInfoForCTCarrier(const Carrier& carrier);

 private:
  XDeviceInformation() = default;

  CarrierInfo carrierInfo_;
};

// The system's name of the machine, for example "iPhone6,1".
[[nodiscard]] std::string hardwareDeviceName();

}  // namespace tavo
