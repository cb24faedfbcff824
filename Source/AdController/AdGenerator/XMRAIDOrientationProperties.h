#pragma once

#include <string>
#include <string_view>

#include "AdController/AdGenerator/MraidParameters.h"

namespace tavo {

// The orientation a creative insists on. The values are part of the interface.
enum class ForceOrientation : int { portrait = 0, landscape = 1, none = 2 };

// The orientation's name in scripts; "none" also for a value that has none.
[[nodiscard]] constexpr std::string_view nameOf(ForceOrientation orientation) {
  switch (orientation) {
    case ForceOrientation::portrait:
      return "portrait";
    case ForceOrientation::landscape:
      return "landscape";
    case ForceOrientation::none:
      break;
  }
  return "none";
}

// How a full-screen creative wants to follow the device's rotation.
struct XMRAIDOrientationProperties {
  bool allowOrientationChange = true;
  ForceOrientation forceOrientation = ForceOrientation::none;

  // The record that the parameters of a command describe. What is missing or unreadable keeps its
  // default.
  [[nodiscard]] static XMRAIDOrientationProperties propertiesFromArgs(const MraidParameters& args);

  // The record as a JavaScript object literal.
  [[nodiscard]] std::string description() const;

  friend bool operator==(const XMRAIDOrientationProperties&,
                         const XMRAIDOrientationProperties&) = default;
};

}  // namespace tavo
