// A VAST ad of several documents: they stand one behind the other, divided by a zero byte, and each
// fetch of the chain brings the next one, or nothing behind the last. What comes of it goes the way
// to the player: the media file, the tracking list, the impressions, the click.

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <tavo/Runtime.h>

#include "AdController/ResponseParser/StandardsVast/VastAdSource.h"
#include "AdController/ResponseParser/VASTXMLParser/VastWrapperChain.h"
#include "Headless/HeadlessPlatform.h"
#include "Lines.h"
#include "Tracker/VastMacros.h"
#include "UserInterface/NativeView/MediaChoice.h"
#include "UserInterface/NativeView/TrackingList.h"
#include "UserInterface/StandardsVideo/IconPlace.h"
#include "UserInterface/StandardsVideo/StandardsMedia.h"

using namespace tavo;
using fuzz::require;

namespace {

std::vector<std::string> documentsOf(const std::uint8_t* data, std::size_t size) {
  std::vector<std::string> documents(1);
  for (std::size_t at = 0; at < size; ++at) {
    if (data[at] == 0) {
      documents.emplace_back();
    } else {
      documents.back().push_back(static_cast<char>(data[at]));
    }
  }
  return documents;
}

// The same documents as the public standards read them: every ad is given out, and every second one
// cannot be shown.
void takeAllAds(const std::vector<std::string>& documents) {
  const Limits limits;
  std::size_t fetched = 0;
  std::size_t turns = 0;
  std::vector<std::function<void(const VastFetched&)>> waiting;
  const auto source = std::make_shared<VastAdSource>(
      VastAdSource::Settings{
          limits,
          [&](const Url&, Seconds, auto completion) { waiting.push_back(std::move(completion)); },
          [] { return Seconds{0}; }},
      [&](VastErrorCode, const std::vector<std::string>& addresses) {
        VastMacros macros;
        macros.set("ERRORCODE", std::string{"[ERRORCODE]"});
        for (const auto& address : addresses) {
          require(macros.filled(address, limits.vastAddressBytes).size() <=
                  limits.vastAddressBytes);
        }
      });
  bool wantsNext = true;
  const auto taken = [&](const std::optional<VastTurn>& turn) {
    wantsNext = turn.has_value();
    if (!turn) return;
    require(++turns <= limits.vastAdsInBreak);
    if (const auto* film = turn->ad.linear()) {
      (void)rankedMedia(*film, {filmTypes(), {320, 180}, 500});
      for (const auto& icon : film->icons) (void)iconPlace(icon, {320, 180});
    }
    source->tellFailure(VastErrorCode::mediaProblem, turn->chain);
  };
  source->begin(documents.front(), Url::parse("http://first.example/a/b?c"));
  source->first(taken);
  while (wantsNext || !waiting.empty()) {
    require(waiting.size() <= 1);
    if (waiting.empty()) {
      source->nextAfter(turns % 2 == 0, taken);
      continue;
    }
    const auto completion = std::move(waiting.back());
    waiting.pop_back();
    const bool is = ++fetched < documents.size();
    completion({is ? std::optional{documents[fetched]} : std::nullopt,
                Url::parse("http://next.example/d/e")});
  }
}

// Nothing but the ad is left of the chain here, and in the end nothing but its events.
void takeToPlayer(std::shared_ptr<XVASTAd> ad) {
  XVASTAd::resetInstance();
  (void)videoURLFromVASTAd(*ad, 320);
  (void)chainImpressions(*ad);
  (void)clickThroughOf(*ad);
  const auto events = mergedTracking(ad);
  ad.reset();
  (void)eventUrls(events, TrackingEventType::unknown);
  (void)eventUrls(events, TrackingEventType::start);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Runtime runtime{headless::HeadlessPlatform{}.platform()};
  const auto documents = documentsOf(data, size);
  std::size_t fetched = 0;
  int completions = 0;
  std::shared_ptr<XVASTAd> ad;
  std::vector<VastFetchCompletion> waiting;
  loadVastChain(
      documents.front(), std::make_shared<XVASTXMLParser>(),
      [&](const Url&, Seconds, const VastFetchCompletion& completion) {
        waiting.push_back(completion);
      },
      {Seconds{1}, Seconds{1e9}, [] { return Seconds{0}; }},
      [&](const VastOutcome& outcome) {
        require((outcome.ad != nullptr) != outcome.failure.has_value());
        ad = outcome.ad;
        ++completions;
      });
  while (!waiting.empty()) {
    require(waiting.size() == 1 && fetched <= documents.size());
    const auto next = std::exchange(waiting, {}).front();
    ++fetched;
    next(fetched < documents.size() ? std::optional{documents[fetched]} : std::nullopt);
  }
  require(completions == 1);
  if (ad) takeToPlayer(std::move(ad));
  takeAllAds(documents);
  return 0;
}
