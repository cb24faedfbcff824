#include "ErrorHandler/OperationLog.h"
#include "UserInterface/NativeView/XMPMoviePlayer.h"

namespace tavo {

// What the platform's player reports while it plays the ad.

void XMPMoviePlayer::movieDurationAvailable(MoviePlayer& player) {
  const OperationLog log{"-[XMPMoviePlayer durationAvailableNotification:]"};
  skip_ = skipPoint(skipOffset, player.duration(), slotConfiguration.get());
  skipOffset = skip_.skipOffset;
  showCountdown(firstCountdown(skip_, player.currentPlaybackTime(),
                               isPreroll() ? VideoUse::preroll : VideoUse::interstitial));
}

void XMPMoviePlayer::moviePlaybackStateDidChange(MoviePlayer& player) {
  const OperationLog log{"-[XMPMoviePlayer moviePlayerNotifications:]"};
  const auto held = shared_from_this();
  switch (player.playbackState()) {
    case MoviePlaybackState::stopped:
      return killTimer();
    case MoviePlaybackState::playing:
      return didStartPlaying();
    case MoviePlaybackState::paused:
      return didPause();
    case MoviePlaybackState::interrupted:
    case MoviePlaybackState::seekingForward:
      return;
    case MoviePlaybackState::seekingBackward:
      track(TrackingEventType::rewind);
      return delegate.tell(&XMoviePlayerDelegate::playerDidRewindWithVideo, *this);
  }
}

void XMPMoviePlayer::didStartPlaying() {
  startTimer();
  if (isAdPlayedForFirstTime_) {
    isAdPlayedForFirstTime_ = false;
    track(TrackingEventType::start);
    delegate.tell(&XMoviePlayerDelegate::playerDidPlayVideo, *this);
  } else if (isPaused_ && movie_ && movie_->isPreparedToPlay()) {
    isPaused_ = false;
    track(TrackingEventType::resume);
    delegate.tell(&XMoviePlayerDelegate::playerDidResume, *this, now());
  }
}

// A player pauses at the end of its video by itself; that is no pause of the user's.
void XMPMoviePlayer::didPause() {
  killTimer();
  if (!movie_ || !movie_->isPreparedToPlay() || now() == movie_->duration()) return;
  isPaused_ = true;
  track(TrackingEventType::pause);
  delegate.tell(&XMoviePlayerDelegate::playerDidPauseVideo, *this, now());
}

// The last stretch may have been too short for a tick, so the quartiles are looked at once more.
void XMPMoviePlayer::moviePlaybackDidFinish(MoviePlayer& /*player*/, MovieFinishReason reason,
                                            const std::optional<Error>& error) {
  const OperationLog log{"-[XMPMoviePlayer moviePlayerNotifications:]"};
  const auto held = shared_from_this();
  killTimer();
  if (reason == MovieFinishReason::playbackEnded) {
    reportQuartiles();
    track(TrackingEventType::complete);
  }
  if (movie_) movie_->setFullscreen(false);
  if (reason == MovieFinishReason::playbackError && iCounterForAdDisplay_ == 1) {
    delegate.tell(&XMoviePlayerDelegate::playerDidFinishWithErrorWithPlayer, *this,
                  error.value_or(makeError(MovieError::notPlayable, "The video cannot be played.")),
                  host_);
  }
  if (iCounterForAdDisplay_ == 1) dismissAdTapped();
}

void XMPMoviePlayer::movieDidEnterFullscreen(MoviePlayer& /*player*/) {
  const auto held = shared_from_this();
  rotateToOrientation();
  track(TrackingEventType::fullscreen);
  delegate.tell(&XMoviePlayerDelegate::playerDidEnterFullScreen, *this);
}

void XMPMoviePlayer::movieDidExitFullscreen(MoviePlayer& /*player*/) {
  const auto held = shared_from_this();
  rotateToOrientation();
  track(TrackingEventType::exitFullscreen);
  delegate.tell(&XMoviePlayerDelegate::playerDidExitFullScreen, *this);
}

}  // namespace tavo
