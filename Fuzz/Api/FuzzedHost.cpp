#include "Api/FuzzedHost.h"

#include <cstdio>
#include <cstdlib>

#include <tavo/TapRecognizer.h>

#include "Runtime/NotificationCenter.h"
#include "Services/Application.h"

namespace tavo::fuzz {

namespace {

constexpr const char* commands[] = {
    "mraid://init",
    "mraid://expand",
    "mraid://expand?url=http%3A%2F%2Fa.example%2F",
    "mraid://close",
    "mraid://open?url=http%3A%2F%2Fa.example%2F",
    "mraid://useCustomClose?useCustomClose=true",
    "mraid://setResizeProperties?width=300&height=200&offsetX=0&offsetY=-150&allowOffscreen=false",
    "mraid://resize",
    "mraid://setExpandProperties?width=320&height=480&useCustomClose=true&isModal=true",
    "mraid://setOrientationProperties?allowOrientationChange=false&forceOrientation=landscape",
    "mraid://playVideo?url=http%3A%2F%2Fmedia.example%2Ffilm.mp4",
    "mraid://storePicture?url=http%3A%2F%2Fcdn.example%2Fa.png",
    "mraid://createCalendarEvent?eventJSON=%7B%22description%22%3A%22x%22%7D",
    "tel:1",
    "sms:1",
    "mailto:a@b.example",
    "app://host",
    "http://landing.example/",
    "about:blank",
};

constexpr Seconds distances[] = {Seconds{0.05}, Seconds{0.6}, Seconds{1.2}, Seconds{5},
                                 Seconds{61}};

constexpr std::string_view systemEvents[] = {
    notifications::didEnterBackground, notifications::willEnterForeground,
    notifications::didReceiveMemoryWarning, notifications::deviceOrientationDidChange,
    notifications::screenLocked};

void fail(const char* why) {
  std::fprintf(stderr, "%s\n", why);
  std::abort();
}

}  // namespace

FuzzedHost::FuzzedHost(Bytes bytes) : bytes_{bytes} {
  window_->setRootViewController(root_);
  platform_.application->allWindows = {window_};
  settings_->bannerRefreshInterval = 30;
  makeTables();
  makeBanner();
  makeInterstitial();
}

FuzzedHost::~FuzzedHost() { platform_.application->allWindows.clear(); }

void FuzzedHost::makeTables() {
  const auto ofBanner = [this](XAdView& view) {
    if (view.weak_from_this().expired()) fail("A slot reported from its end.");
    heard();
  };
  bannerEvents_ = std::make_shared<XAdViewDelegate>(XAdViewDelegate{
      .xAdViewDidLoad = ofBanner,
      .xAdViewDidFailWithError = [ofBanner](XAdView& view, const auto&) { ofBanner(view); },
      .xAdViewDidClickOnAd = ofBanner,
      .xAdViewWillOpenInInAppBrowser = ofBanner,
      .xAdViewWillCloseInAppBrowser = ofBanner,
      .xAdViewWillLeaveApplication = ofBanner,
      .xAdDidExpand = ofBanner,
      .xAdDidCollapse = ofBanner,
      .xAdViewDidDismissOnMemoryWarning = ofBanner,
      .xAdViewPrerollDidFinishWithPlayer = [ofBanner](XAdView& view,
                                                      const auto&) { ofBanner(view); },
      .xAdViewDidFinishQuartile = [ofBanner](XAdView& view, int) { ofBanner(view); },
      .xAdViewDidPauseVideo = ofBanner,
      .xAdViewDidSkipVideo = ofBanner,
      .xAdViewShouldDisplayAdOnWebViewFinishRender =
          [this, ofBanner](XAdView& view, WebView&) {
            ofBanner(view);
            return !bytes_.flip();
          }});
  const auto ofController = [this](XAdInterstitialViewController& controller) {
    if (controller.weak_from_this().expired()) fail("An interstitial reported from its end.");
    heard();
  };
  interstitialEvents_ =
      std::make_shared<XAdInterstitialViewControllerDelegate>(XAdInterstitialViewControllerDelegate{
          .xAdInterstitialDidLoad =
              [this](XAdInterstitialViewController* controller) {
                if (controller != nullptr && interstitial_ && !bytes_.flip()) {
                  root_->presentViewController(interstitial_, Animated::no);
                }
                heard();
              },
          .xAdInterstitialDidFailWithError =
              [ofController](auto& controller, const auto&) { ofController(controller); },
          .xAdInterstitialDidSkipVideo = ofController,
          .xAdInterstitialDismissed = ofController,
          .xAdInterstitialWillOpenInInAppBrowser = ofController,
          .xAdInterstitialWillCloseInAppBrowser = ofController});
}

void FuzzedHost::makeBanner() {
  banner_ = XAdView::create({0, 430, 320, 50});
  banner_->setSlotConfiguration(settings_);
  banner_->delegate.set(bannerEvents_);
  root_->view()->addSubview(banner_);
}

void FuzzedHost::makeInterstitial() {
  interstitial_ = XAdInterstitialViewController::create();
  interstitial_->delegate.set(interstitialEvents_);
}

void FuzzedHost::heard() {
  switch (bytes_.choose(24)) {
    case 1:
      if (banner_) banner_->removeFromSuperview();
      return banner_.reset();
    case 2:
      return interstitial_.reset();
    case 3:
      if (banner_) banner_->releaseMemory();
      return;
    case 4:
      if (banner_) banner_->loadWithDomainName("ads.example/d", "page", "Top");
      return;
    case 5:
      return root_->dismissViewController(Animated::no);
    case 6:
      return actAsSystem();
    default:
      return;
  }
}

void FuzzedHost::actOnBanner() {
  if (!banner_) return makeBanner();
  const auto banner = banner_;
  switch (bytes_.choose(9)) {
    case 0:
    case 1:
      return banner->loadWithDomainName("ads.example/d", "page", "Top", "a=b", "c=d");
    case 2:
      return banner->refreshAd();
    case 3:
      return banner->releaseMemory();
    case 4:
      return banner->setHidden(bytes_.flip());
    case 5:
      return banner->setFrame({0, bytes_.flip() ? 0.0 : 430.0, 320, bytes_.flip() ? 0.0 : 250.0});
    case 6:
      return banner->superview() != nullptr ? banner->removeFromSuperview()
                                            : root_->view()->addSubview(banner);
    case 7:
      return banner->setMoviePlayerInstance(bytes_.flip() ? player_ : nullptr);
    default:
      if (bytes_.flip()) banner->removeFromSuperview();
      return banner_.reset();
  }
}

void FuzzedHost::actOnInterstitial() {
  if (!interstitial_) return makeInterstitial();
  const auto interstitial = interstitial_;
  switch (bytes_.choose(7)) {
    case 0:
    case 1:
      return interstitial->loadWithDomainName("ads.example/d", "page", "Full");
    case 2:
      return root_->presentViewController(interstitial, Animated::yes);
    case 3:
      return interstitial->closeInterstitialAd();
    case 4:
      return interstitial->releaseMemory();
    case 5:
      return static_cast<void>(interstitial->cancelOperation());
    default:
      return interstitial_.reset();
  }
}

void FuzzedHost::actOnCreative() {
  const auto page = platform_.webViews->last();
  if (!page) return;
  switch (bytes_.choose(6)) {
    case 0:
      return page->terminateProcess();
    case 1:
      return page->failLoad({"WebKitErrorDomain", cannotShowUrlError, "no"});
    case 2:
      return page->finishLoad();
    default:
      page->navigate({Url::fromText(bytes_.pick(commands)), Url::parse("about:blank"),
                      bytes_.flip() ? NavigationType::other : NavigationType::linkClicked});
  }
}

void FuzzedHost::actOnPlayer() {
  if (!player_) {
    player_ = std::static_pointer_cast<headless::HeadlessMoviePlayer>(
        platform_.moviePlayers->create({0, 0, 320, 180}));
    player_->setContentUrl(Url::parse("http://media.example/own.mp4"));
    root_->view()->addSubview(player_);
    if (banner_) banner_->setMoviePlayerInstance(player_);
    return;
  }
  switch (bytes_.choose(6)) {
    case 0:
      return player_->play();
    case 1:
      return player_->pause();
    case 2:
      return player_->seekByHand(static_cast<double>(bytes_.choose(40)));
    case 3:
      return player_->setFullscreen(bytes_.flip());
    case 4:
      return player_->stop();
    default:
      player_->removeFromSuperview();
      return player_.reset();
  }
}

void FuzzedHost::actAsPerson() {
  constexpr double places[] = {10, 160, 300, 455, 310, 28};
  const auto composers = platform_.composers;
  switch (bytes_.choose(6)) {
    case 0:
      if (!platform_.alerts->answers.empty()) platform_.alerts->answers.back()(bytes_.choose(3));
      return;
    case 1:
      if (composers->storeFinished) composers->storeFinished();
      return;
    case 2:
      if (composers->mailFinished) composers->mailFinished(MailComposeResult{});
      return;
    default:
      deliverTap(*window_, {bytes_.pick(places), bytes_.pick(places)});
  }
}

void FuzzedHost::actAsSystem() {
  switch (bytes_.choose(5)) {
    case 0:
      return platform_.network->setReachable(bytes_.flip());
    case 2:
      return platform_.runLoop->jumpCalendar(std::chrono::hours{bytes_.flip() ? 90'000 : -90'000});
    case 1:
      platform_.application->orientation =
          bytes_.flip() ? InterfaceOrientation::landscapeLeft : InterfaceOrientation::portrait;
      return window_->setFrame(bytes_.flip() ? Rect{0, 0, 480, 320} : Rect{0, 0, 320, 480});
    default:
      if (runtime_) runtime_->notifications().post(bytes_.pick(systemEvents));
  }
}

void FuzzedHost::letTimePass() {
  if (bytes_.flip()) return platform_.runLoop->runPending();
  platform_.runLoop->advance(bytes_.pick(distances));
}

void FuzzedHost::act() {
  switch (bytes_.choose(9)) {
    case 0:
      return server_.chooseAnswer(bytes_);
    case 1:
      return actOnBanner();
    case 2:
      return actOnInterstitial();
    case 3:
      return actOnCreative();
    case 4:
      return actOnPlayer();
    case 5:
      return actAsPerson();
    case 6:
      return actAsSystem();
    default:
      return letTimePass();
  }
}

void FuzzedHost::run() {
  constexpr int most = 300;
  for (int step = 0; step < most && !bytes_.empty(); ++step) act();
  end();
}

// The host goes, its runtime before or after its ads: nothing may be left behind.
void FuzzedHost::end() {
  const bool runtimeFirst = bytes_.flip();
  if (runtimeFirst) runtime_.reset();
  root_->dismissViewController(Animated::no);
  if (player_) player_->setFullscreen(false);
  root_->view()->removeAllSubviews();
  const std::weak_ptr<XAdView> banner = banner_;
  const std::weak_ptr<XAdInterstitialViewController> interstitial = interstitial_;
  banner_.reset();
  interstitial_.reset();
  player_.reset();
  platform_.alerts->answers.clear();
  *platform_.composers = {};
  platform_.runLoop->advance(Seconds{120});
  server_.checkImpressions();
  if (!banner.expired()) fail("The slot outlives its host.");
  if (!interstitial.expired()) fail("The interstitial outlives its host.");
  runtime_.reset();
  platform_.runLoop->advance(Seconds{120});
  if (platform_.runLoop->activeTimers() != 0) fail("Timers are left behind.");
}

}  // namespace tavo::fuzz
