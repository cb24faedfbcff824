#include "ClickToAction/AppStore.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include <tavo/Runtime.h>

#include "ErrorHandler/ExtendNSLog.h"
#include "Runtime/Environment.h"
#include "Services/Device.h"
#include "Values/Text.h"

namespace tavo {

namespace {

// The digits that `text` starts with as a number; 0 without any, the largest number for too many.
std::int64_t leadingDigits(std::string_view text) {
  const auto digits = text.substr(0, std::min(text.find_first_not_of("0123456789"), text.size()));
  std::int64_t number = 0;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return read.ec == std::errc::result_out_of_range ? std::numeric_limits<std::int64_t>::max()
                                                   : number;
}

}  // namespace

AppStoreConfiguration& AppStoreConfiguration::sharedInstance() {
  return Runtime::current().environment()->shared<AppStoreConfiguration>();
}

bool isAppStoreHost(const Url& url) {
  const auto& hosts = AppStoreConfiguration::sharedInstance().hosts;
  return std::any_of(hosts.begin(), hosts.end(),
                     [&](const auto& host) { return equalsIgnoringCase(url.host(), host); });
}

bool endsWithAppStoreHost(const Url& url) {
  const auto& hosts = AppStoreConfiguration::sharedInstance().hosts;
  return std::any_of(hosts.begin(), hosts.end(), [&](const auto& store) {
    const auto host = url.host();
    return host.size() >= store.size() &&
           equalsIgnoringCase(host.substr(host.size() - store.size()), store);
  });
}

// Quirk: any path piece that begins with "id" counts, and one without digits means application 0.
std::optional<std::int64_t> applicationIdentifier(const Url& url) {
  constexpr std::string_view marker = "/id";
  const std::string_view text = url.text();
  for (auto slash = text.find('/'); slash != std::string_view::npos;
       slash = text.find('/', slash + 1)) {
    if (equalsIgnoringCase(text.substr(slash, marker.size()), marker)) {
      return leadingDigits(text.substr(slash + marker.size()));
    }
  }
  return std::nullopt;
}

std::optional<std::int64_t> storeApplication(const HttpResult& result) {
  constexpr int cut = static_cast<int>(TransportError::bodyTooLarge);
  const bool arrived = result.response && (!result.error || result.error->code == cut);
  if (!arrived || !isAppStoreHost(result.response->url) ||
      !hasStoreSheet(Runtime::current().platform().device->systemVersion())) {
    return std::nullopt;
  }
  const auto identifier = applicationIdentifier(result.response->url);
  platformLog(identifier ? "AppId: " + std::to_string(*identifier)
                         : "TAVOSDK: " + std::string{result.response->url.host()} +
                               " error: couldn't locate id.");
  return identifier;
}

Url productPage(std::int64_t identifier) {
  return Url::fromText(AppStoreConfiguration::sharedInstance().productPagePrefix +
                       std::to_string(identifier));
}

bool hasStoreSheet(std::string_view systemVersion) {
  constexpr std::int64_t firstVersion = 6;
  return leadingDigits(systemVersion) >= firstVersion;
}

}  // namespace tavo
