#include "Headless/ScriptedMedia.h"

#include <algorithm>
#include <utility>

namespace tavo::headless {

namespace {
constexpr Seconds tickPeriod{0.5};
constexpr Seconds nextTurn{0};
}  // namespace

ScriptedMedia::ScriptedMedia(std::shared_ptr<RunLoop> runLoop, const ScriptedMovie& movie,
                             Events events)
    : runLoop_{std::move(runLoop)}, movie_{movie}, events_{std::move(events)} {
  if (movie_.arrives) arrival_ = runLoop_->after(movie_.arrival, [this] { arrive(); });
}

// An event may end the media, so it comes last.
void ScriptedMedia::arrive() {
  if (!movie_.hasVideo) {
    const auto failed = events_.failed;
    return failed("There is no video in it.");
  }
  arrived_ = true;
  if (plays_) run();
  const auto picture = events_.picture;
  picture();
}

void ScriptedMedia::run() {
  since_ = runLoop_->now();
  tick_ = runLoop_->every(tickPeriod, [this] {
    const auto moved = events_.moved;
    moved();
  });
  stateReport_ = runLoop_->after(nextTurn, events_.playing);
  const double end = std::min(movie_.duration, movie_.cutAt);
  if (movie_.stallAt < end) return end_.invalidate();
  end_ = runLoop_->after(Seconds{std::max(end - position_, 0.0)}, [this] { dataEnded(); });
}

void ScriptedMedia::dataEnded() {
  position_ = position();
  plays_ = false;
  tick_.invalidate();
  const auto ended = events_.ended;
  ended();
}

void ScriptedMedia::play() {
  if (std::exchange(plays_, true)) return;
  if (arrived_) run();
}

void ScriptedMedia::pause() {
  position_ = position();
  plays_ = false;
  tick_.invalidate();
  end_.invalidate();
  if (arrived_) stateReport_ = runLoop_->after(nextTurn, events_.paused);
}

void ScriptedMedia::seek(double seconds) {
  position_ = seconds;
  if (plays_) run();
  seekReport_ = runLoop_->after(nextTurn, events_.sought);
}

double ScriptedMedia::position() const {
  if (!plays_ || !arrived_) return position_;
  const double played = position_ + (runLoop_->now() - since_).count();
  return std::min({played, movie_.duration, movie_.cutAt, movie_.stallAt});
}

}  // namespace tavo::headless
