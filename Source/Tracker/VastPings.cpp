#include "Tracker/VastPings.h"

#include <tavo/XGlobalConfiguration.h>

#include "OnlineRequest/XTrackingRequest.h"
#include "Services/RunLoop.h"
#include "Utilities/XUserAgent.h"

namespace tavo {

namespace {

// By the table of VAST 4.2: 2.0, 3.0, 4.0, 4.1 and 4.2, each inline and as a wrapper.
constexpr const char* vastVersions = "2,3,5,6,7,8,11,12,13,14";

}  // namespace

VastPings::VastPings(std::shared_ptr<Environment> environment,
                     std::shared_ptr<XAdSlotConfiguration> slotConfiguration)
    : environment_{std::move(environment)}, slotConfiguration_{std::move(slotConfiguration)} {
  setCommonMacros();
}

void VastPings::setCommonMacros() {
  const auto& consent = environment_->shared<XGlobalConfiguration>().consent;
  macros.set("CACHEBUSTING", [this] { return randomDigits(); });
  macros.set("RANDOM", [this] { return randomDigits(); });
  macros.set("TIMESTAMP", [runLoop = environment_->platform().runLoop] {
    const auto since = runLoop->today().time_since_epoch();
    return isoTime(std::chrono::duration_cast<std::chrono::milliseconds>(since).count());
  });
  macros.set("GDPRCONSENT", consent.gdprConsent);
  macros.set("GPPSTRING", consent.gppString);
  macros.set("GPPSECTIONID", consent.gppSectionId);
  macros.set("REGULATIONS", consent.regulations);
  macros.set("LIMITADTRACKING", consent.limitAdTracking);
  macros.set("VASTVERSIONS", vastVersions);
  macros.set("SERVERSIDE", "0");
  macros.set("CLICKTYPE", "1");  // the whole film can be clicked
  macros.set("DEVICEUA", [environment = environment_] {
    return environment->shared<XUserAgent>().userAgent();
  });
}

std::string VastPings::randomDigits() {
  return std::to_string(std::uniform_int_distribution{10'000'000, 99'999'999}(random_));
}

Url VastPings::filled(const std::string& address) const {
  return Url::fromText(macros.filled(address, environment_->limits().vastAddressBytes));
}

void VastPings::once(const std::string& event, const std::vector<std::string>& addresses) {
  if (sent_.insert(event).second) each(event, addresses);
}

void VastPings::each(std::string_view event, const std::vector<std::string>& addresses) {
  std::set<std::string_view> told;
  for (const auto& address : addresses) {
    if (!told.insert(address).second) continue;
    const Url url = filled(address);
    if (!url.isHttp()) continue;
    XTrackingRequest::sendAsynchronousRequest(*environment_, url, std::string{event},
                                              slotConfiguration_);
  }
}

}  // namespace tavo
