#pragma once

#include <span>
#include <string_view>

namespace tavo::adplayer {

enum class PointIsMet { always, inTheMode };  // the slots' standards mode

// One thing that MRAID 2.0 promises to a creative, as the checklist's creatives look at it.
struct MraidPoint {
  std::string_view name;
  std::string_view sentence;
  std::string_view creative;  // that tells of it
  PointIsMet isMet = PointIsMet::always;
};

// All of them, in the order in which they are printed.
[[nodiscard]] std::span<const MraidPoint> mraidPoints();

}  // namespace tavo::adplayer
