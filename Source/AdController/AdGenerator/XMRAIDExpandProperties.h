#pragma once

#include <cstdint>
#include <string>

#include <tavo/Geometry.h>

#include "AdController/AdGenerator/MraidParameters.h"

namespace tavo {

// How a creative wants to be expanded. Nothing is checked here: whoever applies the record does.
struct XMRAIDExpandProperties {
  std::int64_t width = 0;       // points
  std::int64_t height = 0;      // points
  bool useCustomClose = false;  // the creative draws its own close control

  XMRAIDExpandProperties() = default;
  // Takes the size with its fractions cut off.
  explicit XMRAIDExpandProperties(const Size& size);

  // The record that the parameters of a command describe. What is missing or unreadable keeps its
  // default.
  [[nodiscard]] static XMRAIDExpandProperties propertiesFromArgs(const MraidParameters& args);

  // The record as a JavaScript object literal.
  [[nodiscard]] std::string description() const;

  friend bool operator==(const XMRAIDExpandProperties&, const XMRAIDExpandProperties&) = default;
};

}  // namespace tavo
