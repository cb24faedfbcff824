#pragma once

#include <optional>
#include <string>

namespace tavo {

// What the host knows about its user, kept for the host. No request carries it: what is to reach
// the ad server goes into the keywords or the query string of a load.
struct XUserConfiguration {
  std::optional<std::string> userAge;
  std::optional<std::string> userGender;
};

}  // namespace tavo
