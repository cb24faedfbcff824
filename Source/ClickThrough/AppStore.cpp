#include "ClickThrough/AppStore.h"

#include <algorithm>

#include "ErrorHandler/ExtendNSLog.h"
#include "Runtime/Environment.h"
#include "Runtime/LivingEnvironment.h"
#include "Utilities/NumberText.h"
#include "Values/Text.h"

namespace tavo {

AppStoreConfiguration& AppStoreConfiguration::sharedInstance() {
  return livingEnvironment()->shared<AppStoreConfiguration>();
}

bool isAppStoreHost(const Url& url, const AppStoreConfiguration& store) {
  return std::any_of(store.hosts.begin(), store.hosts.end(), [&](const auto& host) {
    return !host.empty() && equalsIgnoringCase(url.host(), host);
  });
}

bool endsWithAppStoreHost(const Url& url, const AppStoreConfiguration& store) {
  const auto host = url.host();
  return std::any_of(store.hosts.begin(), store.hosts.end(), [&](const auto& ending) {
    return !ending.empty() && host.size() >= ending.size() &&
           equalsIgnoringCase(host.substr(host.size() - ending.size()), ending);
  });
}

// Quirk: any path piece that begins with "id" counts, and one without digits means application 0.
std::optional<std::int64_t> applicationIdentifier(const Url& url) {
  constexpr std::string_view marker = "/id";
  const std::string_view text = url.text();
  for (auto slash = text.find('/'); slash != std::string_view::npos;
       slash = text.find('/', slash + 1)) {
    if (equalsIgnoringCase(text.substr(slash, marker.size()), marker)) {
      return std::max<std::int64_t>(leadingInteger(text.substr(slash + marker.size())), 0);
    }
  }
  return std::nullopt;
}

std::optional<std::int64_t> storeApplication(const HttpResult& result,
                                             const AppStoreConfiguration& store,
                                             std::string_view contractVersion) {
  constexpr int cut = static_cast<int>(TransportError::bodyTooLarge);
  const bool arrived = result.response && (!result.error || result.error->code == cut);
  if (!arrived || !isAppStoreHost(result.response->url, store) || !hasStoreSheet(contractVersion)) {
    return std::nullopt;
  }
  const auto identifier = applicationIdentifier(result.response->url);
  platformLog(identifier ? "AppId: " + std::to_string(*identifier)
                         : "TAVOSDK: " + std::string{result.response->url.host()} +
                               " error: couldn't locate id.",
              LogLevel::warning);
  return identifier;
}

Url productPage(std::int64_t identifier, const AppStoreConfiguration& store) {
  return Url::fromText(store.productPagePrefix + std::to_string(identifier));
}

bool hasStoreSheet(std::string_view contractVersion) {
  constexpr std::int64_t firstVersion = 6;
  return leadingInteger(contractVersion) >= firstVersion;
}

}  // namespace tavo
