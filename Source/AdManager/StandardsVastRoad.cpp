#include "AdManager/StandardsVastRoad.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <random>
#include <utility>

#include <tavo/MoviePlayerFactory.h>
#include <tavo/SdkErrors.h>

#include "Runtime/Relay.h"
#include "Services/RunLoop.h"
#include "Services/Screen.h"
#include "Utilities/XUserAgent.h"

namespace tavo {

namespace {

constexpr int documentIsMissing = 400;  // and every status above
constexpr int fileNotFound = 404;
constexpr int fileGone = 410;

// By the tables of VAST 4.2.
constexpr const char* placedInStream = "1";
constexpr const char* placedOverAll = "5";
constexpr const char* breakBefore = "1";
constexpr const char* breakBetween = "2";
constexpr const char* breakAlone = "4";

bool isTimeout(const Error& error) {
  const bool transport = error.domain == transportErrorDomain &&
                         error.code == static_cast<int>(TransportError::timedOut);
  const bool movie =
      error.domain == movieErrorDomain && error.code == static_cast<int>(MovieError::timedOut);
  return transport || movie;
}

Error errorOf(VastErrorCode code) {
  switch (code) {
    case VastErrorCode::badXml:
      return makeError(SdkError::vastInvalid, "The VAST document is no XML that can be read.");
    case VastErrorCode::badSchema:
      return makeError(SdkError::vastInvalid, "The document is no VAST document.");
    case VastErrorCode::badVersion:
      return makeError(SdkError::vastInvalid, "VAST documents of versions 2 to 4 can be read.");
    case VastErrorCode::noSupportedMedia:
    case VastErrorCode::mediaNotFound:
      return makeError(SdkError::invalidMovieUrl, "Invalid Movie URL.");
    case VastErrorCode::vpaid:
      return makeError(SdkError::invalidMovieUrl, "The ad is a program (VPAID), not a film.");
    case VastErrorCode::noAd:
      return makeError(SdkError::noAd, "The VAST document has no ad.");
    default:
      return makeError(SdkError::noAd, "The VAST answer ended with error " +
                                           std::to_string(static_cast<int>(code)) + ".");
  }
}

std::string randomId() {
  std::random_device random;
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%08x-%04x-4%03x-8%03x-%08x%04x", random(),
                random() & 0xFFFFU, random() & 0xFFFU, random() & 0xFFFU, random(),
                random() & 0xFFFFU);
  return text.data();
}

std::string joinedIds(const VastAd& ad) {
  std::string text;
  for (const auto& creative : ad.creatives) {
    for (const auto& id : creative.universalAdIds) {
      text += (text.empty() ? "" : ",") + id.registry + " " + id.value;
    }
  }
  return text;
}

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const auto& word : words) text += (text.empty() ? "" : ",") + word;
  return text;
}

}  // namespace

std::shared_ptr<StandardsVastRoad> StandardsVastRoad::create(
    std::shared_ptr<Environment> environment, Settings settings, Events events) {
  std::shared_ptr<StandardsVastRoad> road{
      new StandardsVastRoad{std::move(environment), std::move(settings), std::move(events)}};
  road->makeObservers();
  return road;
}

StandardsVastRoad::StandardsVastRoad(std::shared_ptr<Environment> environment, Settings settings,
                                     Events events)
    : environment_{std::move(environment)},
      settings_{std::move(settings)},
      events_{std::move(events)},
      breakPings_{std::make_shared<VastPings>(environment_, settings_.slotConfiguration)},
      errorPings_{breakPings_},
      transaction_{randomId()} {}

// A film that was sought ahead and is not going to be played is told so.
StandardsVastRoad::~StandardsVastRoad() {
  if (probe_) probe_->cancel();
  dropReady();
  dropFilm();
}

void StandardsVastRoad::dropReady() {
  const auto film = std::exchange(ready_, std::nullopt);
  if (!film) return;
  std::vector<std::string> addresses;
  for (const auto& one : film->ad->linear()->tracking) {
    if (one.event == "notUsed") addresses.push_back(one.url);
  }
  film->pings->once("notUsed", addresses);
}

void StandardsVastRoad::makeObservers() {
  using Self = StandardsVastRoad;
  const Relay relay{*this};
  XVASTVidoeViewDelegate table = *settings_.videoEvents;
  table.vastVideoAdDidLoad = relay.call(&Self::playing);
  table.playerDidFinishWithErrorWithPlayer = relay.call(&Self::didFail);
  table.prerollDidFinishWithPlayer = relay.call(&Self::prerollEnded);
  table.dismissVastViewController = relay.call(&Self::interstitialEnded);
  videoEvents_ = std::make_shared<XVASTVidoeViewDelegate>(std::move(table));
}

