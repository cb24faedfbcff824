#include "RequestEnrichment/CarrierRecord.h"

#include <algorithm>

#include "ErrorHandler/OperationLog.h"
#include "Services/RunLoop.h"
#include "Services/Telephony.h"
#include "Services/UserDefaults.h"
#include "Values/Text.h"

namespace tavo {

namespace {

using CarrierInfo = CarrierRecord::CarrierInfo;

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

CarrierRecord::CarrierRecord(const Platform& platform)
    : userDefaults_{platform.userDefaults},
      telephony_{platform.telephony},
      runLoop_{platform.runLoop} {}

void CarrierRecord::initializeCarrierInfo() {
  const OperationLog log{"-[XDeviceInformation initializeCarrierInfo]"};
  carrierInfo_ = fromLines(userDefaults_->value(XDeviceInformation::carrierInfoKey).value_or(""));
  // The loop runs the task or drops it, and ends after it: the task needs no share in the loop, and
  // must not have one, since what waits in the loop would then keep it for ever.
  runLoop_->background([weak = weak_from_this(), telephony = telephony_, loop = runLoop_.get()] {
    const auto carrier = telephony->subscriberCarrier();
    if (!carrier) return;  // what was known is as good as ever
    loop->post([weak, carrier] {
      if (const auto self = weak.lock()) self->updateCarrierInfoForCTCarrier(*carrier);
    });
  });
}

void CarrierRecord::updateCarrierInfoForCTCarrier(const Carrier& carrier) {
  const OperationLog log{"-[XDeviceInformation updateCarrierInfoForCTCarrier:]"};
  put(carrierInfo_, "carrierName", carrier.name);
  put(carrierInfo_, "isoCountryCode", carrier.isoCountryCode);
  put(carrierInfo_, "mobileCountryCode", carrier.mobileCountryCode);
  put(carrierInfo_, "mobileNetworkCode", carrier.mobileNetworkCode);
  userDefaults_->setValue(XDeviceInformation::carrierInfoKey, asLines(carrierInfo_));
  userDefaults_->synchronize();
}

}  // namespace tavo
