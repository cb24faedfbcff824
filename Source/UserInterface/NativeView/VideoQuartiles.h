#pragma once

#include <span>

#include "Model/VASTDataModel/Elements/XTrackingEvent.h"

namespace tavo {

// A mark on the way through a video.
struct Quartile {
  int index;    // 0, 1, 2
  double part;  // of the video
  TrackingEventType event;
};

// The quartiles that are reached between two places of a video, both given as parts of its length:
// those behind `from` and not beyond `to`. None when the way leads back.
[[nodiscard]] std::span<const Quartile> quartilesBetween(double from, double to);

}  // namespace tavo