bool StandardsVastRoad::isInterstitial() const {
  const auto view = settings_.adView.lock();
  return view && view->mobileAdTypes() == MobileAdTypes::interstitial;
}

void StandardsVastRoad::loadVastAd(const std::string& text) {
  auto& players = *environment_->platform().moviePlayers;
  players.warmUp();
  const bool content = settings_.moviePlayerInstance && !isInterstitial();
  if (content) contentPlayhead_ = settings_.moviePlayerInstance->currentPlaybackTime();
  source_ = std::make_shared<VastAdSource>(
      VastAdSource::Settings{
          environment_->limits(), fetch(),
          [runLoop = environment_->platform().runLoop] { return runLoop->now(); }},
      [weak = weak_from_this()](VastErrorCode code, const std::vector<std::string>& addresses) {
        const auto self = weak.lock();
        if (!self) return;
        self->lastError_ = errorOf(code);
        self->tellErrors(code, addresses);
      });
  players.findPlayable(filmTypes(), [weak = weak_from_this(), text](const auto& types) {
    const auto self = weak.lock();
    if (!self) return;
    self->playableTypes_ = types;
    self->source_->begin(text, self->settings_.documentUrl);
    self->source_->first([weak](const auto& turn) {
      if (const auto road = weak.lock()) road->received(turn);
    });
  });
}

VastAdSource::Fetch StandardsVastRoad::fetch() const {
  return [environment = environment_, inspection = inspection()](const Url& url, Seconds timeout,
                                                                 const auto& completion) {
    HttpRequest request = environment->shared<XUserAgent>().requestWithin(url, timeout);
    request.slot = inspection.slot;
    request.maximumBodyBytes = environment->limits().vastBytes;
    environment->platform().http->send(
        std::move(request), [completion, inspection, url](const HttpResult& result) {
          const bool usable =
              !result.error && result.response && result.response->status < documentIsMissing;
          const std::string why = usable ? "fetched" : "failed";
          inspection.tell(InspectionKind::wrapper, why + ": " + url.text(),
                          {{"url", url.text()}, {"why", why}});
          completion(usable ? VastFetched{result.response->body, result.response->url}
                            : VastFetched{std::nullopt, {}});
        });
  };
}

SlotInspection StandardsVastRoad::inspection() const {
  const auto view = settings_.adView.lock();
  return {environment_->platform().inspection, view ? &view->sceneView() : nullptr};
}

void StandardsVastRoad::seekAfter(bool shown) {
  source_->nextAfter(shown, [weak = weak_from_this()](const auto& turn) {
    if (const auto self = weak.lock()) self->received(turn);
  });
}

// The first wait is over for the caller with whatever comes of it, so each refusal asks anew.
void StandardsVastRoad::received(const std::optional<VastTurn>& turn) {
  const auto held = shared_from_this();
  if (!turn) return exhausted();
  const auto ad = std::make_shared<const VastAd>(turn->ad);
  sought_ = Film{ad, turn->chain, makePings(*turn), {}, 0};
  const VastLinear* const linear = ad->linear();
  if (linear == nullptr) {
    const bool other = std::any_of(ad->creatives.begin(), ad->creatives.end(),
                                   [](const auto& creative) { return creative.hasNonLinear; });
    const auto code = other ? VastErrorCode::unexpectedLinearity : VastErrorCode::unexpectedAdType;
    return refuse(code, errorOf(code));
  }
  auto ranking = rankedMedia(*linear, mediaWish());
  if (ranking.files.empty()) return refuse(ranking.failure, errorOf(ranking.failure));
  if (!isInterstitial() && !settings_.moviePlayerInstance) {
    return refuse(VastErrorCode::unexpectedAdType,
                  makeError(MovieError::unavailable,
                            "A video in a banner slot needs the host's movie player."));
  }
  sought_->files = std::move(ranking.files);
  inspection().tell(InspectionKind::media, "plays " + sought_->files.front().url,
                    {{"url", sought_->files.front().url}});
  lookForMedia();
}

