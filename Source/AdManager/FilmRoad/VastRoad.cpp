#include "AdManager/FilmRoad/VastRoad.h"

#include <tavo/MoviePlayerFactory.h>
#include <tavo/SdkErrors.h>

#include "AdController/ResponseParser/VASTXMLParser/VastWrapperChain.h"
#include "ErrorHandler/OperationLog.h"
#include "Runtime/Relay.h"
#include "Services/RunLoop.h"
#include "Tracker/XAdTracker.h"

namespace tavo {

namespace {

constexpr int httpNotFound = 404;

VastChainTiming chainTiming(const Environment& environment) {
  const Limits& limits = environment.limits();
  return {limits.wrapperTimeout, limits.wrapperChainBudget,
          [runLoop = environment.platform().runLoop] { return runLoop->now(); }};
}

void addMedia(const XCreative& creative, const std::string& chosen,
              std::vector<InspectionField>& fields) {
  if (!creative.linearAds.mediaFilesArray) return;
  for (const auto& file : *creative.linearAds.mediaFilesArray) {
    const std::string url{file.mediaFileURL.value_or("")};
    if (Url::fromText(url).text() == chosen && !chosen.empty()) continue;
    const bool isVideo = file.type == "video/mp4";
    std::string why{file.type.value_or("no type")};
    why.append(" ").append(file.width.value_or("?")).append(" x ");
    why.append(file.height.value_or("?")).append(" ").append(url);
    if (!isVideo) why += ": only video/mp4 is played";
    fields.push_back({"dropped", std::move(why)});
  }
}

void inspectEnd(const SlotInspection& inspection, const VastOutcome& outcome) {
  if (!inspection.isOn()) return;
  const std::string place = outcome.failedUrl.empty() ? "the answer's document" : outcome.failedUrl;
  inspection.tell(InspectionKind::wrapper,
                  "the chain ends without an ad at " + place + ": " + outcome.why,
                  {{"url", outcome.failedUrl}, {"why", outcome.why}});
}

Error errorOf(const VastFailure& failure) {
  const bool badText = failure.reason() == VastFailure::invalidXML().reason();
  return makeError(badText ? SdkError::vastInvalid : SdkError::invalidMovieUrl,
                   failure.localizedDescription());
}

}  // namespace

std::shared_ptr<VastRoad> VastRoad::create(FilmSlot slot, Events events) {
  return std::shared_ptr<VastRoad>{new VastRoad{std::move(slot), std::move(events)}};
}

VastRoad::~VastRoad() {
  if (probe_) probe_->cancel();
  FilmSlot::drop(videoView_);
}

void VastRoad::loadVastAd(const std::string& text) {
  slot_.environment->platform().moviePlayers->warmUp();
  slot_.environment->shared<VastRootQueue>().enter(
      [weak = weak_from_this(), text](VastRootQueue::Turn turn) {
        if (const auto self = weak.lock()) self->loadChain(text, std::move(turn));
      });
}

// The chain keeps its turn until it is over, also when nobody waits for it any more.
void VastRoad::loadChain(const std::string& text, VastRootQueue::Turn turn) {
  const auto parser = std::make_shared<XVASTXMLParser>(slot_.environment->limits());
  loadVastChain(text, parser, fetch(), chainTiming(*slot_.environment),
                [weak = weak_from_this(), turn = std::move(turn),
                 weakParser = std::weak_ptr{parser}](const VastOutcome& outcome) {
                  const auto self = weak.lock();
                  const auto held = weakParser.lock();
                  if (self) self->chainLoaded(outcome, held && held->isTrackingEventValid());
                });
}

VastFetch VastRoad::fetch() const {
  return [documents = slot_.documents()](const Url& url, Seconds timeout,
                                         VastFetchCompletion completion) {
    documents(url, timeout, [completion = std::move(completion)](const HttpResult& result) {
      completion(hasDocument(result) ? std::optional{result.response->body} : std::nullopt);
    });
  };
}

void VastRoad::inspectMedia(const XVASTAd& ad, const std::vector<Url>& urls) const {
  const SlotInspection inspection = slot_.inspection();
  if (!inspection.isOn()) return;
  const std::string chosen = urls.empty() ? "" : urls.front().text();
  std::vector<InspectionField> fields{{"url", chosen}};
  if (ad.inlineAd && ad.inlineAd->creativesArray) {
    for (const auto& creative : *ad.inlineAd->creativesArray) addMedia(creative, chosen, fields);
  }
  inspection.tell(InspectionKind::media,
                  chosen.empty() ? "no media file of the type video/mp4" : "plays " + chosen,
                  std::move(fields));
}

void VastRoad::chainLoaded(const VastOutcome& outcome, bool trackingValid) {
  const auto view = slot_.adView.lock();
  if (!view) return events_.concluded();
  if (outcome.failure) inspectEnd(slot_.inspection(), outcome);
  if (outcome.failure) return fail(errorOf(*outcome.failure));
  if (!trackingValid) {
    return fail(makeError(SdkError::vastTrackingMissing, "Missing tracking data in the XML"));
  }
  makeVideo(*view, outcome.ad);
}

void VastRoad::makeVideo(AdManagerView& view, const std::shared_ptr<XVASTAd>& ad) {
  ad_ = ad;
  videoView_ = XVASTVideoView::create(slot_.environment, view.sceneView().bounds());
  slot_.furnish(*videoView_);
  const auto urls = videoView_->videoURLFromVASTAd(*ad);
  inspectMedia(*ad, urls);
  // A film that nothing can play leaves the slot to what stands in it.
  if (slot_.canPlay()) slot_.takeView(view);
  if (urls.empty() || !urls.front().isHttp()) {
    return fail(makeError(SdkError::invalidMovieUrl, "Invalid Movie URL."));
  }
  if (!slot_.canPlay()) return fail(playerMissing());
  videoView_->movieURL = urls.front();
  const Relay relay{*this};
  probe_ = slot_.probe(urls.front(), relay.call(&VastRoad::probed));
}

void VastRoad::probed(const HttpResult& result) {
  probe_.reset();
  if (result.error) return fail(*result.error);
  if (!result.response || result.response->status == httpNotFound) {
    return fail(makeError(SdkError::invalidMovieUrl, "Invalid Movie URL."));
  }
  play();
}

void VastRoad::play() {
  const auto held = shared_from_this();
  const auto view = slot_.adView.lock();
  if (!view) return events_.concluded();
  videoView_->delegate.set(slot_.videoEvents);
  videoView_->trackingArrayWithVASTResponse(ad_);
  FilmSlot::show(*view, videoView_);
  const auto video = videoView_;  // held: its first report may end the road
  if (video->setUpPlayer()) trackChainImpressions();
  events_.concluded();
}

void VastRoad::trackChainImpressions() {
  XAdTracker tracker{slot_.environment};
  tracker.impressionURLs = chainImpressions(*ad_);
  tracker.slotConfiguration = slot_.slotConfiguration;
  tracker.trackImpressions();
}

// The video that is not going to be is let go of before anybody is told.
void VastRoad::fail(const Error& error) {
  const auto held = shared_from_this();
  videoView_.reset();
  events_.failed(error);
  events_.concluded();
}

}  // namespace tavo
