#pragma once

#include <optional>
#include <string>

namespace tavo {

// What the host knows about its user. No request carries it.
struct XUserConfiguration {
  std::optional<std::string> userAge;
  std::optional<std::string> userGender;
};

}  // namespace tavo
