#include "Runtime/Environment.h"

#include <array>
#include <atomic>
#include <utility>

namespace tavo {

namespace {
std::atomic<std::uint64_t> lastId{0};
}  // namespace

Environment::Environment(Platform platform) : id_{++lastId}, platform_{std::move(platform)} {}

Environment::~Environment() {
  while (!owned_.empty()) owned_.pop_back();
}

const char* missingService(const Platform& platform) {
  const auto services = std::to_array<std::pair<const char*, bool>>({
      {"adNetwork", platform.adNetwork != nullptr},
      {"alerts", platform.alerts != nullptr},
      {"application", platform.application != nullptr},
      {"bundle", platform.bundle != nullptr},
      {"calendarAccess", platform.calendarAccess != nullptr},
      {"composers", platform.composers != nullptr},
      {"cookies", platform.cookies != nullptr},
      {"device", platform.device != nullptr},
      {"folders", platform.folders != nullptr},
      {"http", platform.http != nullptr},
      {"images", platform.images != nullptr},
      {"inspection", platform.inspection != nullptr},
      {"log", platform.log != nullptr},
      {"moviePlayers", platform.moviePlayers != nullptr},
      {"network", platform.network != nullptr},
      {"notifications", platform.notifications != nullptr},
      {"photoAlbum", platform.photoAlbum != nullptr},
      {"runLoop", platform.runLoop != nullptr},
      {"screen", platform.screen != nullptr},
      {"telephony", platform.telephony != nullptr},
      {"userDefaults", platform.userDefaults != nullptr},
      {"webViews", platform.webViews != nullptr},
  });
  for (const auto& [name, isThere] : services) {
    if (!isThere) return name;
  }
  return nullptr;
}

}  // namespace tavo
