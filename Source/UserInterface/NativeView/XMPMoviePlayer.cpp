#include "UserInterface/NativeView/XMPMoviePlayer.h"

#include <tavo/MoviePlayerFactory.h>

#include "Communicator/Network/XNetworkManager.h"
#include "ErrorHandler/OperationLog.h"
#include "RequestEnrichment/ScreenAndVisibility.h"
#include "Services/Application.h"
#include "UserInterface/NativeView/VideoReturn.h"
#include "Utilities/NumberText.h"
#include "Values/Translation.h"

namespace tavo {

namespace {
// A video that has drawn nothing to leave it by for so long is left by the common control.
constexpr Seconds longestWithoutControl{15};
}  // namespace

std::shared_ptr<XMPMoviePlayer> XMPMoviePlayer::create(
    std::shared_ptr<Environment> environment,
    const std::shared_ptr<MoviePlayer>& moviePlayerInstance) {
  const OperationLog log{"-[XMPMoviePlayer initWithMoviePlayerInstance:]"};
  return std::shared_ptr<XMPMoviePlayer>{
      new XMPMoviePlayer{std::move(environment), {}, moviePlayerInstance}};
}

std::shared_ptr<XMPMoviePlayer> XMPMoviePlayer::createForInterstitial(
    std::shared_ptr<Environment> environment, const Rect& frame) {
  const OperationLog log{"-[XMPMoviePlayer initForInterstitial]"};
  std::shared_ptr<XMPMoviePlayer> player{
      new XMPMoviePlayer{std::move(environment), frame, nullptr}};
  player->mobileAdSubTypes = MobileAdSubTypes::vastInterstitial;
  player->isVastInterestitial = true;
  player->movie_ = player->environment_->platform().moviePlayers->create(player->bounds());
  player->movie_->setAutoresizingMask(flexibleWidth | flexibleHeight);
  player->addSubview(player->movie_);
  return player;
}

XMPMoviePlayer::XMPMoviePlayer(std::shared_ptr<Environment> environment, const Rect& frame,
                               std::shared_ptr<MoviePlayer> host)
    : View{frame},
      environment_{std::move(environment)},
      borrowed_{std::move(host)},
      movie_{borrowed_.host()},
      btnSkip_{environment_},
      interruptions_{environment_,
                     {.connectionLost = [this] { connectionLost(); },
                      .memoryLow = [this] { dismissAdOnMemoryWarning(); },
                      .turned = [this] { rotateToOrientation(); },
                      .lock = {.hibernate = [this] { hibernate(); },
                               .foreground = [this] { didEnterForeground(); }}}},
      progress_{environment_->platform().runLoop, [this] { updatePlaybackTime(); }} {}

XMPMoviePlayer::~XMPMoviePlayer() { XMPMoviePlayer::releaseMemory(); }

bool XMPMoviePlayer::setUp() {
  const OperationLog log{"-[XMPMoviePlayer setUp]"};
  const auto held = shared_from_this();
  if (!environment_->shared<XNetworkManager>().internetAvailable()) {
    dismissAdTapped();
    return false;
  }
  if (!movie_ || (isPreroll() && borrowed_.isBusy())) return false;
  playAdWithPlayer();
  return true;
}

void XMPMoviePlayer::playAdWithPlayer() {
  const OperationLog log{"-[XMPMoviePlayer playAdWithPlayer]"};
  if (!movie_) return;
  movie_->setControlStyle(MovieControlStyle::none);
  iCounterForAdDisplay_ = 1;
  if (isPreroll()) borrowed_.borrow();
  movie_->setContentUrl(movieURL);
  registerForNotifications();
  milestones_.begin();
  addTap();
  skipTimer_ = environment_->platform().runLoop->after(longestWithoutControl,
                                                       [this] { showControlAnyway(); });
  movie_->prepareToPlay();
}

void XMPMoviePlayer::registerForNotifications() {
  const OperationLog log{"-[XMPMoviePlayer registerForNotifications]"};
  if (!movie_) return;
  movie_->removeClient(*this);
  movie_->addClient(std::static_pointer_cast<XMPMoviePlayer>(shared_from_this()));
  interruptions_.start(isInterstitial() ? interstitialOrientationDidChangeNotification
                                        : notifications::deviceOrientationDidChange);
}

void XMPMoviePlayer::deregisterNotifications() {
  const OperationLog log{"-[XMPMoviePlayer deregisterNotifications]"};
  if (movie_) movie_->removeClient(*this);
  interruptions_.stop();
}

// A button on the video keeps its touches.
void XMPMoviePlayer::addTap() {
  if (tap_) {
    movie_->removeTapRecognizer(*tap_);
  } else {
    nameOfFilm_ = movie_->accessibilityLabel();
    movie_->setAccessibilityLabel(translated("Open the advertisement"));  // reached by the keyboard
  }
  tap_ = std::make_shared<TapRecognizer>();
  tap_->shouldReceiveTouch = [](View& touched) {
    return dynamic_cast<Button*>(&touched) == nullptr;
  };
  tap_->action = [this](const TapRecognizer&) { oneTap(); };
  movie_->addTapRecognizer(tap_);
}

void XMPMoviePlayer::movieDurationAvailable(MoviePlayer& player) {
  const OperationLog log{"-[XMPMoviePlayer durationAvailableNotification:]"};
  const SkipPoint point = skipRule
                              ? skipRule(player.duration())
                              : skipPoint(skipOffset, player.duration(), slotConfiguration.get());
  skipOffset = point.skipOffset;
  skip_.begin(point);
  showCountdown(firstCountdown(point, player.currentPlaybackTime(),
                               isPreroll() ? VideoUse::preroll : VideoUse::interstitial));
}

void XMPMoviePlayer::moviePlaybackStateDidChange(MoviePlayer& player) {
  const OperationLog log{"-[XMPMoviePlayer moviePlayerNotifications:]"};
  const auto held = shared_from_this();
  const auto state = player.playbackState();
  if (state == MoviePlaybackState::playing) startTimer();
  if (state == MoviePlaybackState::paused || state == MoviePlaybackState::stopped) killTimer();
  report(milestones_.playbackChanged(state,
                                     {.prepared = player.isPreparedToPlay(),
                                      .atEnd = player.currentPlaybackTime() == player.duration()}));
}

void XMPMoviePlayer::report(Milestone milestone) {
  switch (milestone) {
    case Milestone::none:
      return;
    case Milestone::start:
      track(TrackingEventType::start);
      return delegate.tell(&Told::playerDidPlayVideo, *this);
    case Milestone::pause:
      track(TrackingEventType::pause);
      return delegate.tell(&Told::playerDidPauseVideo, *this, now());
    case Milestone::resume:
      track(TrackingEventType::resume);
      return delegate.tell(&Told::playerDidResume, *this, now());
    case Milestone::rewind:
      track(TrackingEventType::rewind);
      return delegate.tell(&Told::playerDidRewindWithVideo, *this);
  }
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
  const bool failed = reason == MovieFinishReason::playbackError;
  if (failed && iCounterForAdDisplay_ == 1) {
    delegate.tell(&Told::playerDidFinishWithErrorWithPlayer, *this,
                  error.value_or(makeError(MovieError::notPlayable, "The video cannot be played.")),
                  borrowed_.host());
  }
  if (iCounterForAdDisplay_ == 1) dismiss(failed ? Cause::failure : Cause::user);
}

void XMPMoviePlayer::movieDidEnterFullscreen(MoviePlayer& /*player*/) {
  const auto held = shared_from_this();
  rotateToOrientation();
  track(TrackingEventType::fullscreen);
  delegate.tell(&Told::playerDidEnterFullScreen, *this);
}

void XMPMoviePlayer::movieDidExitFullscreen(MoviePlayer& /*player*/) {
  const auto held = shared_from_this();
  rotateToOrientation();
  track(TrackingEventType::exitFullscreen);
  delegate.tell(&Told::playerDidExitFullScreen, *this);
}

void XMPMoviePlayer::movieDidSwitchSound(MoviePlayer& player) {
  delegate.tell(&Told::playerDidSwitchSound, player.isMuted());
}

void XMPMoviePlayer::startTimer() {
  const OperationLog log{"-[XMPMoviePlayer startTimer]"};
  progress_.start();
  awaitQuartile();
}

void XMPMoviePlayer::killTimer() {
  const OperationLog log{"-[XMPMoviePlayer killTimer]"};
  progress_.stop();
}

void XMPMoviePlayer::updatePlaybackTime() {
  if (!movie_) return;
  const auto held = shared_from_this();
  const auto step = skip_.at(now());
  if (step.countdown) showCountdown(*step.countdown);
  if (step.control) showControl();
  reportQuartiles();
  if (progress_.isRunning()) awaitQuartile();
}

// Half a second is too long for a report by the time of which campaigns are measured.
void XMPMoviePlayer::awaitQuartile() {
  const auto next = milestones_.nextQuartile();
  if (!next || !movie_ || !(movie_->duration() > 0)) return;
  progress_.lookAfter(Seconds{*next * movie_->duration() - now()}, [this] {
    const auto held = shared_from_this();
    reportQuartiles();
    if (progress_.isRunning()) awaitQuartile();
  });
}

void XMPMoviePlayer::reportQuartiles() {
  if (!movie_ || !(movie_->duration() > 0)) return;
  const double time = now();
  const double length = movie_->duration();
  for (const Quartile& quartile : milestones_.reached(time / length)) {
    track(quartile.event);
    delegate.tell(&Told::playerDidFinishQuartile, *this, quartile.index);
  }
  delegate.tell(&Told::playerDidMove, time, length);
}

void XMPMoviePlayer::track(TrackingEventType type) {
  delegate.tell(&Told::trackEventWithEventType, type);
}

void XMPMoviePlayer::showCountdown(const std::string& text) {
  if (isPreroll()) {
    displaySkipButtonText(text);
  } else if (isInterstitial()) {
    delegate.tell(&Told::displayCloseButtonText, text);
  }
}

void XMPMoviePlayer::showControl() {
  if (isPreroll()) {
    displaySkipButton();
  } else if (isInterstitial()) {
    delegate.tell(&Told::displayCloseButton);
  }
  skip_.controlShown();
  if (movie_) movie_->setControlStyle(MovieControlStyle::embedded);
}

// A countdown that runs says when the control comes; anything else would hold the user for good.
void XMPMoviePlayer::showControlAnyway() {
  const auto held = shared_from_this();
  const bool counting = movie_ && skip_.isCounting(now(), movie_->duration());
  if (!skip_.isControlShown() && !counting) showControl();
}

void XMPMoviePlayer::displaySkipButtonText(const std::string& text) {
  const OperationLog log{"-[XMPMoviePlayer displaySkipButtonText:]"};
  if (!movie_) return;
  btnSkip_.showCountdown(*movie_, text, countdownPosition(slotConfiguration.get()));
}

void XMPMoviePlayer::displaySkipButton() {
  const OperationLog log{"-[XMPMoviePlayer displaySkipButton]"};
  if (movie_) btnSkip_.showClose(*movie_, [this] { skipButtonTapped(); });
}

void XMPMoviePlayer::addSkipButton() {
  const OperationLog log{"-[XMPMoviePlayer addSkipButton]"};
  if (!movie_) return;
  btnSkip_.showCountdown(*movie_, std::to_string(integerPart(skipDelay())), std::nullopt);
  btnSkip_.button()->setBackgroundColor(std::nullopt);
}

CountdownPlacement XMPMoviePlayer::getCountdownTimerRect(unsigned position) const {
  return countdownPlacement(position, movie_ ? movie_->frame().size() : Size{});
}

Rect XMPMoviePlayer::skipButtonFrameWithPlayer(const MoviePlayer& player) const {
  return skipButtonFrame(player.frame().size());
}

void XMPMoviePlayer::rotateToOrientation() {
  const OperationLog log{"-[XMPMoviePlayer rotateToOrientation]"};
  btnSkip_.layOut();
}

void XMPMoviePlayer::oneTap() {
  const OperationLog log{"-[XMPMoviePlayer oneTap:]"};
  if (!movie_) return;
  const auto held = shared_from_this();
  if (!movie_->isPreparedToPlay()) return movie_->prepareToPlay();
  const auto state = movie_->playbackState();
  if (state == MoviePlaybackState::paused || state == MoviePlaybackState::stopped) {
    return movie_->play();
  }
  if (!delegate.implements(&Told::playerDidClickVideo)) return;
  movie_->pause();
  delegate.tell(&Told::playerDidClickVideo, *this);
}

void XMPMoviePlayer::skipButtonTapped() {
  const OperationLog log{"-[XMPMoviePlayer skipButtonTapped]"};
  if (!bShowSkipAdLabel) return;
  const auto held = shared_from_this();
  const auto observers = delegate.ask(&Told::hold);
  const double time = now();
  dismissAdTapped();
  track(TrackingEventType::skip);
  delegate.tell(&Told::playerDidSkipVideo, *this, time);
}

void XMPMoviePlayer::dismissAdTapped() {
  const OperationLog log{"-[XMPMoviePlayer dismissAdTapped]"};
  dismiss(Cause::user);
}

void XMPMoviePlayer::dismissAdOnMemoryWarning() {
  const OperationLog log{"-[XMPMoviePlayer dismissAdOnMemoryWarning]"};
  dismiss(Cause::memoryWarning);
}

void XMPMoviePlayer::dismiss(Cause cause) {
  const auto held = shared_from_this();
  ++iCounterForAdDisplay_;
  bShowSkipAdLabel = false;
  killTimer();
  if (isPreroll()) delegate.tell(&Told::closeInAppBrowser);
  deregisterNotifications();
  delegate.tell(&Told::clearVideo);
  clearVideo();
  if (isInterstitial()) {
    dropOwnMovie();
    if (cause == Cause::user) delegate.tell(&Told::dismissVideo);
    if (cause == Cause::memoryWarning) delegate.tell(&Told::dismissVideoOnMemoryWarning);
  } else if (!interruptions_.lock().isDeviceLocked() &&
             !interruptions_.lock().isHibernationDone()) {
    handBack(cause);
  }
}

void XMPMoviePlayer::handBack(Cause cause) {
  borrowed_.giveBack();
  if (cause == Cause::memoryWarning) delegate.tell(&Told::playerDismissOnMemoryWarning, *this);
  delegate.tell(&Told::playerPrerollDidFinishWithPlayer, *this, borrowed_.host());
}

// Takes what the ad has put on the video off it.
void XMPMoviePlayer::clearVideo() {
  skipTimer_.invalidate();
  btnSkip_.remove();
  if (movie_ && tap_) {
    movie_->removeTapRecognizer(*tap_);
    movie_->setAccessibilityLabel(nameOfFilm_);
  }
  tap_.reset();
}

// In full screen the video stands in the window, which would keep it.
void XMPMoviePlayer::dropOwnMovie() {
  if (!movie_) return;
  movie_->stop();
  movie_->setFullscreen(false);
  movie_.reset();
}

void XMPMoviePlayer::releaseMemory() {
  const OperationLog log{"-[XMPMoviePlayer releaseMemory]"};
  killTimer();
  interruptions_.lock().clear();
  deregisterNotifications();
  clearVideo();
  if (isInterstitial()) dropOwnMovie();
  if (movie_) borrowed_.giveBack();
  movie_.reset();
}

void XMPMoviePlayer::connectionLost() {
  if (movie_ && !movie_->isPreparedToPlay()) dismissAdTapped();
}

// The ad sleeps: nothing of it may play on behind the lock.
void XMPMoviePlayer::hibernate() {
  const auto held = shared_from_this();
  dismissAdTapped();
  if (movie_) movie_->stop();
}

// An ad that ended behind the lock kept the host's player until now.
void XMPMoviePlayer::didEnterForeground() {
  const OperationLog log{"-[XMPMoviePlayer didEnterForeground:]"};
  const auto held = shared_from_this();
  ScreenLockWatch& lock = interruptions_.lock();
  const auto plan = planReturn(
      {.over = iCounterForAdDisplay_ > 1 || lock.isHibernationDone(),
       .prepared = movie_ && movie_->isPreparedToPlay(),
       .state = movie_ ? movie_->playbackState() : MoviePlaybackState::stopped,
       .endsWithClick = !slotConfiguration || slotConfiguration->dismissVideoOnClickThrough});
  lock.clear();
  if (plan.handBack) lock.stop();
  if (plan.handBack && isPreroll()) handBack(Cause::user);
  if (!movie_) return;
  if (plan.beginAgain) {
    deregisterNotifications();
    movie_->shouldAutoplay = false;
    playAdWithPlayer();
  }
  if (plan.playOn) movie_->play();
}

}  // namespace tavo
