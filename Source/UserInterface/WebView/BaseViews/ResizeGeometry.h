#pragma once

#include <optional>
#include <string_view>
#include <variant>

#include <tavo/Geometry.h>
#include <tavo/MRAIDState.h>
#include <tavo/PlacementType.h>

#include "AdController/AdGenerator/XMRAIDResizeProperties.h"
#include "Services/Application.h"

namespace tavo {

// Where a resized ad and its close control go. Functions of values only; lengths in points.

inline constexpr double closeControlSide = 50;

// The room for resized ads: `bounds` of the controller's view, without the status bar where that
// view is as large as the screen.
[[nodiscard]] Rect resizeViewMaxRect(const Rect& bounds, const Size& screen,
                                     const Rect& statusBarFrame, InterfaceOrientation orientation);

// The corner of the close control in a container of the given size. Values that name no position
// count as top right.
[[nodiscard]] Point closeControlOrigin(CustomClosePosition position, const Size& container);

// `frame`, no larger than `room` and moved inside it.
[[nodiscard]] Rect keptInside(const Rect& frame, const Rect& room);

// What an ad looks like when its creative asks for another size.
struct ResizeFacts {
  bool byStandard = false;        // as MRAID 2.0 says
  std::optional<Rect> superview;  // the room, see resizeViewMaxRect; none: nothing to stand in
  PlacementType placement = PlacementType::inlined;
  MRAIDState state = MRAIDState::loading;
  bool isSeen = true;  // the ad's own place is on the screen
  Rect ad;             // the ad's own place, in the coordinates of the room
};

// Why a creative does not get its size: what its error event says.
struct ResizeRefusal {
  std::string_view message;
  std::string_view action;
  friend bool operator==(const ResizeRefusal&, const ResizeRefusal&) = default;
};

struct ResizePlan {
  Rect container;     // in the coordinates of the room
  Rect closeControl;  // in the container
  friend bool operator==(const ResizePlan&, const ResizePlan&) = default;
};

[[nodiscard]] std::variant<ResizeRefusal, ResizePlan> planResize(
    const XMRAIDResizeProperties& properties, const ResizeFacts& facts);

}  // namespace tavo
