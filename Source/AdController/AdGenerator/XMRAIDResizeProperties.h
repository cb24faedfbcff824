#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "AdController/AdGenerator/MraidParameters.h"

namespace tavo {

// Where the close control of a resized ad stands. The values are part of the interface.
enum class CustomClosePosition : int {
  topLeft = 0,
  topCenter = 1,
  topRight = 2,
  center = 3,
  bottomLeft = 4,
  bottomCenter = 5,
  bottomRight = 6,
};

// The position's name in scripts; "(null)" for a value that has none.
[[nodiscard]] std::string_view nameOf(CustomClosePosition position);

// How a creative wants to be resized. Nothing is checked here: whoever applies the record does.
struct XMRAIDResizeProperties {
  std::int64_t width = 0;   // points
  std::int64_t height = 0;  // points
  CustomClosePosition customClosePosition = CustomClosePosition::topRight;
  std::int64_t offsetX = 0;  // points from the ad's own left edge
  std::int64_t offsetY = 0;  // points from the ad's own top edge
  // Quirk: MRAID's default is true. The record's is false, and the script hides the difference from
  // creatives by always naming a value.
  bool allowOffscreen = false;

  // The record that the parameters of a command describe. What is missing or unreadable keeps its
  // default.
  [[nodiscard]] static XMRAIDResizeProperties propertiesFromArgs(const MraidParameters& args);

  // The record as a JavaScript object literal.
  [[nodiscard]] std::string description() const;

  friend bool operator==(const XMRAIDResizeProperties&, const XMRAIDResizeProperties&) = default;
};

}  // namespace tavo
