#pragma once

#include <optional>
#include <span>

#include <tavo/MoviePlayer.h>

#include "UserInterface/NativeView/VideoQuartiles.h"

namespace tavo {

// What a change of a video's playback means for the ad.
enum class Milestone { none, start, pause, resume, rewind };

// How far an ad's video has come: what has been reported of it and is not reported again. It knows
// neither player nor observer.
class VideoMilestones {
 public:
  // The video is about to be played; its next playing is its start. What was reached before stays
  // reported.
  void begin() { started_ = false; }

  // `prepared`: the video can be played; `atEnd`: it stands at its end, where a player pauses by
  // itself, which is no pause of the user's.
  struct Facts {
    bool prepared = false;
    bool atEnd = false;
  };
  [[nodiscard]] Milestone playbackChanged(MoviePlaybackState state, const Facts& facts);

  // The quartiles that are new at this place, a part of the video's length; each is told once,
  // wherever the video goes afterwards.
  [[nodiscard]] std::span<const Quartile> reached(double part);
  [[nodiscard]] bool isReached(const Quartile& quartile) const {
    return furthest_ >= quartile.part;
  }
  // The part of the length at which the next quartile is; none behind the last.
  [[nodiscard]] std::optional<double> nextQuartile() const;

 private:
  bool started_ = true;
  bool paused_ = false;
  double furthest_ = 0;
};

}  // namespace tavo
