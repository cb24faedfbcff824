#include "UserInterface/WebView/BaseViews/ResizeGeometry.h"

#include <algorithm>

namespace tavo {

namespace {

double movedInside(double start, double length, double roomStart, double roomEnd) {
  if (start < roomStart) return roomStart;
  const double overhang = start + length - roomEnd;
  return overhang > 0 ? start - overhang : start;
}

// What stands in the way before any size is looked at.
std::optional<ResizeRefusal> refusalByState(const ResizeFacts& facts) {
  // Quirk: these two name the wrong action.
  const std::string_view action = facts.byStandard ? "resize" : "expand";
  if (!facts.superview) {
    return ResizeRefusal{"Unable to determine superview for resize container view.", action};
  }
  if (facts.placement == PlacementType::interstitial) {
    return ResizeRefusal{"Cannot Resize Ad when PlacementType is Interstitial", action};
  }
  if (facts.state == MRAIDState::loading || facts.state == MRAIDState::hidden) {
    return ResizeRefusal{"Can not resize while loading or hidden.", "resize"};
  }
  if (facts.state == MRAIDState::expanded) {
    return ResizeRefusal{"Can not resize while view is Already expanded .", "resize"};
  }
  // Nothing comes onto the screen from a place that is not on it.
  if (!facts.isSeen) {
    return ResizeRefusal{"Can not resize while the ad is not on the screen.", "resize"};
  }
  return std::nullopt;
}

std::optional<ResizeRefusal> refusalBySize(const Size& asked, const Rect& room, bool byStandard) {
  if (asked.width == 0 && asked.height == 0) {
    return ResizeRefusal{"Size required in resizeProperties.", "resize"};
  }
  // Quirk: an ad as large as the room is refused, one that is too large in one direction is not.
  if (asked.width >= room.width && asked.height >= room.height) {
    return ResizeRefusal{"Size must be smaller than the max size.", "resize"};
  }
  if (byStandard && (asked.width > room.width || asked.height > room.height)) {
    return ResizeRefusal{"Size must not be larger than the max size.", "resize"};
  }
  return std::nullopt;
}

}  // namespace

Rect resizeViewMaxRect(const Rect& bounds, const Size& screen, const Rect& statusBarFrame,
                       InterfaceOrientation orientation) {
  if (bounds.size() != screen || statusBarFrame.empty()) return bounds;
  const double strip = isPortrait(orientation) ? statusBarFrame.height : statusBarFrame.width;
  return {bounds.x, bounds.y + strip, bounds.width, bounds.height - strip};
}

Point closeControlOrigin(CustomClosePosition position, const Size& container) {
  const double middleX = container.width / 2 - closeControlSide / 2;
  const double middleY = container.height / 2 - closeControlSide / 2;
  const double right = container.width - closeControlSide;
  const double bottom = container.height - closeControlSide;
  switch (position) {
    case CustomClosePosition::topLeft:
      return {0, 0};
    case CustomClosePosition::topCenter:
      return {middleX, 0};
    case CustomClosePosition::topRight:
      break;
    case CustomClosePosition::center:
      return {middleX, middleY};
    case CustomClosePosition::bottomLeft:
      return {0, bottom};
    case CustomClosePosition::bottomCenter:
      return {middleX, bottom};
    case CustomClosePosition::bottomRight:
      return {right, bottom};
  }
  return {right, 0};
}

Rect keptInside(const Rect& frame, const Rect& room) {
  Rect kept = frame;
  kept.width = std::min(kept.width, room.width);
  kept.height = std::min(kept.height, room.height);
  kept.x = movedInside(kept.x, kept.width, room.x, room.right());
  kept.y = movedInside(kept.y, kept.height, room.y, room.bottom());
  return kept;
}

std::variant<ResizeRefusal, ResizePlan> planResize(const XMRAIDResizeProperties& properties,
                                                   const ResizeFacts& facts) {
  if (const auto refusal = refusalByState(facts)) return *refusal;
  const Rect& room = *facts.superview;
  const Size asked{static_cast<double>(properties.width), static_cast<double>(properties.height)};
  if (const auto refusal = refusalBySize(asked, room, facts.byStandard)) return *refusal;

  Rect container{facts.ad.x + static_cast<double>(properties.offsetX),
                 facts.ad.y + static_cast<double>(properties.offsetY), asked.width, asked.height};
  if (!properties.allowOffscreen && !room.contains(container)) {
    container = keptInside(container, room);
  }
  const Point corner = closeControlOrigin(properties.customClosePosition, container.size());
  const Rect control{corner.x, corner.y, closeControlSide, closeControlSide};
  // A user must be able to leave, also where the ad may reach beyond the screen.
  if (!room.contains(control.movedBy(container.x, container.y))) {
    return ResizeRefusal{"Resize close control must remain on screen.", "resize"};
  }
  return ResizePlan{container, control};
}

}  // namespace tavo
