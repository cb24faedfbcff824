#pragma once

#include <optional>
#include <string>

namespace tavo {

// What the network operator of the SIM says about itself; absent: not told.
struct Carrier {
  std::optional<std::string> name;
  std::optional<std::string> isoCountryCode;     // for example "ch"
  std::optional<std::string> mobileCountryCode;  // for example "228"
  std::optional<std::string> mobileNetworkCode;  // for example "01"
  friend bool operator==(const Carrier&, const Carrier&) = default;
};

}  // namespace tavo
