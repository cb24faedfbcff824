#pragma once

#include <memory>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <tavo/Url.h>
#include <tavo/XAdSlotConfiguration.h>

#include "Runtime/Environment.h"
#include "Tracker/VastMacros.h"

namespace tavo {

// Sends the pings of one ad by the standards: macros filled in, nothing twice. Shared by whoever
// reports something of the ad. Main thread only.
class VastPings {
 public:
  VastPings(std::shared_ptr<Environment> environment,
            std::shared_ptr<XAdSlotConfiguration> slotConfiguration);
  VastPings(const VastPings&) = delete;  // its macros lead back
  VastPings& operator=(const VastPings&) = delete;

  // Beside those that every address may ask for: random numbers, the time, the user's consent and
  // what this library can do.
  VastMacros macros;

  // Something that happens once, as a start or an impression: a second call of the same name sends
  // nothing.
  void once(const std::string& event, const std::vector<std::string>& addresses);
  // Something that a person may do again. An address that is named twice is told once each time.
  void each(std::string_view event, const std::vector<std::string>& addresses);

  // An address that is opened instead of told.
  [[nodiscard]] Url filled(const std::string& address) const;

 private:
  void setCommonMacros();
  [[nodiscard]] std::string randomDigits();

  const std::shared_ptr<Environment> environment_;
  const std::shared_ptr<XAdSlotConfiguration> slotConfiguration_;
  std::set<std::string, std::less<>> sent_;
  std::mt19937 random_{std::random_device{}()};
};

}  // namespace tavo