std::shared_ptr<VastPings> StandardsVastRoad::makePings(const VastTurn& turn) const {
  auto pings = std::make_shared<VastPings>(environment_, settings_.slotConfiguration);
  VastMacros& macros = pings->macros;
  const bool alone = contentPlayhead_ < 0;
  const bool skips = turn.ad.linear() != nullptr && turn.ad.linear()->skipOffset.has_value();
  macros.set("ADPLAYHEAD", "-1");
  macros.set("CONTENTPLAYHEAD", playheadText(contentPlayhead_));
  macros.set("MEDIAPLAYHEAD", playheadText(contentPlayhead_));
  macros.set("TRANSACTIONID", transaction_);
  macros.set("PLACEMENTTYPE", alone ? placedOverAll : placedInStream);
  macros.set("BREAKPOSITION",
             alone ? breakAlone : (contentPlayhead_ > 0 ? breakBetween : breakBefore));
  macros.set("ADCOUNT", std::to_string(std::max<std::size_t>(turn.podSize, 1)));
  if (turn.place > 0) macros.set("PODSEQUENCE", std::to_string(turn.place));
  macros.set("ADTYPE", turn.ad.adType.empty() ? "video" : turn.ad.adType);
  macros.set("ADSERVINGID", turn.ad.adServingId);
  macros.set("UNIVERSALADID", joinedIds(turn.ad));
  macros.set("MEDIAMIME", joined(playableTypes_));
  macros.set("PLAYERCAPABILITIES", "skip,fullscreen");
  macros.set("INVENTORYSTATE", skips ? "skippable,autoplayed" : "autoplayed");
  return pings;
}

MediaWish StandardsVastRoad::mediaWish() const {
  const auto view = settings_.adView.lock();
  Size size = view ? view->sceneView().frame().size() : Size{};
  if (settings_.moviePlayerInstance && !isInterstitial()) {
    size = settings_.moviePlayerInstance->frame().size();
  }
  const double scale = environment_->platform().screen->scale().value_or(1);
  const auto slot = settings_.slotConfiguration;
  return {playableTypes_,
          {size.width * scale, size.height * scale},
          slot ? slot->preferredVideoBitrate : 0};
}

void StandardsVastRoad::lookForMedia() {
  const Film& film = *sought_;
  const Url url = Url::fromText(film.files[film.file].url);
  film.pings->macros.set("ASSETURI", url.text());
  HttpRequest request = environment_->shared<XUserAgent>().requestWithin(
      url, environment_->limits().mediaProbeTimeout);
  request.method = "HEAD";
  request.slot = inspection().slot;
  const Relay relay{*this};
  probe_ = environment_->platform().http->send(std::move(request),
                                               relay.call(&StandardsVastRoad::looked));
}

void StandardsVastRoad::looked(const HttpResult& result) {
  probe_.reset();
  if (!sought_) return;
  const int status = result.response ? result.response->status : 0;
  if (!result.error && status != fileNotFound && status != fileGone) {
    ready_ = std::move(*sought_);
    sought_.reset();
    if (isWaiting_) playNext();
    return;
  }
  Film& film = *sought_;
  const std::size_t tries = std::min(film.files.size(), environment_->limits().vastMediaTries);
  if (++film.file < tries) return lookForMedia();
  const bool late = result.error && isTimeout(*result.error);
  const auto code = late ? VastErrorCode::mediaTimeout : VastErrorCode::mediaNotFound;
  refuse(code, result.error ? *result.error : errorOf(code));
}

// An ad that is not going to be shown makes room for another one.
void StandardsVastRoad::refuse(VastErrorCode code, const Error& error) {
  errorPings_ = sought_->pings;
  source_->tellFailure(code, sought_->chain);
  lastError_ = error;
  sought_.reset();
  seekAfter(false);
}

void StandardsVastRoad::tellErrors(VastErrorCode code, const std::vector<std::string>& addresses) {
  const auto pings = std::exchange(errorPings_, breakPings_);
  const std::string number = std::to_string(static_cast<int>(code));
  inspection().tell(InspectionKind::wrapper, "an ad cannot be shown, VAST error " + number,
                    {{"why", number}});
  pings->macros.set("ERRORCODE", number);
  pings->each("error", addresses);
  pings->macros.set("ERRORCODE", std::string{});
}

void StandardsVastRoad::playNext() {
  const auto held = shared_from_this();
  const auto view = settings_.adView.lock();
  if (!view) return conclude();
  dropFilm();
  isWaiting_ = false;
  end_ = nullptr;
  shown_ = std::exchange(ready_, std::nullopt);
  const bool interstitial = isInterstitial();
  const auto subType =
      interstitial ? MobileAdSubTypes::vastInterstitial : MobileAdSubTypes::vastBanner;
  view->setMobileAdSubTypes(subType);
  video_ = StandardsVideoView::create(environment_, view->sceneView().bounds(), shown_->ad,
                                      shown_->pings);
  video_->slotConfiguration = settings_.slotConfiguration;
  video_->moviePlayerInstance = settings_.moviePlayerInstance;
  video_->isVastInterestitial = interstitial;
  video_->mobileAdSubTypes = subType;
  video_->movieURL = Url::fromText(shown_->files[shown_->file].url);
  video_->delegate.set(videoEvents_);
  if (interstitial) {
    view->sceneView().removeAllSubviews();
    video_->setAutoresizingMask(flexibleWidth | flexibleHeight);
    view->sceneView().addSubview(video_);
  }
  const auto video = video_;  // held: its first report may end the road
  (void)video->setUpPlayer();
  conclude();
}

