#include "UserInterface/NativeView/VideoReturn.h"

namespace tavo {

VideoReturn planReturn(const VideoStanding& standing) {
  if (standing.over) return {.handBack = true};
  const bool waits =
      standing.state == MoviePlaybackState::paused || standing.state == MoviePlaybackState::stopped;
  return {.beginAgain = !standing.prepared, .playOn = waits && !standing.endsWithClick};
}

}  // namespace tavo
