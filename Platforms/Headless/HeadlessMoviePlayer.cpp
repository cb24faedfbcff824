#include "Headless/HeadlessMoviePlayer.h"

#include <algorithm>
#include <utility>

namespace tavo::headless {

HeadlessMoviePlayer::HeadlessMoviePlayer(Rect frame, std::shared_ptr<RunLoop> runLoop,
                                         std::shared_ptr<const ScriptedMovies> movies,
                                         const Limits& limits)
    : MoviePlayer{frame},
      runLoop_{std::move(runLoop)},
      movies_{std::move(movies)},
      limits_{limits} {}

void HeadlessMoviePlayer::reset() {
  next_.invalidate();
  ++content_;
  preparing_ = prepared_ = playsWhenPrepared_ = ended_ = false;
  position_ = 0;
}

void HeadlessMoviePlayer::setContentUrl(const Url& url) {
  reset();
  contentUrl_ = url;
  setState(MoviePlaybackState::stopped);
}

void HeadlessMoviePlayer::prepareToPlay() {
  if (preparing_ || prepared_ || contentUrl_.empty()) return;
  preparing_ = true;
  playsWhenPrepared_ = playsWhenPrepared_ || shouldAutoplay;
  const auto known = movies_->find(contentUrl_.text());
  if (!contentUrl_.isHttp() || known == movies_->end()) {
    return failed(MovieError::notPlayable, "No video.");
  }
  movie_ = known->second;
  if (movie_.arrives) {
    next_ = runLoop_->after(movie_.arrival, [this] { arrived(); });
  } else {
    next_ = runLoop_->after(limits_.firstFrameTimeout,
                            [this] { failed(MovieError::timedOut, "No picture."); });
  }
}

void HeadlessMoviePlayer::arrived() {
  const auto held = shared_from_this();
  preparing_ = false;
  if (!movie_.hasVideo) return failed(MovieError::notPlayable, "No video.");
  prepared_ = true;
  tellDurationAvailable();
  if (prepared_ && playsWhenPrepared_) play();
}

void HeadlessMoviePlayer::play() {
  if (!prepared_) {
    playsWhenPrepared_ = true;
    prepareToPlay();
    return;
  }
  if (state_ == MoviePlaybackState::playing) return;
  if (std::exchange(ended_, false)) position_ = 0;
  since_ = runLoop_->now();
  setState(MoviePlaybackState::playing);
  scheduleEnd();
}

void HeadlessMoviePlayer::pause() {
  playsWhenPrepared_ = false;
  if (state_ != MoviePlaybackState::playing) return;
  position_ = currentPlaybackTime();
  next_.invalidate();
  setState(MoviePlaybackState::paused);
}

void HeadlessMoviePlayer::stop() {
  reset();
  setState(MoviePlaybackState::stopped);
}

double HeadlessMoviePlayer::currentPlaybackTime() const {
  if (state_ != MoviePlaybackState::playing) return position_;
  const double played = position_ + (runLoop_->now() - since_).count();
  return std::min({played, movie_.duration, movie_.cutAt, movie_.stallAt});
}

void HeadlessMoviePlayer::setCurrentPlaybackTime(double seconds) {
  position_ = prepared_ ? std::clamp(seconds, 0.0, movie_.duration) : std::max(seconds, 0.0);
  since_ = runLoop_->now();
  ended_ = false;
  if (state_ == MoviePlaybackState::playing) scheduleEnd();
}

double HeadlessMoviePlayer::duration() const { return prepared_ ? movie_.duration : 0; }

void HeadlessMoviePlayer::seek(double seconds) {
  if (!isDragged()) beforeDrag_ = state_;
  const bool back = seconds < currentPlaybackTime();
  setState(back ? MoviePlaybackState::seekingBackward : MoviePlaybackState::seekingForward);
  setCurrentPlaybackTime(seconds);
  later([weak = weak_from_this(), drag = ++drag_] {
    const auto self = std::static_pointer_cast<HeadlessMoviePlayer>(weak.lock());
    if (!self || self->drag_ != drag || !self->isDragged()) return;
    self->setState(self->beforeDrag_);
    if (self->beforeDrag_ == MoviePlaybackState::playing) self->scheduleEnd();
  });
}

bool HeadlessMoviePlayer::isDragged() const {
  return state_ == MoviePlaybackState::seekingForward ||
         state_ == MoviePlaybackState::seekingBackward;
}

void HeadlessMoviePlayer::setState(MoviePlaybackState state) {
  if (state_ == state) return;
  state_ = state;
  later([weak = weak_from_this(), content = content_, state] {
    const auto self = std::static_pointer_cast<HeadlessMoviePlayer>(weak.lock());
    if (self && self->content_ == content && self->state_ == state) self->tellPlaybackState();
  });
}

void HeadlessMoviePlayer::scheduleEnd() {
  const double end = std::min(movie_.duration, movie_.cutAt);
  if (movie_.stallAt < end) {
    const Seconds rest{std::max(movie_.stallAt - position_, 0.0)};
    next_ = runLoop_->after(rest + limits_.stallTimeout,
                            [this] { failed(MovieError::timedOut, "Stalled."); });
    return;
  }
  next_ = runLoop_->after(Seconds{std::max(end - position_, 0.0)}, [this] { dataEnded(); });
}

void HeadlessMoviePlayer::dataEnded() {
  const PlayedContent played{movie_.hasVideo, movie_.duration, currentPlaybackTime()};
  if (!playedThrough(played)) return failed(MovieError::incomplete, "Cut short.");
  ended_ = true;
  position_ = movie_.duration;
  setState(MoviePlaybackState::paused);
  finish(MovieFinishReason::playbackEnded, std::nullopt);
}

void HeadlessMoviePlayer::failed(MovieError code, std::string_view why) {
  const Error error = makeError(code, why);
  reset();
  setState(MoviePlaybackState::stopped);
  finish(MovieFinishReason::playbackError, error);
}

void HeadlessMoviePlayer::finish(MovieFinishReason reason, std::optional<Error> error) {
  later([weak = weak_from_this(), content = content_, reason, error = std::move(error)] {
    const auto self = std::static_pointer_cast<HeadlessMoviePlayer>(weak.lock());
    if (self && self->content_ == content) self->tellFinish(reason, error);
  });
}

}  // namespace tavo::headless
