#include "UserInterface/WebView/BaseViews/PlaceReport.h"

namespace tavo {

Rect exposedPart(const ExposureFacts& facts) {
  if (facts.isHidden || facts.isCovered) return {};
  const Rect part = facts.ad.intersection(facts.window);
  if (!facts.shown) return part;
  return part.intersection(facts.shown->movedBy(facts.ad.x, facts.ad.y));
}

MraidPlace placeReport(const PlaceFacts& facts) {
  const Rect whole{0, 0, facts.screen.width, facts.screen.height};
  const bool fills =
      facts.isInterstitial || (facts.state == MRAIDState::expanded && !facts.isElsewhere);
  const auto inRoom = [&](const Rect& rect) { return rect.movedBy(-facts.room.x, -facts.room.y); };
  MraidPlace place{.state = facts.state,
                   .screen = facts.screen,
                   .room = fills ? facts.screen : facts.room.size(),
                   .defaultPosition = facts.isInterstitial ? whole : inRoom(facts.slot),
                   .currentPosition = inRoom(facts.slot),
                   .isViewable = facts.isExposed};
  if (fills) place.currentPosition = whole;
  if (facts.state == MRAIDState::resized) place.currentPosition = inRoom(facts.resized);
  if (facts.state == MRAIDState::hidden || facts.isElsewhere) place.isViewable = false;
  return place;
}

XMRAIDOrientationProperties effectiveOrientation(const XMRAIDOrientationProperties& asked) {
  XMRAIDOrientationProperties effective = asked;
  if (asked.forceOrientation != ForceOrientation::none) effective.allowOrientationChange = false;
  return effective;
}

}  // namespace tavo
