#pragma once

#include <cstdint>
#include <string_view>

namespace tavo {

// The switch `canMediate` stands in the application's settings and in the slot's: 1 or more is on,
// 0 is off, a negative value is "not set". Its two readers differ on purpose: after a failed
// request a hand-over is tried as soon as either says so, and the check of the hand-over itself
// then lets the slot overrule the application.

// Whether a failed request leads to an attempt at mediation.
[[nodiscard]] constexpr bool mediationFollowsFailure(std::int32_t global, std::int32_t slot) {
  return global >= 1 || slot >= 1;
}

// Whether mediation is switched on: by the slot if it is set there, or else by the application if
// it is set there. Who must have mediation does not ask.
[[nodiscard]] constexpr bool mediationIsSwitchedOn(std::int32_t global, std::int32_t slot) {
  if (slot >= 0) return slot != 0;
  return global > 0;
}

// What the host is told when it is off.
inline constexpr std::string_view mediationSwitchedOffText =
    "Cannot mediate. Please enable mediation at slot level or application level.";

}  // namespace tavo
