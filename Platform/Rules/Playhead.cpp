#include "Rules/Playhead.h"

#include <algorithm>

#include <tavo/MoviePlayer.h>

namespace tavo {

void Playhead::startAt(double position) { last_ = std::max(position, 0.0); }

void Playhead::restarted(Seconds now) {
  seeking_.reset();
  atEnd_ = false;
  last_ = 0;
  lastSeen_ = now;
}

void Playhead::seekTo(double position) {
  atEnd_ = false;
  last_ = position;
  seeking_ = position;
}

void Playhead::sought(double position, Seconds now) {
  seeking_.reset();
  if (atEnd_) return;
  last_ = position;
  lastSeen_ = now;
}

bool Playhead::moved(double position, Seconds now) {
  if (position == last_) return false;
  last_ = believable(position, now);
  lastSeen_ = now;
  return true;
}

// No video plays faster than the time that has passed.
double Playhead::believable(double position, Seconds now) const {
  constexpr double tolerance = 0.25;
  return std::min(position, last_ + (now - lastSeen_).count() + tolerance);
}

bool Playhead::ended(double position, bool hadVideo, Seconds now) {
  const double last = believable(std::max(last_, position), now);
  if (!playedThrough({hadVideo, duration_, last})) return false;
  atEnd_ = true;
  seeking_.reset();
  last_ = duration_;
  return true;
}

double Playhead::time(std::optional<double> position) const {
  if (seeking_) return *seeking_;
  return atEnd_ ? last_ : position.value_or(last_);
}

}  // namespace tavo
