#pragma once

#include <optional>

#include <tavo/Date.h>

namespace tavo {

// A place on earth, in degrees (WGS 84).
struct Location {
  double latitude = 0;
  double longitude = 0;
  double horizontalAccuracy = 0;    // metres; negative: the place is not known
  std::optional<Date> timestamp{};  // when the place was found; none: not known
  friend bool operator==(const Location&, const Location&) = default;
};

}  // namespace tavo
