#include <algorithm>
#include <array>
#include <cmath>
#include <ctime>

#include <tavo/Runtime.h>
#include <tavo/XDeviceInformation.h>

#include "ErrorHandler/OperationLog.h"
#include "Runtime/Environment.h"
#include "Services/Device.h"
#include "Services/RunLoop.h"
#include "Services/Telephony.h"
#include "Services/UserDefaults.h"
#include "Utilities/NumberText.h"
#include "Values/Text.h"

namespace tavo {

namespace {

using CarrierInfo = XDeviceInformation::CarrierInfo;

struct SharedDeviceInformation {
  std::shared_ptr<XDeviceInformation> information = XDeviceInformation::create();
};

const Device& device() { return *Runtime::current().platform().device; }

// The record on disk: a line "key<tab>value" for each entry.
std::string asLines(const CarrierInfo& info) {
  std::string lines;
  for (const auto& [key, value] : info) lines.append(key).append("\t").append(value).append("\n");
  return lines;
}

CarrierInfo fromLines(std::string_view lines) {
  CarrierInfo info;
  while (!lines.empty()) {
    const auto line = lines.substr(0, lines.find('\n'));
    lines.remove_prefix(std::min(line.size() + 1, lines.size()));
    const auto tab = line.find('\t');
    if (tab == std::string_view::npos) continue;
    info.insert_or_assign(std::string{line.substr(0, tab)}, std::string{line.substr(tab + 1)});
  }
  return info;
}

// A value as one line of text, whatever the modem sent.
std::string cleaned(const std::string& value) {
  std::string text = validUtf8(value);
  std::replace_if(
      text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; }, ' ');
  return text;
}

void put(CarrierInfo& info, const char* key, const std::optional<std::string>& value) {
  if (value) {
    info.insert_or_assign(key, cleaned(*value));
  } else {
    info.erase(key);
  }
}

}  // namespace

std::shared_ptr<XDeviceInformation> XDeviceInformation::create() {
  const OperationLog log{"-[XDeviceInformation init]"};
  std::shared_ptr<XDeviceInformation> information{new XDeviceInformation};
  information->initializeCarrierInfo();
  return information;
}

XDeviceInformation::CarrierInfo XDeviceInformation::sharedCarrierInfo() {
  const OperationLog log{"+[XDeviceInformation sharedCarrierInfo]"};
  return Runtime::current()
      .environment()
      ->shared<SharedDeviceInformation>()
      .information->carrierInfo();
}

std::string XDeviceInformation::deviceCurrentLanguage() const {
  const OperationLog log{"-[XDeviceInformation deviceCurrentLanguage]"};
  const auto languages = device().preferredLanguages();
  return languages.empty() ? std::string{} : languages.front();
}

std::string XDeviceInformation::countryCode() const {
  const OperationLog log{"-[XDeviceInformation countryCode]"};
  return device().localeIdentifier();
}

std::string XDeviceInformation::deviceModel() const {
  const OperationLog log{"-[XDeviceInformation deviceModel]"};
  return device().model();
}

std::string XDeviceInformation::systemVersion() const {
  const OperationLog log{"-[XDeviceInformation systemVersion]"};
  return device().systemVersion();
}

std::string XDeviceInformation::appVersion() const {
  const OperationLog log{"-[XDeviceInformation appVersion]"};
  return device().applicationVersion();
}

std::string XDeviceInformation::deviceCurrentForTimeZone() {
  const OperationLog log{"+[XDeviceInformation deviceCurrentForTimeZone]"};
  const auto now =
      std::chrono::system_clock::to_time_t(Runtime::current().platform().runLoop->today());
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

void XDeviceInformation::initializeCarrierInfo() {
  const OperationLog log{"-[XDeviceInformation initializeCarrierInfo]"};
  auto& platform = Runtime::current().platform();
  carrierInfo_ = fromLines(platform.userDefaults->value(carrierInfoKey).value_or(""));
  // The loop runs the task or drops it, and ends after it: the task needs no share in the loop, and
  // must not have one, since what waits in the loop would then keep it for ever.
  platform.runLoop->background(
      [weak = weak_from_this(), telephony = platform.telephony, runLoop = platform.runLoop.get()] {
        const auto carrier = telephony->subscriberCarrier();
        if (!carrier) return;  // what was known is as good as ever
        runLoop->post([weak, carrier] {
          if (const auto self = weak.lock()) self->updateCarrierInfoForCTCarrier(*carrier);
        });
      });
}

void XDeviceInformation::updateCarrierInfoForCTCarrier(const Carrier& carrier) {
  const OperationLog log{"-[XDeviceInformation updateCarrierInfoForCTCarrier:]"};
  put(carrierInfo_, "carrierName", carrier.name);
  put(carrierInfo_, "isoCountryCode", carrier.isoCountryCode);
  put(carrierInfo_, "mobileCountryCode", carrier.mobileCountryCode);
  put(carrierInfo_, "mobileNetworkCode", carrier.mobileNetworkCode);
  auto& defaults = *Runtime::current().platform().userDefaults;
  defaults.setValue(carrierInfoKey, asLines(carrierInfo_));
  defaults.synchronize();
}

std::string hardwareDeviceName() {
  const OperationLog log{"-[UIDevice hardwareDeviceName]"};
  return validUtf8(device().hardwareMachine());
}

}  // namespace tavo
