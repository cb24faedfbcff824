#pragma once

#include <string_view>

namespace tavo {

// Where a creative stands in its life. The values are part of the interface.
enum class MRAIDState : int {
  loading = 0,
  normal = 1,  // "default" in MRAID, which is a keyword here
  expanded = 2,
  hidden = 3,
  resized = 4,
};

// The state's name in scripts; "(null)" for a value that has none.
[[nodiscard]] constexpr std::string_view nameOf(MRAIDState state) {
  switch (state) {
    case MRAIDState::loading:
      return "loading";
    case MRAIDState::normal:
      return "default";
    case MRAIDState::expanded:
      return "expanded";
    case MRAIDState::hidden:
      return "hidden";
    case MRAIDState::resized:
      return "resized";
  }
  return "(null)";
}

}  // namespace tavo
