#include "AdManager/VastRoad.h"

#include <tavo/MoviePlayerFactory.h>
#include <tavo/Runtime.h>
#include <tavo/SdkErrors.h>

#include "AdController/ResponseParser/VASTXMLParser/VASTWrapperChain.h"
#include "ErrorHandler/OperationLog.h"
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

void fetchDocument(const Url& url, Seconds timeout, VASTFetchCompletion completion) {
  auto& runtime = Runtime::current();
  HttpRequest request = XUserAgent::sharedProvider().getUserAgentForUrl(url);
  request.idleTimeout = request.deadline = timeout;
  request.maximumBodyBytes = runtime.limits().vastBytes;
  runtime.platform().http->send(std::move(request),
                                [completion = std::move(completion)](const HttpResult& result) {
                                  completion(documentOf(result));
                                });
}

VASTChainTiming chainTiming() {
  const Limits& limits = Runtime::current().limits();
  return {limits.wrapperTimeout, limits.wrapperChainBudget,
          [runLoop = Runtime::current().platform().runLoop] { return runLoop->now(); }};
}

Error errorOf(const VASTFailure& failure) {
  const bool badText = failure.reason() == VASTFailure::invalidXML().reason();
  return makeError(badText ? SdkError::vastInvalid : SdkError::invalidMovieUrl,
                   failure.localizedDescription());
}

}  // namespace

std::shared_ptr<VastRoad> VastRoad::create(Settings settings, Events events) {
  return std::shared_ptr<VastRoad>{new VastRoad{std::move(settings), std::move(events)}};
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
  const OperationLog log{"-[XAdManager loadVastAdWithAdInfo:]"};
  if (auto& players = Runtime::current().platform().moviePlayers) players->warmUp();
  VastRootQueue::shared().enter([weak = weak_from_this(), text](VastRootQueue::Turn turn) {
    if (const auto self = weak.lock()) self->loadChain(text, std::move(turn));
  });
}

// The chain keeps its turn until it is over, also when nobody waits for it any more.
void VastRoad::loadChain(const std::string& text, VastRootQueue::Turn turn) {
  const auto parser = std::make_shared<XVASTXMLParser>();
  loadVASTChain(text, parser, fetchDocument, chainTiming(),
                [weak = weak_from_this(), turn = std::move(turn),
                 weakParser = std::weak_ptr{parser}](const VASTOutcome& outcome) {
                  const auto self = weak.lock();
                  const auto held = weakParser.lock();
                  if (self) self->chainLoaded(outcome, held && held->isTrackingEventValid());
                });
}

void VastRoad::chainLoaded(const VASTOutcome& outcome, bool trackingValid) {
  const auto view = settings_.adView.lock();
  if (!view) return;
  if (outcome.failure) return fail(errorOf(*outcome.failure));
  if (!trackingValid) {
    return fail(makeError(SdkError::vastTrackingMissing, "Missing tracking data in the XML"));
  }
  chooseMedia(*view, outcome.ad);
}

void VastRoad::chooseMedia(AdManagerView& view, const std::shared_ptr<XVASTAd>& ad) {
  const bool interstitial = view.mobileAdTypes() == MobileAdTypes::interstitial;
  const auto subType =
      interstitial ? MobileAdSubTypes::vastInterstitial : MobileAdSubTypes::vastBanner;
  ad_ = ad;
  videoView_ = XVASTVideoView::create(Runtime::current().environment(), view.sceneView().bounds());
  videoView_->slotConfiguration = settings_.slotConfiguration;
  videoView_->moviePlayerInstance = settings_.moviePlayerInstance;
  videoView_->isVastInterestitial = interstitial;
  videoView_->mobileAdSubTypes = subType;
  const auto urls = videoView_->videoURLFromVASTAd(*ad);
  view.setMobileAdSubTypes(subType);
  if (urls.empty() || !urls.front().isHttp()) {
    return fail(makeError(SdkError::invalidMovieUrl, "Invalid Movie URL."));
  }
  if (!interstitial && !settings_.moviePlayerInstance) {
    return fail(makeError(MovieError::unavailable,
                          "A video in a banner slot needs the host's movie player."));
  }
  probeMedia(urls.front());
}

void VastRoad::probeMedia(const Url& url) {
  auto& runtime = Runtime::current();
  videoView_->movieURL = url;
  HttpRequest request = XUserAgent::sharedProvider().getUserAgentForUrl(url);
  request.method = "HEAD";
  request.idleTimeout = request.deadline = runtime.limits().mediaProbeTimeout;
  probe_ = runtime.platform().http->send(std::move(request),
                                         [weak = weak_from_this()](const HttpResult& result) {
                                           if (const auto self = weak.lock()) self->probed(result);
                                         });
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
  if (!view) return;
  trackChainImpressions();
  videoView_->delegate.set(settings_.videoEvents);
  videoView_->trackingArrayWithVASTResponse(ad_);
  if (videoView_->mobileAdSubTypes == MobileAdSubTypes::vastInterstitial) {
    view->sceneView().removeAllSubviews();
    videoView_->setAutoresizingMask(flexibleWidth | flexibleHeight);
    view->sceneView().addSubview(videoView_);
  }
  videoView_->setUpPlayer();
  events_.concluded();
}

void VastRoad::trackChainImpressions() {
  XAdTracker tracker;
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
