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

VastChainTiming chainTiming(const Environment& environment) {
  const Limits& limits = environment.limits();
  return {limits.wrapperTimeout, limits.wrapperChainBudget,
          [runLoop = environment.platform().runLoop] { return runLoop->now(); }};
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
  return [environment = environment_](const Url& url, Seconds timeout,
                                      VastFetchCompletion completion) {
    HttpRequest request = environment->shared<XUserAgent>().requestWithin(url, timeout);
    request.maximumBodyBytes = environment->limits().vastBytes;
    environment->platform().http->send(
        std::move(request), [completion = std::move(completion)](const HttpResult& result) {
          completion(documentOf(result));
        });
  };
}

void VastRoad::chainLoaded(const VastOutcome& outcome, bool trackingValid) {
  const auto view = settings_.adView.lock();
  if (!view) return events_.concluded();
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
