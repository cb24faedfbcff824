#pragma once

#include <string_view>

namespace tavo {

// Where a creative stands in its life, by MRAID 2.0. It hears of each change through its state
// listener. The values are part of the interface.
enum class MRAIDState : int {
  loading = 0,   // its script may not be called yet
  normal = 1,    // at its place; "default" in MRAID, which is a keyword here
  expanded = 2,  // over the whole window, a close control in reach
  hidden = 3,    // closed for good
  resized = 4,   // larger or elsewhere, above the host's content
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
