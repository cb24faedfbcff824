#include "UserInterface/NativeView/VideoMilestones.h"

#include <algorithm>
#include <utility>

namespace tavo {

Milestone VideoMilestones::playbackChanged(MoviePlaybackState state, const Facts& facts) {
  switch (state) {
    case MoviePlaybackState::playing:
      if (!std::exchange(started_, true)) return Milestone::start;
      if (!paused_ || !facts.prepared) return Milestone::none;
      paused_ = false;
      return Milestone::resume;
    case MoviePlaybackState::paused:
      if (!facts.prepared || facts.atEnd) return Milestone::none;
      paused_ = true;
      return Milestone::pause;
    case MoviePlaybackState::seekingBackward:
      return Milestone::rewind;
    case MoviePlaybackState::stopped:
    case MoviePlaybackState::interrupted:
    case MoviePlaybackState::seekingForward:
      return Milestone::none;
  }
  return Milestone::none;
}

std::span<const Quartile> VideoMilestones::reached(double part) {
  const double before = std::exchange(furthest_, std::max(furthest_, part));
  return quartilesBetween(before, furthest_);
}

std::optional<double> VideoMilestones::nextQuartile() const {
  const auto left = quartilesBetween(furthest_, 1);
  return left.empty() ? std::nullopt : std::optional{left.front().part};
}

}  // namespace tavo
