#include "Gtk/Video/GtkMoviePlayer.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tavo::gtk {

namespace {
constexpr Seconds lengthPatience{1};
}  // namespace

GtkMoviePlayer::GtkMoviePlayer(const Rect& frame, std::shared_ptr<MediaEngine> engine)
    : MoviePlayer{frame},
      engine_{std::move(engine)},
      overlay_{GPtr<GtkWidget>::sink(gtk_overlay_new())},
      picture_{gtk_picture_new_for_paintable(frame_.paintable())},
      controls_{
          {.playOrPause = [this] { state_ == MoviePlaybackState::playing ? pause() : play(); },
           .seek = [this](double seconds) { seekByHand(seconds); },
           .fullscreen = [this] { setFullscreen(!isFullscreen()); }}},
      taps_{picture_, [this] { recognizeTap(*this); }} {
  setBackgroundColor(colors::black);
  gtk_picture_set_can_shrink(GTK_PICTURE(picture_), TRUE);
  gtk_overlay_set_child(GTK_OVERLAY(overlay_.get()), picture_);
  gtk_overlay_add_overlay(GTK_OVERLAY(overlay_.get()), controls_.widget());
}

GtkMoviePlayer::~GtkMoviePlayer() {
  watchdog_.invalidate();
  playback_.reset();
  frame_.show(nullptr);
}

void GtkMoviePlayer::later(std::function<void()> task) {
  engine_->services().runLoop->post(std::move(task));
}

void GtkMoviePlayer::reset() {
  watchdog_.invalidate();
  playback_.reset();
  ++content_;
  stage_ = Stage::idle;
  wantsToPlay_ = hasPicture_ = ended_ = false;
  canSeek_ = true;
  seeking_.reset();
  duration_ = start_ = lastPosition_ = 0;
}

void GtkMoviePlayer::setContentUrl(const Url& url) {
  reset();
  contentUrl_ = url;
  frame_.show(nullptr);
  setState(MoviePlaybackState::stopped);
}

void GtkMoviePlayer::prepareToPlay() {
  if (stage_ != Stage::idle || contentUrl_.empty()) return;
  stage_ = Stage::preparing;
  wantsToPlay_ = wantsToPlay_ || shouldAutoplay;
  watch(engine_->services().limits.firstFrameTimeout, "No picture came in time.");
  engine_->whenReady([weak = weak_from_this(), content = content_](bool usable) {
    const auto self = std::static_pointer_cast<GtkMoviePlayer>(weak.lock());
    if (self && self->content_ == content) self->begin(usable);
  });
}

void GtkMoviePlayer::begin(bool usable) {
  if (!usable) return failed(MovieError::unavailable, "No video can be played here.");
  if (!contentUrl_.isHttp())
    return failed(MovieError::notPlayable, "Only http and https are played.");
  playback_ = std::make_unique<Playback>(*engine_, contentUrl_.text(), events());
  playback_->pause();
}

Playback::Events GtkMoviePlayer::events() {
  return {.picture = [this](GdkTexture* picture) { showPicture(picture); },
          .state = [this](GstPlayState state) { engineState(state); },
          .moved = [this] { moved(); },
          .sought = [this] { sought(); },
          .ended = [this] { ended(); },
          .failed = [this](const std::string& why) { brokeOff(why); }};
}

void GtkMoviePlayer::showPicture(GdkTexture* picture) {
  frame_.show(picture);
  hasPicture_ = true;
  prepared();
}

// Picture and length come in any order.
void GtkMoviePlayer::prepared() {
  if (stage_ != Stage::preparing || !hasPicture_ || !playback_) return;
  const double length = playback_->duration();
  if (!(length > 0)) return;
  watchdog_.invalidate();
  stage_ = Stage::prepared;
  duration_ = length;
  if (start_ > 0) seek(start_);
  controls_.showPosition(start_, duration_);
  const auto held = shared_from_this();
  const int content = content_;
  tellDurationAvailable();
  if (content_ == content && wantsToPlay_) play();
}

