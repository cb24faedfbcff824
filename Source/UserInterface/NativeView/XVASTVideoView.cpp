#include "UserInterface/NativeView/XVASTVideoView.h"

#include "ErrorHandler/OperationLog.h"
#include "Runtime/Relay.h"
#include "Scene/Window.h"
#include "Services/Application.h"
#include "Tracker/XAdTracker.h"
#include "UserInterface/NativeView/MediaChoice.h"

namespace tavo {

std::shared_ptr<XVASTVideoView> XVASTVideoView::create(std::shared_ptr<Environment> environment,
                                                       const Rect& frame) {
  const OperationLog log{"-[XVASTVideoView initWithFrame:]"};
  std::shared_ptr<XVASTVideoView> view{new XVASTVideoView{std::move(environment), frame}};
  view->makeObservers();
  return view;
}

// Every report holds the view for its length: an observer may drop it from inside.
void XVASTVideoView::makeObservers() {
  using Self = XVASTVideoView;
  const Relay relay{*this};
  clickThrough_ = std::make_shared<VideoClickThrough>(
      environment_,
      VideoClickThrough::Events{
          .presenter = relay.call(&Self::clickPresenter),
          .storePresenter = relay.call(&Self::loadAfterADelayWithData),
          .willLeaveApplication = relay.call(&Self::XInAppBrowserWillLeaveApplication),
          .willOpenInAppBrowser = relay.call(&Self::willOpenInAppBrowser),
          .browserClosed = relay.call(&Self::XInAppBrowserClose),
          .storeFinished = relay.call(&Self::productViewControllerDidFinish)});
  playerEvents_ = std::make_shared<XMoviePlayerDelegate>(XMoviePlayerDelegate{
      .trackEventWithEventType = relay.call(&Self::trackEventWithEventType),
      .playerDidPlayVideo = relay.pass(&Told::vastVideoAdDidLoad),
      .playerDidPauseVideo = relay.pass(&Told::vastVideoViewDidPauseVideo),
      .playerDidResume = relay.pass(&Told::vastVideoViewDidResume),
      .playerDidRewindWithVideo = relay.pass(&Told::vastVideoViewDidRewind),
      .playerDidFinishQuartile = relay.pass(&Told::vastVideoViewDidFinishQuartile),
      .playerDidMove = relay.call(&Self::playbackMoved),
      .playerDidSkipVideo = relay.pass(&Told::vastVideoViewDidSkipVideo),
      .playerDidEnterFullScreen = relay.pass(&Told::VASTVideoViewDidEnterFullScreen),
      .playerDidExitFullScreen = relay.pass(&Told::VASTVideoViewDidExitFullScreen),
      .playerDidSwitchSound = relay.call(&Self::soundSwitched),
      .playerDidClickVideo = relay.call(&Self::didClickVideo),
      .playerPrerollDidFinishWithPlayer = relay.pass(&Told::prerollDidFinishWithPlayer),
      .playerDismissOnMemoryWarning = relay.pass(&Told::vastVideoViewDismissOnMemoryWarning),
      .playerDidFinishWithErrorWithPlayer = relay.call(&Self::didFail),
      .displayCloseButton = relay.call(&Self::displayCloseButton),
      .displayCloseButtonText = relay.call(&Self::displayCloseButtonText),
      .clearVideo = relay.call(&Self::clearFilm),
      .dismissVideo = relay.call(&Self::dismissVideo),
      .dismissVideoOnMemoryWarning = relay.call(&Self::dismissVideoOnMemoryWarning),
      .closeInAppBrowser = relay.call(&Self::closeInAppBrowser),
      .hold = relay.pass(&Told::hold)});
}

XVASTVideoView::~XVASTVideoView() { XVASTVideoView::releaseMemory(); }

std::vector<Url> XVASTVideoView::videoURLFromVASTAd(const XVASTAd& ad) const {
  const OperationLog log{"-[XVASTVideoView videoURLFromVASTAd:]"};
  const double hostWidth = moviePlayerInstance ? moviePlayerInstance->frame().width : 0;
  return tavo::videoURLFromVASTAd(ad, isInterstitial() ? frame().width : hostWidth);
}

const TrackingList& XVASTVideoView::trackingArrayWithVASTResponse(
    std::shared_ptr<XVASTAd> response) {
  const OperationLog log{"-[XVASTVideoView trackingArrayWithVASTResponse:]"};
  VASTResponse_ = std::move(response);
  tracking_ = mergedTracking(VASTResponse_);
  return tracking_;
}

bool XVASTVideoView::setUpPlayer() {
  const OperationLog log{"-[XVASTVideoView setUpPlayer]"};
  const auto held = shared_from_this();
  const auto player = player_ = makePlayer();  // held: its first report may end it
  player->bShowSkipAdLabel = !isInterstitial();
  player->isVastInterestitial = isVastInterestitial;
  configure(*player);
  player->slotConfiguration = slotConfiguration;
  player->mobileAdSubTypes = mobileAdSubTypes;
  player->movieURL = movieURL;
  player->delegate.set(playerEvents_);
  return player->setUp();
}

void XVASTVideoView::configure(XMPMoviePlayer& player) {
  player.VASTResponse = VASTResponse_;
  player.VASTResponseEventTrackingArray = tracking_;
  player.skipOffset = VASTResponse_ ? skipOffSetFromVASTAd(*VASTResponse_).value_or("") : "";
}

void XVASTVideoView::willOpenInAppBrowser() {
  delegate.tell(&Told::vastVideoViewWillOpenInAppBrowser, *this);
}

std::shared_ptr<XMPMoviePlayer> XVASTVideoView::makePlayer() {
  if (!isInterstitial()) return XMPMoviePlayer::create(environment_, moviePlayerInstance);
  auto player = XMPMoviePlayer::createForInterstitial(environment_, bounds());
  player->setAutoresizingMask(flexibleWidth | flexibleHeight);
  player->setBackgroundColor(colors::white);
  addSubview(player);
  return player;
}

void XVASTVideoView::trackEventWithEventType(TrackingEventType type) {
  const OperationLog log{"-[XVASTVideoView trackEventWithEventType:]"};
  const auto urls = eventURLArrayWithTrackingEventArray(tracking_, type);
  if (!urls) return;
  XAdTracker tracker{environment_};
  tracker.impressionURLs = *urls;
  tracker.slotConfiguration = slotConfiguration;
  tracker.trackImpressions();
}

std::optional<std::vector<Url>> XVASTVideoView::eventURLArrayWithTrackingEventArray(
    const TrackingList& list, TrackingEventType type) {
  const OperationLog log{
      "-[XVASTVideoView eventURLArrayWithTrackingEventArray:withTrackingEvent:]"};
  return eventUrls(list, type);
}

Url XVASTVideoView::clickThroughURL() const {
  const OperationLog log{"-[XVASTVideoView clickThroughURL]"};
  return VASTResponse_ ? clickThroughOf(*VASTResponse_) : Url{};
}

void XVASTVideoView::didClickVideo() {
  const auto held = shared_from_this();
  const Url url = clickThroughURL();
  delegate.tell(&Told::vastVideoViewDidClickVideoWithURL, *this, url);
  openUrlInBrowser(url);
}

void XVASTVideoView::openUrlInBrowser(const Url& url) {
  const OperationLog log{"-[XVASTVideoView openUrlInBrowser:]"};
  clickThrough_->open(url, slotConfiguration.get());
}

void XVASTVideoView::openBrowserWithURL(const Url& url) {
  const OperationLog log{"-[XVASTVideoView openBrowserWithURL:]"};
  clickThrough_->presentBrowser(url);
}

void XVASTVideoView::closeInAppBrowser() {
  const OperationLog log{"-[XVASTVideoView closeInAppBrowser]"};
  if (!clickThrough_->closeBrowser()) return;
  delegate.tell(&Told::vastVideoViewDidCloseInAppBrowser, *this);
}

std::shared_ptr<const Window> XVASTVideoView::standingWindow() const {
  const View* video = moviePlayerInstance.get();
  if (isInterstitial()) video = this;
  const Window* const own = video == nullptr ? nullptr : video->window();
  if (own != nullptr) return std::static_pointer_cast<const Window>(own->shared_from_this());
  return environment_->platform().application->keyWindow();
}

ViewController* XVASTVideoView::getRootViewController() const {
  const OperationLog log{"-[XVASTVideoView getRootViewController]"};
  const auto window = standingWindow();
  return window ? window->rootViewController().get() : nullptr;
}

ViewController* XVASTVideoView::currentViewController() const {
  const OperationLog log{"-[XVASTVideoView currentViewController]"};
  const auto window = standingWindow();
  return window ? window->topViewController() : nullptr;
}

ViewController* XVASTVideoView::clickPresenter() const {
  return isInterstitial() ? currentViewController() : getRootViewController();
}

ViewController* XVASTVideoView::loadAfterADelayWithData() const {
  const OperationLog log{"-[XVASTVideoView loadAfterADelayWithData:]"};
  return clickPresenter();
}

void XVASTVideoView::XInAppBrowserClose() {
  const OperationLog log{"-[XVASTVideoView XInAppBrowserClose:]"};
  const auto held = shared_from_this();
  closeInAppBrowser();
  endVideoAfterClick();
}

void XVASTVideoView::productViewControllerDidFinish() {
  const OperationLog log{"-[XVASTVideoView productViewControllerDidFinish:]"};
  endVideoAfterClick();
}

void XVASTVideoView::XInAppBrowserWillLeaveApplication() {
  const OperationLog log{"-[XVASTVideoView XInAppBrowserWillLeaveApplication:]"};
  delegate.tell(&Told::vastVideoViewWillLeaveApplication, *this);
}

void XVASTVideoView::endVideoAfterClick() {
  const bool ends = slotConfiguration && slotConfiguration->dismissVideoOnClickThrough;
  if (const auto player = player_; player && ends) player->dismissAdTapped();
}

// Quirk: closing an interstitial counts as skipping it, also after its video has come to the end;
// the event follows the end of the video. Campaigns' reports are built on that.
void XVASTVideoView::closeButtonClicked() {
  const OperationLog log{"-[XVASTVideoView closeButtonClicked]"};
  const auto held = shared_from_this();
  if (const auto player = player_) player->dismissAdTapped();
  trackEventWithEventType(TrackingEventType::skip);
  dismissVideo();
}

void XVASTVideoView::displayCloseButtonText(const std::string& text) {
  const OperationLog log{"-[XVASTVideoView displayCloseButtonText:]"};
  adCloseButton_.showCountdown(film(), text, countdownPosition(slotConfiguration.get()));
}

void XVASTVideoView::displayCloseButton() {
  const OperationLog log{"-[XVASTVideoView displayCloseButton]"};
  adCloseButton_.showClose(film(), [this] { closeButtonClicked(); });
}

// What is lifted into full screen takes its controls along.
View& XVASTVideoView::film() {
  const auto movie = player_ ? player_->moviePlayerController() : nullptr;
  return movie ? static_cast<View&>(*movie) : *this;
}

Rect XVASTVideoView::closeButtonFrame() const { return skipButtonFrame(frame().size()); }

CountdownPlacement XVASTVideoView::getCountdownTimerRect(unsigned position) const {
  return countdownPlacement(position, frame().size());
}

void XVASTVideoView::rotateToOrientation() { adCloseButton_.layOut(); }

// Nothing of the film may come after its end, not even the page of a click that is looked up.
bool XVASTVideoView::endFilm() {
  adCloseButton_.remove();
  clickThrough_->forget();
  return !std::exchange(dismissed_, true);
}

void XVASTVideoView::dismissVideo() {
  const OperationLog log{"-[XVASTVideoView dismissVideo]"};
  if (endFilm()) delegate.tell(&Told::dismissVastViewController);
}

void XVASTVideoView::dismissVideoOnMemoryWarning() {
  const OperationLog log{"-[XVASTVideoView dismissVideoOnMemoryWarning]"};
  if (endFilm()) delegate.tell(&Told::dismissVastViewControllerOnMemoryWarning);
}

// An interstitial that has failed is taken off the screen by whoever hears of the failure.
void XVASTVideoView::didFail(const Error& error, const std::shared_ptr<MoviePlayer>& host) {
  if (isInterstitial()) endFilm();
  delegate.tell(&Told::playerDidFinishWithErrorWithPlayer, error, host);
}

void XVASTVideoView::releaseMemory() {
  const OperationLog log{"-[XVASTVideoView releaseMemory]"};
  adCloseButton_.remove();
  clickThrough_->forget();
  if (const auto player = std::move(player_)) {
    player->delegate.set(nullptr);
    player->releaseMemory();
  }
  player_ = nullptr;
}

}  // namespace tavo
