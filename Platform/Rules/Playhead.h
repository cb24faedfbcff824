#pragma once

#include <optional>

#include <tavo/Date.h>

namespace tavo {

// Where a content stands, out of what its media framework says and when it says it. Frameworks tell
// no position, or the old one, while they seek, and claim to stand at the end of a video whose data
// has run out early; this does not. All positions are seconds.
class Playhead {
 public:
  // The content is not prepared yet and will start at `position`.
  void startAt(double position);

  // The content is prepared, and this long.
  void prepared(double duration) { duration_ = duration; }

  // The content plays on from where it is, or, after its end, from the start.
  void resumed(Seconds now) { lastSeen_ = now; }
  void restarted(Seconds now);

  void seekTo(double position);
  void sought(double position, Seconds now);

  // The framework names a position while no seek is under way. Returns whether that is news.
  bool moved(double position, Seconds now);

  // The content stands still at `position`.
  void heldAt(double position) { last_ = position; }

  // The data is over while the framework claims to stand at `position`. Returns whether the video
  // was played to its end, and stands there in that case.
  [[nodiscard]] bool ended(double position, bool hadVideo, Seconds now);

  // Where the content stands when the framework says `position`; none where it cannot be asked.
  [[nodiscard]] double time(std::optional<double> position) const;

  [[nodiscard]] double duration() const { return duration_; }
  [[nodiscard]] bool isSeeking() const { return seeking_.has_value(); }
  [[nodiscard]] bool isAtEnd() const { return atEnd_; }

 private:
  [[nodiscard]] double believable(double position, Seconds now) const;

  double duration_ = 0;            // 0: not known
  double last_ = 0;                // where it last was,
  Seconds lastSeen_{0};            // and when that was
  std::optional<double> seeking_;  // where to, while that is under way
  bool atEnd_ = false;
};

}  // namespace tavo
