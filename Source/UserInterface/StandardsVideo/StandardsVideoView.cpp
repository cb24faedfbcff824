#include "UserInterface/StandardsVideo/StandardsVideoView.h"

#include <cmath>

#include "Services/Application.h"
#include "UserInterface/StandardsVideo/StandardsMedia.h"

namespace tavo {

namespace {

// Why a measuring program was not run: nothing here runs one.
constexpr const char* verificationNotSupported = "2";

const VastLinear& linearOf(const VastAd& ad) {
  static const VastLinear none{};
  const VastLinear* const linear = ad.linear();
  return linear != nullptr ? *linear : none;
}

}  // namespace

std::shared_ptr<StandardsVideoView> StandardsVideoView::create(
    std::shared_ptr<Environment> environment, const Rect& frame, std::shared_ptr<const VastAd> ad,
    std::shared_ptr<VastPings> pings) {
  std::shared_ptr<StandardsVideoView> view{
      new StandardsVideoView{std::move(environment), frame, std::move(ad), std::move(pings)}};
  view->makeObservers();
  view->setMacros();
  view->makeIcons();
  return view;
}

StandardsVideoView::StandardsVideoView(std::shared_ptr<Environment> environment, const Rect& frame,
                                       std::shared_ptr<const VastAd> ad,
                                       std::shared_ptr<VastPings> pings)
    : XVASTVideoView{std::move(environment), frame}, ad_{std::move(ad)}, pings_{std::move(pings)} {}

// The pings may live longer than the film.
void StandardsVideoView::setMacros() {
  const std::weak_ptr<View> weak = weak_from_this();
  const auto live = [weak](auto&& value) {
    return [weak, value]() -> std::string {
      const auto self = std::static_pointer_cast<StandardsVideoView>(weak.lock());
      return self ? value(*self) : "-1";
    };
  };
  using Self = StandardsVideoView;
  pings_->macros.set("ADPLAYHEAD", live([](const Self& self) {
                       const auto movie = self.mpMoviePlayer()
                                              ? self.mpMoviePlayer()->moviePlayerController()
                                              : nullptr;
                       return playheadText(movie ? movie->currentPlaybackTime() : -1);
                     }));
  pings_->macros.set("PLAYERSIZE", live([](Self& self) {
                       const Size size = self.film().frame().size();
                       return std::to_string(std::lround(size.width)) + "," +
                              std::to_string(std::lround(size.height));
                     }));
  pings_->macros.set("PLAYERSTATE", live([](const Self& self) { return self.stateText(); }));
  pings_->macros.set("ASSETURI", live([](const Self& self) { return self.movieURL.text(); }));
}

// Without a state the macro stays as it stands.
std::string StandardsVideoView::stateText() const {
  const auto movie = mpMoviePlayer() ? mpMoviePlayer()->moviePlayerController() : nullptr;
  std::string text;
  const auto add = [&text](bool is, const char* word) {
    if (is) text += (text.empty() ? "" : ",") + std::string{word};
  };
  add(movie && movie->isMuted(), "muted");
  add(paused_, "paused");
  add(movie && movie->isFullscreen(), "fullscreen");
  return text;
}

void StandardsVideoView::makeIcons() {
  const auto& icons = linearOf(*ad_).icons;
  if (icons.empty()) return;
  icons_ = std::make_shared<IconLayer>(
      environment(), icons, pings_,
      IconLayer::Events{
          .canOpen = [application = environment()->platform().application](
                         const Url& url) { return url.isHttp() && application->canOpenUrl(url); },
          .open = [this](const Url& url) { openUrlInBrowser(url); }});
}

void StandardsVideoView::configure(XMPMoviePlayer& player) {
  player.skipRule = [offset = linearOf(*ad_).skipOffset,
                     slot = slotConfiguration](double duration) {
    return standardsSkipPoint(offset, duration, slot.get());
  };
}

std::vector<std::string> StandardsVideoView::addressesOf(std::string_view event) const {
  std::vector<std::string> addresses;
  for (const auto& one : linearOf(*ad_).tracking) {
    if (one.event == event) addresses.push_back(one.url);
  }
  return addresses;
}

void StandardsVideoView::tellOnce(const std::string& event) {
  pings_->once(event, addressesOf(event));
}

void StandardsVideoView::tellEach(std::initializer_list<std::string_view> events) {
  for (const auto event : events) pings_->each(event, addressesOf(event));
}

void StandardsVideoView::trackEventWithEventType(TrackingEventType type) {
  switch (type) {
    case TrackingEventType::start:
      return firstFrame();
    case TrackingEventType::firstQuartile:
      return tellOnce("firstQuartile");
    case TrackingEventType::midpoint:
      return tellOnce("midpoint");
    case TrackingEventType::thirdQuartile:
      return tellOnce("thirdQuartile");
    case TrackingEventType::complete:
      completed_ = true;
      return tellOnce("complete");
    case TrackingEventType::pause:
      paused_ = true;
      return tellEach({"pause"});
    case TrackingEventType::resume:
      paused_ = false;
      return tellEach({"resume"});
    case TrackingEventType::rewind:
      return tellEach({"rewind"});
    case TrackingEventType::fullscreen:
      return tellEach({"fullscreen", "expand", "playerExpand"});
    case TrackingEventType::exitFullscreen:
      return tellEach({"exitFullscreen", "collapse", "playerCollapse"});
    case TrackingEventType::skip:
      skipped_ = true;
      return tellOnce("skip");
    default:
      return;
  }
}

// A film that begins anew, after a lock of the screen, has begun before.
void StandardsVideoView::firstFrame() {
  started_ = true;
  tellOnce("loaded");
  pings_->once("impression", ad_->impressions);
  tellOnce("creativeView");
  tellOnce("start");
  tellUnmeasured();
}

void StandardsVideoView::tellUnmeasured() {
  std::vector<std::string> addresses;
  for (const auto& verification : ad_->verifications) {
    for (const auto& one : verification.tracking) {
      if (one.event == "verificationNotExecuted") addresses.push_back(one.url);
    }
  }
  pings_->macros.set("REASON", std::string{verificationNotSupported});
  pings_->once("verificationNotExecuted", addresses);
  pings_->macros.set("REASON", std::string{});
}

void StandardsVideoView::playbackMoved(double time, double duration) {
  const auto& tracking = linearOf(*ad_).tracking;
  for (std::size_t index = 0; index < tracking.size(); ++index) {
    const auto& one = tracking[index];
    if (one.event != "progress" || one.offset->seconds(duration) > time) continue;
    pings_->once("progress " + std::to_string(index), {one.url});
  }
  if (icons_ && !completed_) icons_->showAt(film(), time);
}

Url StandardsVideoView::clickThroughURL() const {
  return pings_->filled(linearOf(*ad_).click.through);
}

void StandardsVideoView::didClickVideo() {
  const auto held = shared_from_this();
  const VastLinear& linear = linearOf(*ad_);
  pings_->each("clickTracking", linear.click.tracking);
  pings_->each("customClick", linear.customClicks);
  XVASTVideoView::didClickVideo();
}

// The page stands above the film: a further part of the ad that its viewer has asked for.
void StandardsVideoView::willOpenInAppBrowser() {
  tellOnce("acceptInvitation");
  tellOnce("acceptInvitationLinear");
  XVASTVideoView::willOpenInAppBrowser();
}

bool StandardsVideoView::isSkippable() const {
  const auto movie = mpMoviePlayer() ? mpMoviePlayer()->moviePlayerController() : nullptr;
  const double duration = movie ? movie->duration() : 0;
  return !standardsSkipPoint(linearOf(*ad_).skipOffset, duration, slotConfiguration.get())
              .wholeVideo;
}

// Who closes an interstitial skips its film only while there is something left to be skipped.
void StandardsVideoView::closeButtonClicked() {
  const auto held = shared_from_this();
  const bool skips = !completed_ && isSkippable();
  if (const auto player = mpMoviePlayer()) player->dismissAdTapped();
  if (skips) pings_->once("skip", addressesOf("skip"));
  tellEach({"close", "closeLinear"});
  dismissVideo();
}

void StandardsVideoView::soundSwitched(bool muted) { tellEach({muted ? "mute" : "unmute"}); }

void StandardsVideoView::clearFilm() {
  if (icons_) icons_->remove();
  icons_.reset();
}

}  // namespace tavo
