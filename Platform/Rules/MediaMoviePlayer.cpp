#include "Rules/MediaMoviePlayer.h"

#include <algorithm>
#include <utility>

namespace tavo {

namespace {
// Once all is there that will be, what still has no length is a picture or a broadcast.
constexpr Seconds lengthPatience{1};
}  // namespace

MediaMoviePlayer::MediaMoviePlayer(const Rect& frame, std::shared_ptr<RunLoop> runLoop,
                                   const Limits& limits)
    : MoviePlayer{frame}, runLoop_{std::move(runLoop)}, limits_{limits} {}

void MediaMoviePlayer::reset() {
  watchdog_.invalidate();
  media_.reset();
  ++content_;
  stage_ = Stage::idle;
  wantsToPlay_ = hasPicture_ = false;
  canSeek_ = true;
  playhead_ = {};
}

void MediaMoviePlayer::closeMedia() {
  watchdog_.invalidate();
  media_.reset();
}

void MediaMoviePlayer::setContentUrl(const Url& url) {
  reset();
  contentUrl_ = url;
  contentCleared();
  setState(MoviePlaybackState::stopped);
}

void MediaMoviePlayer::prepareToPlay() {
  if (stage_ != Stage::idle || contentUrl_.empty()) return;
  stage_ = Stage::preparing;
  wantsToPlay_ = wantsToPlay_ || shouldAutoplay;
  watch(limits_.firstFrameTimeout, "No picture came in time.");
  whenUsable([weak = weak_from_this(), content = content_](bool usable) {
    const auto self = std::static_pointer_cast<MediaMoviePlayer>(weak.lock());
    if (self && self->content_ == content) self->begin(usable);
  });
}

void MediaMoviePlayer::openMedia() {
  media_ = open(contentUrl_, events());
  if (isMuted()) media_->setMuted(true);
}

void MediaMoviePlayer::begin(bool usable) {
  if (!usable) return failed(MovieError::unavailable, "No video can be played here.");
  if (!contentUrl_.isHttp()) {
    return failed(MovieError::notPlayable, "Only http and https are played.");
  }
  openMedia();
  media_->pause();
}

Media::Events MediaMoviePlayer::events() {
  return {.picture = [this] { picture(); },
          .playing = [this] { mediaPlays(); },
          .paused = [this] { mediaPauses(); },
          .moved = [this] { moved(); },
          .sought = [this] { sought(); },
          .ended = [this] { ended(); },
          .failed = [this](const std::string& why) { brokeOff(why); }};
}

void MediaMoviePlayer::picture() {
  hasPicture_ = true;
  becomePrepared();
}

// Picture and length come in any order.
void MediaMoviePlayer::becomePrepared() {
  if (stage_ != Stage::preparing || !hasPicture_ || !media_) return;
  const double length = media_->duration();
  if (!(length > 0)) return;
  watchdog_.invalidate();
  stage_ = Stage::prepared;
  const double start = playhead_.time(std::nullopt);
  playhead_.prepared(length);
  if (start > 0) seekMedia(start);
  positionChanged(start, length);
  const auto held = shared_from_this();
  const int content = content_;
  tellDurationAvailable();
  if (content_ == content && wantsToPlay_) play();
}

void MediaMoviePlayer::mediaPlays() {
  const auto held = shared_from_this();
  becomePrepared();
  if (stage_ != Stage::prepared || playhead_.isAtEnd()) return;
  if (wantsToPlay_) setState(MoviePlaybackState::playing);
}

void MediaMoviePlayer::mediaPauses() {
  const auto held = shared_from_this();
  becomePrepared();
  if (stage_ == Stage::preparing) {
    watchdog_ = runLoop_->after(lengthPatience, [this] {
      failed(MovieError::notPlayable, "It is no video of a known length.");
    });
  }
  if (stage_ != Stage::prepared || playhead_.isAtEnd() || wantsToPlay_) return;
  if (state_ == MoviePlaybackState::playing) setState(MoviePlaybackState::paused);
}

void MediaMoviePlayer::play() {
  wantsToPlay_ = true;
  if (stage_ == Stage::idle) return prepareToPlay();
  if (stage_ != Stage::prepared) return;
  if (playhead_.isAtEnd()) return beginAgain();
  watchForStall();
  playhead_.resumed(runLoop_->now());
  media_->play();
}

// From the first byte: not every server can be asked for less.
void MediaMoviePlayer::beginAgain() {
  retire(std::move(media_));
  playhead_.restarted(runLoop_->now());
  openMedia();
  if (!wantsToPlay_) return media_->pause();
  watchForStall();
  media_->play();
}

// Media may be in the middle of a call to this.
void MediaMoviePlayer::retire(std::unique_ptr<Media> media) {
  later([retired = std::shared_ptr<Media>{std::move(media)}] { /* gone with the task */ });
}

void MediaMoviePlayer::pause() {
  wantsToPlay_ = false;
  if (stage_ != Stage::prepared || playhead_.isAtEnd()) return;
  watchdog_.invalidate();
  playhead_.heldAt(currentPlaybackTime());
  media_->pause();
}

void MediaMoviePlayer::stop() {
  reset();
  setState(MoviePlaybackState::stopped);
}

double MediaMoviePlayer::currentPlaybackTime() const {
  const bool canBeAsked = stage_ == Stage::prepared && media_;
  return playhead_.time(canBeAsked ? std::optional{media_->position()} : std::nullopt);
}

void MediaMoviePlayer::setCurrentPlaybackTime(double seconds) {
  if (stage_ != Stage::prepared) return playhead_.startAt(seconds);
  seekMedia(std::clamp(seconds, 0.0, duration()));
}

void MediaMoviePlayer::seekMedia(double seconds) {
  if (!canSeek_) return;
  playhead_.seekTo(seconds);
  media_->seek(seconds);
  if (wantsToPlay_) watchForStall();
}

void MediaMoviePlayer::sought() {
  if (stage_ != Stage::prepared) return;
  playhead_.sought(media_->position(), runLoop_->now());
  if (!playhead_.isAtEnd()) positionChanged(currentPlaybackTime(), duration());
}

void MediaMoviePlayer::seekByHand(double seconds) {
  if (stage_ != Stage::prepared) return;
  if (!isSoughtByHand()) beforeSeek_ = state_;
  setState(seconds < currentPlaybackTime() ? MoviePlaybackState::seekingBackward
                                           : MoviePlaybackState::seekingForward);
  setCurrentPlaybackTime(seconds);
  later([weak = weak_from_this(), seek = ++seekByHand_] {
    const auto self = std::static_pointer_cast<MediaMoviePlayer>(weak.lock());
    if (!self || self->seekByHand_ != seek || !self->isSoughtByHand()) return;
    self->setState(self->stateAfterSeek());
  });
}

// It may have been told to play or to pause on the way.
MoviePlaybackState MediaMoviePlayer::stateAfterSeek() const {
  if (wantsToPlay_) return MoviePlaybackState::playing;
  return beforeSeek_ == MoviePlaybackState::playing ? MoviePlaybackState::paused : beforeSeek_;
}

bool MediaMoviePlayer::isSoughtByHand() const {
  return state_ == MoviePlaybackState::seekingForward ||
         state_ == MoviePlaybackState::seekingBackward;
}

void MediaMoviePlayer::moved() {
  const auto held = shared_from_this();
  becomePrepared();
  if (stage_ != Stage::prepared || playhead_.isAtEnd() || playhead_.isSeeking()) return;
  const double position = media_->position();
  positionChanged(position, duration());
  if (playhead_.moved(position, runLoop_->now()) && wantsToPlay_) watchForStall();
}

// Data that is over says nothing of the video: a file that was cut is over early.
void MediaMoviePlayer::ended() {
  if (playhead_.isAtEnd() || !media_) return;
  const bool wasPrepared = stage_ == Stage::prepared;
  const bool hadVideo = wasPrepared && hasPicture_ && media_->hasVideo();
  if (!playhead_.ended(media_->position(), hadVideo, runLoop_->now())) {
    return failed(wasPrepared ? MovieError::incomplete : MovieError::notPlayable,
                  "The data ended before the video did.");
  }
  wantsToPlay_ = false;
  watchdog_.invalidate();
  setState(MoviePlaybackState::paused);
  finish(MovieFinishReason::playbackEnded, std::nullopt);
}

void MediaMoviePlayer::brokeOff(const std::string& why) {
  note(why);
  if (playhead_.isSeeking()) {
    // The server cannot start in the middle, and has stopped sending what it sent.
    canSeek_ = false;
    return beginAgain();
  }
  const bool begun = stage_ == Stage::prepared;
  failed(begun ? MovieError::incomplete : MovieError::notPlayable,
         begun ? "The video broke off." : "The video cannot be played.");
}

void MediaMoviePlayer::failed(MovieError code, std::string_view why) {
  retire(std::move(media_));
  const Error error = makeError(code, why);
  reset();
  setState(MoviePlaybackState::stopped);
  finish(MovieFinishReason::playbackError, error);
}

void MediaMoviePlayer::finish(MovieFinishReason reason, std::optional<Error> error) {
  later([weak = weak_from_this(), content = content_, reason, error = std::move(error)] {
    const auto self = std::static_pointer_cast<MediaMoviePlayer>(weak.lock());
    if (self && self->content_ == content) self->tellFinish(reason, error);
  });
}

void MediaMoviePlayer::setState(MoviePlaybackState state) {
  if (state_ == state) return;
  state_ = state;
  stateChanged(state);
  later([weak = weak_from_this(), content = content_, state] {
    const auto self = std::static_pointer_cast<MediaMoviePlayer>(weak.lock());
    if (self && self->content_ == content && self->state_ == state) self->tellPlaybackState();
  });
}

void MediaMoviePlayer::watch(Seconds patience, const char* complaint) {
  watchdog_ =
      runLoop_->after(patience, [this, complaint] { failed(MovieError::timedOut, complaint); });
}

void MediaMoviePlayer::watchForStall() { watch(limits_.stallTimeout, "The video stands still."); }

}  // namespace tavo