void GtkMoviePlayer::engineState(GstPlayState state) {
  const auto held = shared_from_this();
  prepared();
  if (stage_ == Stage::preparing && state == GST_PLAY_STATE_PAUSED) {
    // All is there that will be; what has no length now is a picture or a broadcast.
    watchdog_ = engine_->services().runLoop->after(lengthPatience, [this] {
      failed(MovieError::notPlayable, "It is no video of a known length.");
    });
  }
  if (stage_ != Stage::prepared || ended_) return;
  if (state == GST_PLAY_STATE_PLAYING && wantsToPlay_) setState(MoviePlaybackState::playing);
  if (state == GST_PLAY_STATE_PAUSED && !wantsToPlay_ && state_ == MoviePlaybackState::playing) {
    setState(MoviePlaybackState::paused);
  }
}

void GtkMoviePlayer::play() {
  wantsToPlay_ = true;
  if (stage_ == Stage::idle) return prepareToPlay();
  if (stage_ != Stage::prepared) return;
  if (std::exchange(ended_, false)) return beginAgain();
  watchForStall();
  lastSeen_ = engine_->services().runLoop->now();
  playback_->play();
}

// From the first byte: not every server can be asked for less.
void GtkMoviePlayer::beginAgain() {
  retire(std::move(playback_));
  seeking_.reset();
  lastPosition_ = 0;
  lastSeen_ = engine_->services().runLoop->now();
  playback_ = std::make_unique<Playback>(*engine_, contentUrl_.text(), events());
  if (!wantsToPlay_) return playback_->pause();
  watchForStall();
  playback_->play();
}

// A playback may be in the middle of a call to this.
void GtkMoviePlayer::retire(std::unique_ptr<Playback> playback) {
  later([retired = std::shared_ptr<Playback>{std::move(playback)}] { /* gone with the task */ });
}

void GtkMoviePlayer::pause() {
  wantsToPlay_ = false;
  if (stage_ != Stage::prepared || ended_) return;
  watchdog_.invalidate();
  lastPosition_ = currentPlaybackTime();
  playback_->pause();
}

void GtkMoviePlayer::stop() {
  reset();
  setState(MoviePlaybackState::stopped);
}

double GtkMoviePlayer::currentPlaybackTime() const {
  if (stage_ != Stage::prepared) return start_;
  // While a seek is under way the framework tells no position, or the old one.
  if (ended_ || !playback_ || seeking_) return seeking_.value_or(lastPosition_);
  return playback_->position();
}

void GtkMoviePlayer::setCurrentPlaybackTime(double seconds) {
  if (stage_ != Stage::prepared) {
    start_ = std::max(seconds, 0.0);
    return;
  }
  seek(std::clamp(seconds, 0.0, duration_));
}

void GtkMoviePlayer::seek(double seconds) {
  if (!canSeek_) return;
  ended_ = false;
  lastPosition_ = seconds;
  seeking_ = seconds;
  playback_->seek(seconds);
  if (wantsToPlay_) watchForStall();
}

void GtkMoviePlayer::sought() {
  seeking_.reset();
  if (stage_ != Stage::prepared || ended_) return;
  lastPosition_ = playback_->position();
  lastSeen_ = engine_->services().runLoop->now();
  controls_.showPosition(lastPosition_, duration_);
}

// A person drags the position: the state of seeking is passed through.
void GtkMoviePlayer::seekByHand(double seconds) {
  if (stage_ != Stage::prepared) return;
  if (!isDragged()) beforeDrag_ = state_;
  setState(seconds < currentPlaybackTime() ? MoviePlaybackState::seekingBackward
                                           : MoviePlaybackState::seekingForward);
  setCurrentPlaybackTime(seconds);
  later([weak = weak_from_this(), drag = ++drag_] {
    const auto self = std::static_pointer_cast<GtkMoviePlayer>(weak.lock());
    if (self && self->drag_ == drag && self->isDragged()) self->setState(self->beforeDrag_);
  });
}

bool GtkMoviePlayer::isDragged() const {
  return state_ == MoviePlaybackState::seekingForward ||
         state_ == MoviePlaybackState::seekingBackward;
}

