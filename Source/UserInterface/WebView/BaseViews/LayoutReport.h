#pragma once

#include <tavo/Geometry.h>
#include <tavo/MRAIDState.h>
#include <tavo/PlacementType.h>

namespace tavo {

// What decides what a creative is told about its place.
struct LayoutFacts {
  MRAIDState state = MRAIDState::normal;
  PlacementType placement = PlacementType::inlined;
  Size screen;
  Rect defaultFrame;
  Rect page;                // the page's place, or the ad view's for an interstitial
  bool isOnScreen = false;  // in a window and not hidden
  bool appBrowserOpen = false;
};

struct LayoutReport {
  Size screen;
  Rect defaultPosition;
  Rect currentPosition;
  bool isViewable = false;
  friend bool operator==(const LayoutReport&, const LayoutReport&) = default;
};

[[nodiscard]] LayoutReport layoutReport(const LayoutFacts& facts);

}  // namespace tavo
