#include "UserInterface/NativeView/XMPMoviePlayer.h"

#include <array>

#include <tavo/MoviePlayerFactory.h>
#include <tavo/Runtime.h>

#include "Communicator/Network/XNetworkManager.h"
#include "ErrorHandler/OperationLog.h"
#include "Runtime/NotificationCenter.h"
#include "Services/Application.h"
#include "Utilities/NumberText.h"

namespace tavo {

namespace {

constexpr Seconds progressPeriod{0.5};
// A video that has drawn nothing to leave it by for so long is left by the common control.
constexpr Seconds longestWithoutControl{15};

struct Quartile {
  double part;
  TrackingEventType event;
};
constexpr std::array<Quartile, 3> quartiles{{{0.25, TrackingEventType::firstQuartile},
                                             {0.5, TrackingEventType::midpoint},
                                             {0.75, TrackingEventType::thirdQuartile}}};

}  // namespace

std::shared_ptr<XMPMoviePlayer> XMPMoviePlayer::create(
    const std::shared_ptr<MoviePlayer>& moviePlayerInstance) {
  const OperationLog log{"-[XMPMoviePlayer initWithMoviePlayerInstance:]"};
  return std::shared_ptr<XMPMoviePlayer>{new XMPMoviePlayer{{}, moviePlayerInstance}};
}

std::shared_ptr<XMPMoviePlayer> XMPMoviePlayer::createForInterstitial(const Rect& frame) {
  const OperationLog log{"-[XMPMoviePlayer initForInterstitial]"};
  std::shared_ptr<XMPMoviePlayer> player{new XMPMoviePlayer{frame, nullptr}};
  player->mobileAdSubTypes = MobileAdSubTypes::vastInterstitial;
  player->isVastInterestitial = true;
  player->movie_ = Runtime::current().platform().moviePlayers->create(player->bounds());
  player->movie_->setAutoresizingMask(flexibleWidth | flexibleHeight);
  player->addSubview(player->movie_);
  return player;
}

XMPMoviePlayer::XMPMoviePlayer(const Rect& frame, std::shared_ptr<MoviePlayer> host)
    : View{frame},
      host_{std::move(host)},
      movie_{host_},
      lockWatch_{
          {.hibernate = [this] { hibernate(); }, .foreground = [this] { didEnterForeground(); }}} {}

XMPMoviePlayer::~XMPMoviePlayer() { XMPMoviePlayer::releaseMemory(); }

void XMPMoviePlayer::setUp() {
  const OperationLog log{"-[XMPMoviePlayer setUp]"};
  const auto held = shared_from_this();
  if (!XNetworkManager::shareInstance().internetAvailable()) return dismissAdTapped();
  if (!movie_) return;
  if (isPreroll() && movie_->shouldAutoplay &&
      movie_->playbackState() == MoviePlaybackState::playing) {
    return;
  }
  playAdWithPlayer();
}

void XMPMoviePlayer::playAdWithPlayer() {
  const OperationLog log{"-[XMPMoviePlayer playAdWithPlayer]"};
  if (!movie_) return;
  const auto rotated = [this](const Notification&) { rotateToOrientation(); };
  orientation_ = Runtime::current().notifications().subscribe(
      isInterstitial() ? std::string_view{"XAdInterstitialOrientationDidChange"}
                       : notifications::deviceOrientationDidChange,
      rotated);
  movie_->setControlStyle(MovieControlStyle::none);
  setContentForAd();
  registerForNotifications();
  isAdPlayedForFirstTime_ = true;
  addTap();
  controlTimer_ = Runtime::current().platform().runLoop->after(longestWithoutControl,
                                                               [this] { showControlAnyway(); });
  movie_->prepareToPlay();
}

void XMPMoviePlayer::setContentForAd() {
  iCounterForAdDisplay_ = 1;
  if (isPreroll() && !hostContent_) {
    hostContent_ =
        HostContent{movie_->contentUrl(), movie_->currentPlaybackTime(), movie_->shouldAutoplay};
    movie_->shouldAutoplay = true;
  }
  movie_->setContentUrl(movieURL);
}

void XMPMoviePlayer::restoreHostContent() {
  if (!movie_ || !hostContent_) return;
  const HostContent content = *std::exchange(hostContent_, std::nullopt);
  movie_->shouldAutoplay = content.autoplay;
  movie_->setContentUrl({});
  movie_->setContentUrl(content.originalURL);
  movie_->setCurrentPlaybackTime(content.position);
  movie_->setControlStyle(MovieControlStyle::embedded);
}

void XMPMoviePlayer::registerForNotifications() {
  const OperationLog log{"-[XMPMoviePlayer registerForNotifications]"};
  if (!movie_) return;
  const auto self = std::static_pointer_cast<XMPMoviePlayer>(shared_from_this());
  movie_->removeClient(*this);
  movie_->addClient(self);
  auto& center = Runtime::current().notifications();
  internetAccess_ = center.subscribe(
      internetAccessChangedNotification,
      [this](const Notification& notification) { internetAccessChanged(notification); });
  memoryWarning_ = center.subscribe(notifications::didReceiveMemoryWarning,
                                    [this](const Notification&) { dismissAdOnMemoryWarning(); });
  lockWatch_.start();
}

void XMPMoviePlayer::deregisterNotifications() {
  const OperationLog log{"-[XMPMoviePlayer deregisterNotifications]"};
  if (movie_) movie_->removeClient(*this);
  internetAccess_.reset();
  memoryWarning_.reset();
  orientation_.reset();
  lockWatch_.stop();
}

// A button on the video keeps its touches.
void XMPMoviePlayer::addTap() {
  if (tap_) movie_->removeTapRecognizer(*tap_);
  tap_ = std::make_shared<TapRecognizer>();
  tap_->shouldReceiveTouch = [](View& touched) {
    return dynamic_cast<Button*>(&touched) == nullptr;
  };
  tap_->action = [this](const TapRecognizer&) { oneTap(); };
  movie_->addTapRecognizer(tap_);
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
  if (!delegate.implements(&XMoviePlayerDelegate::playerDidClickVideo)) return;
  movie_->pause();
  delegate.tell(&XMoviePlayerDelegate::playerDidClickVideo, *this);
}

void XMPMoviePlayer::skipButtonTapped() {
  const OperationLog log{"-[XMPMoviePlayer skipButtonTapped]"};
  if (!bShowSkipAdLabel) return;
  const auto held = shared_from_this();
  const double time = now();
  dismissAdTapped();
  track(TrackingEventType::skip);
  delegate.tell(&XMoviePlayerDelegate::playerDidSkipVideo, *this, time);
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
  if (isPreroll()) delegate.tell(&XMoviePlayerDelegate::closeInAppBrowser);
  deregisterNotifications();
  clearVideo();
  if (isInterstitial()) {
    dropOwnMovie();
    delegate.tell(cause == Cause::user ? &XMoviePlayerDelegate::dismissVideo
                                       : &XMoviePlayerDelegate::dismissVideoOnMemoryWarning);
  } else if (!lockWatch_.isDeviceLocked() && !lockWatch_.isHibernationDone()) {
    handBack(cause);
  }
}

void XMPMoviePlayer::handBack(Cause cause) {
  restoreHostContent();
  if (cause == Cause::memoryWarning) {
    delegate.tell(&XMoviePlayerDelegate::playerDismissOnMemoryWarning, *this);
  }
  delegate.tell(&XMoviePlayerDelegate::playerPrerollDidFinishWithPlayer, *this, host_);
}

// Takes what the ad has put on the video off it.
void XMPMoviePlayer::clearVideo() {
  controlTimer_.invalidate();
  btnSkip_.remove();
  if (movie_ && tap_) movie_->removeTapRecognizer(*tap_);
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
  lockWatch_.clear();
  deregisterNotifications();
  clearVideo();
  if (isInterstitial()) dropOwnMovie();
  restoreHostContent();
  movie_.reset();
}

void XMPMoviePlayer::internetAccessChanged(const Notification& notification) {
  const OperationLog log{"-[XMPMoviePlayer internetAccessChanged:]"};
  const auto available = notification.userInfo.find("Available");
  const bool lost = available == notification.userInfo.end() || available->second == 0;
  if (lost && movie_ && !movie_->isPreparedToPlay()) dismissAdTapped();
}

// The ad sleeps: nothing of it may play on behind the lock.
void XMPMoviePlayer::hibernate() {
  const auto held = shared_from_this();
  dismissAdTapped();
  if (movie_) movie_->stop();
}

void XMPMoviePlayer::didEnterForeground() {
  const OperationLog log{"-[XMPMoviePlayer didEnterForeground:]"};
  const auto held = shared_from_this();
  // An ad that ended behind the lock kept the host's player until now.
  const bool ended = iCounterForAdDisplay_ > 1;
  if (ended || lockWatch_.isHibernationDone()) {
    lockWatch_.clear();
    lockWatch_.stop();
    if (isPreroll()) handBack(Cause::user);
    return;
  }
  if (!movie_) return;
  const auto state = movie_->playbackState();
  if (!movie_->isPreparedToPlay()) {
    deregisterNotifications();
    movie_->shouldAutoplay = false;
    playAdWithPlayer();
  } else if ((state == MoviePlaybackState::paused || state == MoviePlaybackState::stopped) &&
             slotConfiguration && !slotConfiguration->dismissVideoOnClickThrough) {
    movie_->play();
  }
  lockWatch_.clear();
}

void XMPMoviePlayer::startTimer() {
  const OperationLog log{"-[XMPMoviePlayer startTimer]"};
  timer_ = Runtime::current().platform().runLoop->every(progressPeriod,
                                                        [this] { updatePlaybackTime(); });
}

void XMPMoviePlayer::killTimer() {
  const OperationLog log{"-[XMPMoviePlayer killTimer]"};
  timer_.invalidate();
}

void XMPMoviePlayer::updatePlaybackTime() {
  if (!movie_) return;
  const auto held = shared_from_this();
  const double time = now();
  if (!isSkipButtonAdded_ && skip_.skipDelay > 0) showCountdown(countdown(skip_.skipDelay, time));
  if (!isSkipButtonAdded_ && skip_.skipDelay >= 0 && time >= static_cast<double>(skip_.skipDelay)) {
    showControl();
  }
  reportQuartiles();
}

void XMPMoviePlayer::reportQuartiles() {
  if (!movie_ || !(movie_->duration() > 0)) return;
  const double part = now() / movie_->duration();
  for (unsigned index = 0; index < quartiles.size(); ++index) {
    const unsigned bit = 1U << index;
    if (part < quartiles.at(index).part || (quartilesReported_ & bit) != 0) continue;
    quartilesReported_ |= bit;
    track(quartiles.at(index).event);
    delegate.tell(&XMoviePlayerDelegate::playerDidFinishQuartile, *this, static_cast<int>(index));
  }
}

void XMPMoviePlayer::showCountdown(const std::string& text) {
  if (isPreroll()) {
    displaySkipButtonText(text);
  } else if (isInterstitial()) {
    delegate.tell(&XMoviePlayerDelegate::displayCloseButtonText, text);
  }
}

void XMPMoviePlayer::showControl() {
  if (isPreroll()) {
    displaySkipButton();
  } else if (isInterstitial()) {
    delegate.tell(&XMoviePlayerDelegate::displayCloseButton);
  }
  isSkipButtonAdded_ = true;
  if (movie_) movie_->setControlStyle(MovieControlStyle::embedded);
}

// A countdown that runs says when the control comes; anything else would hold the user for good.
void XMPMoviePlayer::showControlAnyway() {
  const auto held = shared_from_this();
  const bool counting = movie_ && movie_->duration() > 0 &&
                        !countdown(skip_.skipDelay, now()).empty() &&
                        static_cast<double>(skip_.skipDelay) <= movie_->duration();
  if (!isSkipButtonAdded_ && !counting) showControl();
}

void XMPMoviePlayer::displaySkipButtonText(const std::string& text) {
  const OperationLog log{"-[XMPMoviePlayer displaySkipButtonText:]"};
  if (!movie_) return;
  const CountdownPlacement place =
      slotConfiguration ? getCountdownTimerRect(slotConfiguration->countdownTimerPosition)
                        : CountdownPlacement{skipButtonFrameWithPlayer(*movie_)};
  btnSkip_.showText(*movie_, text, place);
}

void XMPMoviePlayer::displaySkipButton() {
  const OperationLog log{"-[XMPMoviePlayer displaySkipButton]"};
  if (!movie_) return;
  btnSkip_.showClose(*movie_, skipButtonFrameWithPlayer(*movie_), [this] { skipButtonTapped(); });
}

void XMPMoviePlayer::addSkipButton() {
  const OperationLog log{"-[XMPMoviePlayer addSkipButton]"};
  if (!movie_) return;
  btnSkip_.showText(*movie_, std::to_string(integerPart(skip_.skipDelay)),
                    {skipButtonFrameWithPlayer(*movie_), TextAlignment::left});
  btnSkip_.button()->setBackgroundColor(std::nullopt);
}

CountdownPlacement XMPMoviePlayer::getCountdownTimerRect(unsigned position) const {
  const Size video = movie_ ? movie_->frame().size() : Size{};
  const Rect otherwise = tavo::skipButtonFrame(video);
  return countdownPlacement(position, video, otherwise.size(), otherwise);
}

Rect XMPMoviePlayer::skipButtonFrameWithPlayer(const MoviePlayer& player) const {
  return tavo::skipButtonFrame(player.frame().size());
}

void XMPMoviePlayer::rotateToOrientation() {
  const OperationLog log{"-[XMPMoviePlayer rotateToOrientation]"};
  if (!movie_ || !slotConfiguration) return;
  btnSkip_.moveTo(btnSkip_.isClose()
                      ? skipButtonFrameWithPlayer(*movie_)
                      : getCountdownTimerRect(slotConfiguration->countdownTimerPosition).frame);
}

void XMPMoviePlayer::track(TrackingEventType type) {
  delegate.tell(&XMoviePlayerDelegate::trackEventWithEventType, type);
}

}  // namespace tavo
