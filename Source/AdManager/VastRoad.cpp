#include "AdManager/VastRoad.h"

#include <tavo/MoviePlayerFactory.h>
#include <tavo/SdkErrors.h>

#include "AdController/ResponseParser/VASTXMLParser/VastWrapperChain.h"
#include "ErrorHandler/OperationLog.h"
#include "Runtime/Relay.h"
#include "Services/RunLoop.h"
#include "Tracker/XAdTracker.h"
#include "Utilities/XUserAgent.h"

namespace tavo {

namespace {

constexpr int httpNotFound = 404;
constexpr int firstHttpFailure = 400;

std::optional<std::string> documentOf(const HttpResult& result) {
  const bool usable =
      !result.error && result.response && result.response->status < firstHttpFailure;
  return usable ? std::optional{result.response->body} : std::nullopt;
}

void inspectHop(const SlotInspection& inspection, int hop, const Url& url,
                const HttpResult& result) {
  if (!inspection.isOn()) return;
  std::string why = "fetched";
  if (result.error) {
    why = "failed: " + result.error->description;
  } else if (!documentOf(result)) {
    why = "failed: status " + std::to_string(result.response ? result.response->status : 0);
  }
  inspection.tell(InspectionKind::wrapper,
                  "hop " + std::to_string(hop) + " " + why + ": " + url.text(),
                  {{"hop", std::to_string(hop)}, {"url", url.text()}, {"why", why}});
}

VastChainTiming chainTiming(const Environment& environment) {
  const Limits& limits = environment.limits();
  return {limits.wrapperTimeout, limits.wrapperChainBudget,
          [runLoop = environment.platform().runLoop] { return runLoop->now(); }};
}

void addMedia(const XCreative& creative, const std::string& chosen,
              std::vector<InspectionField>& fields) {
  if (!creative.linearAds.mediaFilesArray) return;
  for (const auto& file : *creative.linearAds.mediaFilesArray) {
    const std::string url = file.mediaFileURL.value_or("");
    if (Url::fromText(url).text() == chosen && !chosen.empty()) continue;
    const bool isVideo = file.type == "video/mp4";
    fields.push_back({"dropped", file.type.value_or("no type") + " " + file.width.value_or("?") +
                                     " x " + file.height.value_or("?") + " " + url +
                                     (isVideo ? "" : ": only video/mp4 is played")});
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

std::shared_ptr<VastRoad> VastRoad::create(std::shared_ptr<Environment> environment,
                                           Settings settings, Events events) {
  return std::shared_ptr<VastRoad>{
      new VastRoad{std::move(environment), std::move(settings), std::move(events)}};
}

VastRoad::~VastRoad() {
  if (probe_) probe_->cancel();
  if (videoView_) {
    videoView_->delegate.set(nullptr);
    videoView_->removeFromSuperview();
    videoView_->releaseMemory();
  }
}

void VastRoad::loadVastAd(const std::string& text) {
  environment_->platform().moviePlayers->warmUp();
  environment_->shared<VastRootQueue>().enter(
      [weak = weak_from_this(), text](VastRootQueue::Turn turn) {
        if (const auto self = weak.lock()) self->loadChain(text, std::move(turn));
      });
}

// The chain keeps its turn until it is over, also when nobody waits for it any more.
void VastRoad::loadChain(const std::string& text, VastRootQueue::Turn turn) {
  const auto parser = std::make_shared<XVASTXMLParser>(environment_->limits());
  loadVastChain(text, parser, fetch(), chainTiming(*environment_),
                [weak = weak_from_this(), turn = std::move(turn),
                 weakParser = std::weak_ptr{parser}](const VastOutcome& outcome) {
                  const auto self = weak.lock();
                  const auto held = weakParser.lock();
                  if (self) self->chainLoaded(outcome, held && held->isTrackingEventValid());
                });
}

VastFetch VastRoad::fetch() const {
  return [environment = environment_, inspection = inspection(), hop = std::make_shared<int>(0)](
             const Url& url, Seconds timeout, VastFetchCompletion completion) {
    HttpRequest request = environment->shared<XUserAgent>().requestWithin(url, timeout);
    request.slot = inspection.slot;
    request.maximumBodyBytes = environment->limits().vastBytes;
    environment->platform().http->send(
        std::move(request),
        [completion = std::move(completion), inspection, url, hop](const HttpResult& result) {
          inspectHop(inspection, ++*hop, url, result);
          completion(documentOf(result));
        });
  };
}

SlotInspection VastRoad::inspection() const {
  const auto view = settings_.adView.lock();
  return {environment_->platform().inspection, view ? &view->sceneView() : nullptr};
}

void VastRoad::inspectMedia(const XVASTAd& ad, const std::vector<Url>& urls) const {
  const SlotInspection slot = inspection();
  if (!slot.isOn()) return;
  const std::string chosen = urls.empty() ? "" : urls.front().text();
  std::vector<InspectionField> fields{{"url", chosen}};
  if (ad.inlineAd && ad.inlineAd->creativesArray) {
    for (const auto& creative : *ad.inlineAd->creativesArray) addMedia(creative, chosen, fields);
  }
  slot.tell(InspectionKind::media,
            chosen.empty() ? "no media file of the type video/mp4" : "plays " + chosen,
            std::move(fields));
}

void VastRoad::chainLoaded(const VastOutcome& outcome, bool trackingValid) {
  const auto view = settings_.adView.lock();
  if (!view) return events_.concluded();
  if (outcome.failure) inspectEnd(inspection(), outcome);
  if (outcome.failure) return fail(errorOf(*outcome.failure));
  if (!trackingValid) {
    return fail(makeError(SdkError::vastTrackingMissing, "Missing tracking data in the XML"));
  }
  makeVideo(*view, outcome.ad);
}

void VastRoad::makeVideo(AdManagerView& view, const std::shared_ptr<XVASTAd>& ad) {
  const bool interstitial = view.mobileAdTypes() == MobileAdTypes::interstitial;
  const auto subType =
      interstitial ? MobileAdSubTypes::vastInterstitial : MobileAdSubTypes::vastBanner;
  ad_ = ad;
  videoView_ = XVASTVideoView::create(environment_, view.sceneView().bounds());
  videoView_->slotConfiguration = settings_.slotConfiguration;
  videoView_->moviePlayerInstance = settings_.moviePlayerInstance;
  videoView_->isVastInterestitial = interstitial;
  videoView_->mobileAdSubTypes = subType;
  const auto urls = videoView_->videoURLFromVASTAd(*ad);
  inspectMedia(*ad, urls);
  // A film that nothing can play leaves the slot to what stands in it.
  const bool canPlay = interstitial || settings_.moviePlayerInstance;
  if (canPlay) view.setMobileAdSubTypes(subType);
  if (urls.empty() || !urls.front().isHttp()) {
    return fail(makeError(SdkError::invalidMovieUrl, "Invalid Movie URL."));
  }
  if (!canPlay) {
    return fail(makeError(MovieError::unavailable,
                          "A video in a banner slot needs the host's movie player."));
  }
  probeMedia(urls.front());
}

void VastRoad::probeMedia(const Url& url) {
  videoView_->movieURL = url;
  HttpRequest request = environment_->shared<XUserAgent>().requestWithin(
      url, environment_->limits().mediaProbeTimeout);
  request.method = "HEAD";
  request.slot = inspection().slot;
  const Relay relay{*this};
  probe_ = environment_->platform().http->send(std::move(request), relay.call(&VastRoad::probed));
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
  const auto view = settings_.adView.lock();
  if (!view) return events_.concluded();
  videoView_->delegate.set(settings_.videoEvents);
  videoView_->trackingArrayWithVASTResponse(ad_);
  if (videoView_->mobileAdSubTypes == MobileAdSubTypes::vastInterstitial) {
    view->sceneView().removeAllSubviews();
    videoView_->setAutoresizingMask(flexibleWidth | flexibleHeight);
    view->sceneView().addSubview(videoView_);
  }
  const auto video = videoView_;  // held: its first report may end the road
  if (video->setUpPlayer()) trackChainImpressions();
  events_.concluded();
}

void VastRoad::trackChainImpressions() {
  XAdTracker tracker{environment_};
  tracker.impressionURLs = chainImpressions(*ad_);
  tracker.slotConfiguration = settings_.slotConfiguration;
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
