#pragma once

#include <string_view>

namespace tavo {

// Whether an ad stands among the host's content or covers it, as a creative hears it (MRAID 2.0,
// getPlacementType). An interstitial cannot expand or resize. The values are part of the interface.
enum class PlacementType : int {
  inlined = 0,  // "inline" in MRAID, which is a keyword here
  interstitial = 1,
};

// The placement's name in scripts; "(null)" for a value that has none.
[[nodiscard]] constexpr std::string_view nameOf(PlacementType placement) {
  switch (placement) {
    case PlacementType::inlined:
      return "inline";
    case PlacementType::interstitial:
      return "interstitial";
  }
  return "(null)";
}

}  // namespace tavo
