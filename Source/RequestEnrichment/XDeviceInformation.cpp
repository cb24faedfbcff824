#include <array>
#include <cmath>
#include <ctime>

#include <tavo/XDeviceInformation.h>

#include "ErrorHandler/OperationLog.h"
#include "RequestEnrichment/CarrierRecord.h"
#include "Runtime/Environment.h"
#include "Runtime/LivingEnvironment.h"
#include "Services/Device.h"
#include "Services/RunLoop.h"
#include "Utilities/NumberText.h"
#include "Values/Text.h"

namespace tavo {

namespace {

std::shared_ptr<CarrierRecord> makeRecord(const Environment& environment) {
  auto record = std::make_shared<CarrierRecord>(environment.platform());
  record->initializeCarrierInfo();
  return record;
}

struct SharedCarrierRecord {
  explicit SharedCarrierRecord(const Environment& environment) : record{makeRecord(environment)} {}
  const std::shared_ptr<CarrierRecord> record;
};

}  // namespace

XDeviceInformation::XDeviceInformation(const Environment& environment)
    : device_{environment.platform().device}, carrier_{makeRecord(environment)} {}

std::shared_ptr<XDeviceInformation> XDeviceInformation::create() {
  const OperationLog log{"-[XDeviceInformation init]"};
  const auto environment = livingEnvironment();
  return std::shared_ptr<XDeviceInformation>{new XDeviceInformation{*environment}};
}

const XDeviceInformation::CarrierInfo& XDeviceInformation::carrierInfo() const {
  return carrier_->carrierInfo();
}

XDeviceInformation::CarrierInfo XDeviceInformation::sharedCarrierInfo() {
  const OperationLog log{"+[XDeviceInformation sharedCarrierInfo]"};
  const auto environment = livingEnvironment();
  return environment->shared<SharedCarrierRecord>().record->carrierInfo();
}

std::string XDeviceInformation::deviceCurrentLanguage() const {
  const OperationLog log{"-[XDeviceInformation deviceCurrentLanguage]"};
  const auto languages = device_->preferredLanguages();
  return languages.empty() ? std::string{} : languages.front();
}

std::string XDeviceInformation::countryCode() const {
  const OperationLog log{"-[XDeviceInformation countryCode]"};
  return device_->localeIdentifier();
}

std::string XDeviceInformation::deviceModel() const {
  const OperationLog log{"-[XDeviceInformation deviceModel]"};
  return device_->model();
}

std::string XDeviceInformation::systemVersion() const {
  const OperationLog log{"-[XDeviceInformation systemVersion]"};
  return device_->systemVersion();
}

std::string XDeviceInformation::appVersion() const {
  const OperationLog log{"-[XDeviceInformation appVersion]"};
  return device_->applicationVersion();
}

std::string XDeviceInformation::deviceCurrentForTimeZone() {
  const OperationLog log{"+[XDeviceInformation deviceCurrentForTimeZone]"};
  const auto now =
      std::chrono::system_clock::to_time_t(livingEnvironment()->platform().runLoop->today());
  std::tm local{};
  tzset();  // the user may have travelled since the last call
  localtime_r(&now, &local);
  std::array<char, 16> offset{};
  const auto length = std::strftime(offset.data(), offset.size(), "%z", &local);
  return "&z=" + std::string{offset.data(), length};
}

std::string XDeviceInformation::deviceCurrentLocation(const std::optional<Location>& location) {
  const OperationLog log{"+[XDeviceInformation deviceCurrentLocation:]"};
  const auto isKnown = [](const Location& place) {
    return std::isfinite(place.latitude) && std::isfinite(place.longitude) &&
           std::isfinite(place.horizontalAccuracy) && place.horizontalAccuracy >= 0;
  };
  if (!location || !isKnown(*location)) return {};
  std::string piece =
      "&ll=" + plainNumberText(location->latitude) + "," + plainNumberText(location->longitude);
  if (location->horizontalAccuracy > 0) {
    piece += "&lla=" + plainNumberText(location->horizontalAccuracy);
  }
  return piece;
}

std::string hardwareDeviceName() {
  const OperationLog log{"-[UIDevice hardwareDeviceName]"};
  return validUtf8(livingEnvironment()->platform().device->hardwareMachine());
}

}  // namespace tavo