// The first frame: the ad counts, and the next one is sought meanwhile.
void StandardsVastRoad::playing() {
  if (!video_ || !shown_) return;
  const auto video = video_;
  const bool first = !std::exchange(hasPlayed_, true);
  if (!isExhausted_ && !ready_ && !sought_) seekAfter(true);
  const auto ad = shown_->ad;
  if (first && settings_.videoEvents->vastVideoAdDidLoad) {
    settings_.videoEvents->vastVideoAdDidLoad(*video);
  }
  if (video_ != video) return;  // the host has let go of it
  events_.began(*ad);
  if (video_ == video) offerCompanions();
}

void StandardsVastRoad::offerCompanions() {
  const auto slot = settings_.slotConfiguration;
  std::vector<std::shared_ptr<VastCompanionOffer>> offers;
  for (auto& companion :
       fittingCompanions(*shown_->ad, slot ? slot->companionSizes : std::vector<Size>{})) {
    offers.push_back(std::make_shared<CompanionOffer>(
        std::move(companion), CompanionOffer::Settings{environment_, shown_->pings,
                                                       "companion " + std::to_string(offers.size()),
                                                       [weak = settings_.adView](const Url& url) {
                                                         if (const auto view = weak.lock())
                                                           view->openUrlInBrowser(url);
                                                       }}));
  }
  if (!offers.empty()) events_.companions(offers);
}

// Before its first frame a film that fails makes room for another ad, and nobody hears of it.
void StandardsVastRoad::didFail(const Error& error, const std::shared_ptr<MoviePlayer>& host) {
  if (!video_ || !shown_) return;
  const auto code = isTimeout(error) ? VastErrorCode::mediaTimeout : VastErrorCode::mediaProblem;
  errorPings_ = shown_->pings;
  source_->tellFailure(code, shown_->chain);
  lastError_ = error;
  if (!video_->hasStarted()) {
    isWaiting_ = true;
    return seekAfter(false);
  }
  if (isExhausted_ && !ready_) {
    return settings_.videoEvents->playerDidFinishWithErrorWithPlayer(error, host);
  }
  isWaiting_ = true;
  if (ready_ && isInterstitial()) playNext();
}

void StandardsVastRoad::prerollEnded(const std::shared_ptr<MoviePlayer>& host) {
  goOn([this, host] { settings_.videoEvents->prerollDidFinishWithPlayer(host); });
}

void StandardsVastRoad::interstitialEnded() {
  goOn([this] { settings_.videoEvents->dismissVastViewController(); });
}

// A film has left its player. What a person has closed, and what the system has ended, is the end
// of everything; the skip of a pre-roll is told only after its end, so the next turn decides.
void StandardsVastRoad::goOn(const std::function<void()>& end) {
  const bool over = isExhausted_ && !ready_ && (hasPlayed_ || hasFailed_);
  if (over || !video_) return end();
  end_ = end;
  environment_->platform().runLoop->post([weak = weak_from_this(), video = video_] {
    const auto self = weak.lock();
    if (!self || self->video_ != video) return;
    if (!video->makesRoom() && !self->isWaiting_) {
      self->dropReady();
      self->isExhausted_ = true;
    }
    self->isWaiting_ = true;
    if (self->ready_) return self->playNext();
    if (self->isExhausted_) self->exhausted();
  });
}

void StandardsVastRoad::dropFilm() {
  const auto video = std::exchange(video_, nullptr);
  if (!video) return;
  video->delegate.set(nullptr);
  video->removeFromSuperview();
  video->releaseMemory();
}

void StandardsVastRoad::exhausted() {
  const auto held = shared_from_this();
  isExhausted_ = true;
  if (!isWaiting_) return;
  isWaiting_ = false;
  if (!hasPlayed_ && (lastError_ || !end_)) {
    hasFailed_ = true;
    if (isInterstitial()) dropFilm();
    events_.failed(lastError_.value_or(errorOf(VastErrorCode::noAd)));
  }
  if (const auto end = std::exchange(end_, nullptr)) end();
  conclude();
}

void StandardsVastRoad::conclude() {
  if (!std::exchange(concluded_, true)) events_.concluded();
}

}  // namespace tavo