void GtkMoviePlayer::moved() {
  const auto held = shared_from_this();
  prepared();
  if (stage_ != Stage::prepared || ended_ || seeking_) return;
  const double position = playback_->position();
  controls_.showPosition(position, duration_);
  if (position == lastPosition_) return;
  lastPosition_ = playedTo(position);
  lastSeen_ = engine_->services().runLoop->now();
  if (wantsToPlay_) watchForStall();
}

// At the end of its data the framework claims to stand at the end of the video, whatever it has
// shown; but no video plays faster than the time that has passed.
double GtkMoviePlayer::playedTo(double position) const {
  constexpr double tolerance = 0.25;
  const Seconds passed = engine_->services().runLoop->now() - lastSeen_;
  return std::min(position, lastPosition_ + passed.count() + tolerance);
}

// Data that is over says nothing of the video: a file that was cut is over early.
void GtkMoviePlayer::ended() {
  if (ended_ || !playback_) return;
  const double last = playedTo(std::max(lastPosition_, playback_->position()));
  const bool wasPrepared = stage_ == Stage::prepared;
  if (!wasPrepared || !playedThrough({playback_->hasVideo() && hasPicture_, duration_, last})) {
    return failed(wasPrepared ? MovieError::incomplete : MovieError::notPlayable,
                  "The data ended before the video did.");
  }
  ended_ = true;
  wantsToPlay_ = false;
  lastPosition_ = duration_;
  watchdog_.invalidate();
  setState(MoviePlaybackState::paused);
  finish(MovieFinishReason::playbackEnded, std::nullopt);
}

void GtkMoviePlayer::brokeOff(const std::string& why) {
  if (engine_->services().log) engine_->services().log->write("Video: " + why);
  if (seeking_) {
    // The server cannot start in the middle, and has stopped sending what it sent.
    canSeek_ = false;
    return beginAgain();
  }
  const bool begun = stage_ == Stage::prepared;
  failed(begun ? MovieError::incomplete : MovieError::notPlayable,
         begun ? "The video broke off." : "The video cannot be played.");
}

void GtkMoviePlayer::failed(MovieError code, const std::string& why) {
  retire(std::move(playback_));
  const Error error = makeError(code, why);
  reset();
  setState(MoviePlaybackState::stopped);
  finish(MovieFinishReason::playbackError, error);
}

void GtkMoviePlayer::finish(MovieFinishReason reason, std::optional<Error> error) {
  later([weak = weak_from_this(), content = content_, reason, error = std::move(error)] {
    const auto self = std::static_pointer_cast<GtkMoviePlayer>(weak.lock());
    if (self && self->content_ == content) self->tellFinish(reason, error);
  });
}

void GtkMoviePlayer::setState(MoviePlaybackState state) {
  if (state_ == state) return;
  state_ = state;
  controls_.showPlaying(state == MoviePlaybackState::playing);
  later([weak = weak_from_this(), content = content_, state] {
    const auto self = std::static_pointer_cast<GtkMoviePlayer>(weak.lock());
    if (self && self->content_ == content && self->state_ == state) self->tellPlaybackState();
  });
}

void GtkMoviePlayer::watch(Seconds patience, const char* complaint) {
  watchdog_ = engine_->services().runLoop->after(
      patience, [this, complaint] { failed(MovieError::timedOut, complaint); });
}

void GtkMoviePlayer::watchForStall() {
  watch(engine_->services().limits.stallTimeout, "The video stands still.");
}

void GtkMoviePlayer::controlStyleChanged() {
  controls_.setVisible(controlStyle() != MovieControlStyle::none);
}

void GtkMoviePlayer::fullscreenChanged() {
  GtkRoot* root = gtk_widget_get_root(overlay_.get());
  if (root == nullptr || !GTK_IS_WINDOW(root)) return;
  if (isFullscreen()) {
    gtk_window_fullscreen(GTK_WINDOW(root));
  } else {
    gtk_window_unfullscreen(GTK_WINDOW(root));
  }
}

}  // namespace tavo::gtk
