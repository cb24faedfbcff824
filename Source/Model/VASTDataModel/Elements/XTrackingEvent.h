#pragma once

#include <string_view>

#include "Model/VASTDataModel/Elements/AttributeMap.h"

namespace tavo {

// What a video can report. The numbers are fixed: midpoint stands before the quartiles, 12 and 13
// mean nothing.
enum class TrackingEventType : int {
  unknown = 0,
  start = 1,
  midpoint = 2,
  firstQuartile = 3,
  thirdQuartile = 4,
  complete = 5,
  mute = 6,
  unmute = 7,
  pause = 8,
  rewind = 9,
  resume = 10,
  fullscreen = 11,
  acceptInvitation = 14,
  close = 15,
  exitFullscreen = 16,
  skip = 17,
  progress = 18,
};

// One place to tell when something happens while the ad plays.
struct XTrackingEvent {
  TrackingEventType eventType = TrackingEventType::unknown;
  OptionalText eventURL;

  // The event of this name, letter case included; a name that means nothing gives the type unknown.
  [[nodiscard]] static XTrackingEvent getTrackingEventWithEvent(std::string_view event,
                                                                OptionalText URL);
};

}  // namespace tavo
