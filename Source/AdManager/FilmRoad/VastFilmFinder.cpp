#include "AdManager/FilmRoad/VastFilmFinder.h"

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

namespace tavo {

namespace {

constexpr int fileNotFound = 404;
constexpr int fileGone = 410;

// By the tables of VAST 4.2.
constexpr const char* placedInStream = "1";
constexpr const char* placedOverAll = "5";
constexpr const char* breakBefore = "1";
constexpr const char* breakBetween = "2";
constexpr const char* breakAlone = "4";

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

bool isTimeout(const Error& error) {
  const bool transport = error.domain == transportErrorDomain &&
                         error.code == static_cast<int>(TransportError::timedOut);
  const bool movie =
      error.domain == movieErrorDomain && error.code == static_cast<int>(MovieError::timedOut);
  return transport || movie;
}

VastFilmFinder::VastFilmFinder(FilmSlot slot, Url documentUrl, Found found)
    : slot_{std::move(slot)},
      documentUrl_{std::move(documentUrl)},
      found_{std::move(found)},
      transaction_{randomId()},
      breakPings_{std::make_shared<VastPings>(slot_.environment, slot_.slotConfiguration)},
      errorPings_{breakPings_} {}

VastFilmFinder::~VastFilmFinder() {
  if (probe_) probe_->cancel();
}

Error VastFilmFinder::reason() const { return lastError_.value_or(errorOf(VastErrorCode::noAd)); }

void VastFilmFinder::begin(const std::string& text) {
  seeking_ = true;
  const auto& platform = slot_.environment->platform();
  const bool content = slot_.moviePlayerInstance && !slot_.isInterstitial();
  if (content) contentPlayhead_ = slot_.moviePlayerInstance->currentPlaybackTime();
  source_ = std::make_shared<VastAdSource>(
      VastAdSource::Settings{slot_.environment->limits(), fetch(),
                             [runLoop = platform.runLoop] { return runLoop->now(); }},
      [weak = weak_from_this()](VastErrorCode code, const std::vector<std::string>& addresses) {
        const auto self = weak.lock();
        if (!self) return;
        self->lastError_ = errorOf(code);
        self->tellErrors(code, addresses);
      });
  platform.moviePlayers->findPlayable(
      filmTypes(), [weak = weak_from_this(), text](const std::vector<std::string>& types) {
        if (const auto self = weak.lock()) self->beginWith(types, text);
      });
}

void VastFilmFinder::beginWith(const std::vector<std::string>& types, const std::string& text) {
  const auto held = shared_from_this();
  const Relay relay{*this};
  playableTypes_ = types;
  source_->begin(text, documentUrl_);
  source_->first(relay.call(&VastFilmFinder::received));
}

VastAdSource::Fetch VastFilmFinder::fetch() const {
  return [documents = slot_.documents()](const Url& url, Seconds timeout, const auto& completion) {
    documents(url, timeout, [completion](const HttpResult& result) {
      completion(hasDocument(result) ? VastFetched{result.response->body, result.response->url}
                                     : VastFetched{std::nullopt, {}});
    });
  };
}

void VastFilmFinder::next(bool shown) {
  const Relay relay{*this};
  seeking_ = true;
  source_->nextAfter(shown, relay.call(&VastFilmFinder::received));
}

// The first wait is over for the caller with whatever comes of it, so each refusal asks anew.
void VastFilmFinder::received(const std::optional<VastTurn>& turn) {
  const auto held = shared_from_this();
  if (!turn) {
    seeking_ = false;
    return found_(std::nullopt);
  }
  const auto ad = std::make_shared<const VastAd>(turn->ad);
  sought_ = VastFilm{ad, turn->chain, makePings(*turn), {}, 0};
  const VastLinear* const linear = ad->linear();
  if (linear == nullptr) {
    const bool other = std::any_of(ad->creatives.begin(), ad->creatives.end(),
                                   [](const auto& creative) { return creative.hasNonLinear; });
    const auto code = other ? VastErrorCode::unexpectedLinearity : VastErrorCode::unexpectedAdType;
    return refuse(code, errorOf(code));
  }
  auto ranking = rankedMedia(*linear, mediaWish());
  if (ranking.files.empty()) return refuse(ranking.failure, errorOf(ranking.failure));
  if (!slot_.canPlay()) return refuse(VastErrorCode::unexpectedAdType, playerMissing());
  sought_->files = std::move(ranking.files);
  slot_.inspection().tell(InspectionKind::media, "plays " + sought_->url(),
                          {{"url", sought_->url()}});
  lookForMedia();
}

std::shared_ptr<VastPings> VastFilmFinder::makePings(const VastTurn& turn) const {
  auto pings = std::make_shared<VastPings>(slot_.environment, slot_.slotConfiguration);
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

MediaWish VastFilmFinder::mediaWish() const {
  const auto view = slot_.adView.lock();
  Size size = view ? view->sceneView().frame().size() : Size{};
  if (slot_.moviePlayerInstance && !slot_.isInterstitial()) {
    size = slot_.moviePlayerInstance->frame().size();
  }
  const double scale = slot_.environment->platform().screen->scale().value_or(1);
  const auto slot = slot_.slotConfiguration;
  return {playableTypes_,
          {size.width * scale, size.height * scale},
          slot ? slot->preferredVideoBitrate : 0};
}

void VastFilmFinder::lookForMedia() {
  const Url url = Url::fromText(sought_->url());
  sought_->pings->macros.set("ASSETURI", url.text());
  const Relay relay{*this};
  probe_ = slot_.probe(url, relay.call(&VastFilmFinder::looked));
}

void VastFilmFinder::looked(const HttpResult& result) {
  probe_.reset();
  if (!sought_) return;
  const int status = result.response ? result.response->status : 0;
  if (!result.error && status != fileNotFound && status != fileGone) {
    seeking_ = false;
    return found_(std::exchange(sought_, std::nullopt));
  }
  VastFilm& film = *sought_;
  const std::size_t tries = std::min(film.files.size(), slot_.environment->limits().vastMediaTries);
  if (++film.file < tries) return lookForMedia();
  const bool late = result.error && isTimeout(*result.error);
  const auto code = late ? VastErrorCode::mediaTimeout : VastErrorCode::mediaNotFound;
  refuse(code, result.error ? *result.error : errorOf(code));
}

// An ad that is not going to be shown makes room for another one.
void VastFilmFinder::refuse(VastErrorCode code, const Error& error) {
  tellFailure(code, *std::exchange(sought_, std::nullopt), error);
  next(false);
}

void VastFilmFinder::tellFailure(VastErrorCode code, const VastFilm& film, const Error& error) {
  errorPings_ = film.pings;
  source_->tellFailure(code, film.chain);
  lastError_ = error;
}

void VastFilmFinder::tellErrors(VastErrorCode code, const std::vector<std::string>& addresses) {
  const auto pings = std::exchange(errorPings_, breakPings_);
  const std::string number = std::to_string(static_cast<int>(code));
  slot_.inspection().tell(InspectionKind::wrapper, "an ad cannot be shown, VAST error " + number,
                          {{"why", number}});
  pings->macros.set("ERRORCODE", number);
  pings->each("error", addresses);
  pings->macros.set("ERRORCODE", std::string{});
}

}  // namespace tavo
