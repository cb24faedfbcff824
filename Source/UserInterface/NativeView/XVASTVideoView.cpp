#include "UserInterface/NativeView/XVASTVideoView.h"

#include <tavo/Runtime.h>

#include "ErrorHandler/OperationLog.h"
#include "Scene/Window.h"
#include "Services/Application.h"
#include "Tracker/XAdTracker.h"
#include "UserInterface/NativeView/MediaChoice.h"

namespace tavo {

std::shared_ptr<XVASTVideoView> XVASTVideoView::create(const Rect& frame) {
  const OperationLog log{"-[XVASTVideoView initWithFrame:]"};
  std::shared_ptr<XVASTVideoView> view{new XVASTVideoView{frame}};
  view->makeObservers();
  return view;
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

void XVASTVideoView::setUpPlayer() {
  const OperationLog log{"-[XVASTVideoView setUpPlayer]"};
  const auto held = shared_from_this();
  if (isInterstitial()) {
    player_ = XMPMoviePlayer::createForInterstitial(bounds());
    player_->setAutoresizingMask(flexibleWidth | flexibleHeight);
    player_->setBackgroundColor(colors::white);
    addSubview(player_);
  } else {
    player_ = XMPMoviePlayer::create(moviePlayerInstance);
  }
  const auto player = player_;  // the player's first report may end it
  player->bShowSkipAdLabel = !isInterstitial();
  player->isVastInterestitial = isVastInterestitial;
  player->VASTResponse = VASTResponse_;
  player->VASTResponseEventTrackingArray = tracking_;
  player->skipOffset =
      VASTResponse_ ? skipOffSetFromVASTAd(*VASTResponse_).value_or("") : std::string{};
  player->slotConfiguration = slotConfiguration;
  player->mobileAdSubTypes = mobileAdSubTypes;
  player->movieURL = movieURL;
  player->delegate.set(playerEvents_);
  player->setUp();
}

void XVASTVideoView::trackEventWithEventType(TrackingEventType type) {
  const OperationLog log{"-[XVASTVideoView trackEventWithEventType:]"};
  const auto urls = eventUrls(tracking_, type);
  if (!urls) return;
  XAdTracker tracker;
  tracker.impressionURLs = *urls;
  tracker.slotConfiguration = slotConfiguration;
  tracker.trackImpressions();
}

Url XVASTVideoView::clickThroughURL() const {
  const OperationLog log{"-[XVASTVideoView clickThroughURL]"};
  return VASTResponse_ ? clickThroughOf(*VASTResponse_) : Url{};
}

void XVASTVideoView::didClickVideo() {
  const auto held = shared_from_this();
  const Url url = clickThroughURL();
  delegate.tell(&XVASTVidoeViewDelegate::vastVideoViewDidClickVideoWithURL, *this, url);
  openUrlInBrowser(url);
}

void XVASTVideoView::openUrlInBrowser(const Url& url) {
  const OperationLog log{"-[XVASTVideoView openUrlInBrowser:]"};
  clickThrough_->open(url, slotConfiguration.get());
}

void XVASTVideoView::closeInAppBrowser() {
  const OperationLog log{"-[XVASTVideoView closeInAppBrowser]"};
  if (!clickThrough_->closeBrowser()) return;
  delegate.tell(&XVASTVidoeViewDelegate::vastVideoViewDidCloseInAppBrowser, *this);
}

std::shared_ptr<const Window> XVASTVideoView::standingWindow() const {
  const View* video = moviePlayerInstance.get();
  if (isInterstitial()) video = this;
  const Window* const own = video == nullptr ? nullptr : video->window();
  if (own != nullptr) return std::static_pointer_cast<const Window>(own->shared_from_this());
  return Runtime::current().platform().application->keyWindow();
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
  delegate.tell(&XVASTVidoeViewDelegate::vastVideoViewWillLeaveApplication, *this);
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
  const CountdownPlacement place =
      slotConfiguration ? getCountdownTimerRect(slotConfiguration->countdownTimerPosition)
                        : CountdownPlacement{countdownButtonFrame()};
  adCloseButton_.showText(*this, text, place);
}

void XVASTVideoView::displayCloseButton() {
  const OperationLog log{"-[XVASTVideoView displayCloseButton]"};
  adCloseButton_.showClose(*this, closeButtonFrame(), [this] { closeButtonClicked(); });
}

Rect XVASTVideoView::closeButtonFrame() const { return skipButtonFrame(frame().size()); }

CountdownPlacement XVASTVideoView::getCountdownTimerRect(unsigned position) const {
  const Rect otherwise = countdownButtonFrame();
  return countdownPlacement(position, frame().size(), otherwise.size(), otherwise);
}

void XVASTVideoView::rotateToOrientation() {
  const bool counting = !adCloseButton_.isClose() && slotConfiguration;
  adCloseButton_.moveTo(counting
                            ? getCountdownTimerRect(slotConfiguration->countdownTimerPosition).frame
                            : closeButtonFrame());
}

void XVASTVideoView::dismissVideo() {
  const OperationLog log{"-[XVASTVideoView dismissVideo]"};
  if (std::exchange(dismissed_, true)) return;
  adCloseButton_.remove();
  delegate.tell(&XVASTVidoeViewDelegate::dismissVastViewController);
}

void XVASTVideoView::dismissVideoOnMemoryWarning() {
  const OperationLog log{"-[XVASTVideoView dismissVideoOnMemoryWarning]"};
  if (std::exchange(dismissed_, true)) return;
  adCloseButton_.remove();
  delegate.tell(&XVASTVidoeViewDelegate::dismissVastViewControllerOnMemoryWarning);
}

void XVASTVideoView::releaseMemory() {
  const OperationLog log{"-[XVASTVideoView releaseMemory]"};
  adCloseButton_.remove();
  if (const auto player = std::move(player_)) {
    player->delegate.set(nullptr);
    player->releaseMemory();
  }
  player_ = nullptr;
}

}  // namespace tavo
