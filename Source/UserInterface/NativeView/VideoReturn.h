#pragma once

#include <tavo/MoviePlayer.h>

namespace tavo {

// How a video ad stands when the user comes back to the application.
struct VideoStanding {
  bool over = false;  // it has ended, or gone to sleep, behind the lock
  bool prepared = false;
  MoviePlaybackState state = MoviePlaybackState::stopped;
  bool endsWithClick = false;  // a click that leaves the application ends it
};

// What follows, in this order.
struct VideoReturn {
  bool handBack = false;    // the ad is over: the host's player goes back
  bool beginAgain = false;  // fetch the video anew
  bool playOn = false;
  friend bool operator==(const VideoReturn&, const VideoReturn&) = default;
};
[[nodiscard]] VideoReturn planReturn(const VideoStanding& standing);

}  // namespace tavo
