#pragma once

#include <optional>

#include <tavo/Geometry.h>

#include "AdController/AdGenerator/MraidPlace.h"
#include "AdController/AdGenerator/XMRAIDOrientationProperties.h"

namespace tavo {

// What a creative is told of its place where it is treated by the standard. Functions of values
// only; lengths in points.

// What decides whether an ad can be seen.
struct ExposureFacts {
  Rect ad;                      // in its window
  Rect window;                  // its bounds; empty: the ad is in none
  std::optional<Rect> shown{};  // the part of `ad` that the host shows, in the ad's own coordinates
  bool isHidden = false;        // the ad or something above it
  bool isCovered = false;       // something stands above all of it
};

// The part of the ad that a person can see, in the window's coordinates; empty: nothing of it.
[[nodiscard]] Rect exposedPart(const ExposureFacts& facts);

struct PlaceFacts {
  MRAIDState state = MRAIDState::normal;
  bool isInterstitial = false;
  bool isElsewhere = false;  // another page stands on the screen for this one
  Size screen;
  Rect room;     // for ads among the content, in some coordinates
  Rect slot;     // the ad's own place, in the same ones
  Rect resized;  // that of a resized ad
  bool isExposed = false;
};

// The room's corner is the origin of what creatives are told.
[[nodiscard]] MraidPlace placeReport(const PlaceFacts& facts);

// A forced orientation counts whether or not changes are allowed.
[[nodiscard]] XMRAIDOrientationProperties effectiveOrientation(
    const XMRAIDOrientationProperties& asked);

}  // namespace tavo
