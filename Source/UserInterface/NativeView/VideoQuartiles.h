#pragma once

#include <array>
#include <span>

#include "Model/VASTDataModel/Elements/XTrackingEvent.h"

namespace tavo {

// A mark on the way through a video.
struct Quartile {
  int index;    // 0, 1, 2
  double part;  // of the video
  TrackingEventType event;
};

inline constexpr std::array<Quartile, 3> quartiles{{{0, 0.25, TrackingEventType::firstQuartile},
                                                    {1, 0.5, TrackingEventType::midpoint},
                                                    {2, 0.75, TrackingEventType::thirdQuartile}}};

// The quartiles that are reached between two places of a video, both given as parts of its length:
// those behind `from` and not beyond `to`. None when the way leads back.
[[nodiscard]] std::span<const Quartile> quartilesBetween(double from, double to);

}  // namespace tavo
