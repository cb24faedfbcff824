#include "AdManager/XAdManager.h"

#include <tavo/Runtime.h>
#include <tavo/SdkErrors.h>
#include <tavo/XURLBuilder.h>

#include "AdManager/HtmlSlots.h"
#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "Services/WebViewFactory.h"
#include "Tracker/XAdTracker.h"

namespace tavo {

namespace {
constexpr int ignoredFailure = 306;

// What a server wrote, or none for what it left out.
std::optional<std::string> present(const std::optional<std::string>& text) {
  return isNilString(text) ? std::nullopt : text;
}

Url requestedUrl(const XAdInfo& answer) {
  return answer.httpRequestURL ? answer.httpRequestURL->url : Url{};
}
}  // namespace

std::shared_ptr<XAdManager> XAdManager::create(
    std::weak_ptr<AdManagerView> adView,
    const std::shared_ptr<const XAdManagerDelegate>& delegate) {
  const OperationLog log{"-[XAdManager initWithXadView:Delegate:]"};
  std::shared_ptr<XAdManager> manager{new XAdManager{std::move(adView)}};
  manager->delegate.set(delegate);
  manager->makeObservers();
  return manager;
}

// Every report holds the manager for its length: a host may drop the view from inside.
void XAdManager::makeObservers() {
  const auto weak = weak_from_this();
  communicatorEvents_ = std::make_shared<XServerCommunicatorDelegate>(XServerCommunicatorDelegate{
      .serverCommunicatorDidReceiveAdInfo =
          [weak](XServerCommunicator&, const std::shared_ptr<XAdInfo>& answer) {
            if (const auto self = weak.lock()) self->didReceiveAdInfo(*answer);
          },
      .serverCommunicatorDidFailWithError =
          [weak](XServerCommunicator&, const std::optional<Error>& error) {
            if (const auto self = weak.lock()) self->didFailWithError(error);
          }});
  webViewEvents_ = std::make_shared<WebViewAgentDelegate>(WebViewAgentDelegate{
      .webViewDidFinishRender =
          [weak](WebView& webView) {
            const auto self = weak.lock();
            return self && self->webViewDidFinishRender(webView);
          },
      .webViewAgentDidFinishLoad =
          [weak](XWebViewAgent&) {
            if (const auto self = weak.lock()) {
              self->delegate.tell(&XAdManagerDelegate::adManagerDidLoad, *self);
            }
          },
      .webViewAgentDidFailWithError =
          [weak](const Error& error) {
            if (const auto self = weak.lock()) self->fail(error);
          },
      .webViewOpenCustomURL =
          [weak](const Url& url) {
            if (const auto self = weak.lock()) {
              self->delegate.tell(&XAdManagerDelegate::adManagerWebViewOpenCustomURL, *self, url);
            }
          }});
  bannerEvents_ = std::make_shared<XMRAIDBannerViewDelegate>(XMRAIDBannerViewDelegate{
      .xStandardBannerAdDidLoad =
          [weak](XMRAIDBannerView&) {
            if (const auto self = weak.lock()) {
              self->delegate.tell(&XAdManagerDelegate::adManagerDidLoad, *self);
            }
          },
      .xStandardBannerAdDidFailWithErrorBannerView =
          [weak](const Error& error, XMRAIDBannerView&) {
            if (const auto self = weak.lock()) self->fail(error);
          }});
  makeVideoObserver();
  serverCommunicator_ = XServerCommunicator::create(communicatorEvents_);
}

void XAdManager::loadAdWithDomainName(const std::string& domainName, const std::string& pageName,
                                      const std::string& adPosition, const std::string& keywords,
                                      const std::string& queryString) {
  const OperationLog log{
      "-[XAdManager loadAdWithDomainName:pageName:adPosition:keywords:queryString:]"};
  requestRedirected_ = false;
  redirectAnswers_ = 0;
  clickThroughURL_.reset();
  impressionTrackingURL_.reset();
  slotName_ = HtmlSlots::nameOf(domainName, pageName, adPosition);
  const bool bids = slotConfiguration && slotConfiguration->RTBRequired;
  request(XURLBuilder::URLWithDomainName(domainName, bids ? "sdkl" : "sdk", pageName, adPosition,
                                         keywords, queryString, slotConfiguration.get()));
  startEngineIfExpected();
}

// Beside the request, which takes longer. The key is the one under which the page will be made.
void XAdManager::startEngineIfExpected() const {
  const auto view = adView_.lock();
  if (!view || !HtmlSlots::contains(slotName_)) return;
  Runtime::current().platform().webViews->warmUp(&view->sceneView());
}

void XAdManager::loadAdWithRedirectURL(const std::string& url) {
  const OperationLog log{"-[XAdManager loadAdWithRedirectURL:]"};
  requestRedirected_ = true;
  request(Url::fromText(url));
}

void XAdManager::request(const Url& url) {
  serverCommunicator_->slotConfiguration = slotConfiguration;
  serverCommunicator_->loadURL(url);
}

void XAdManager::didReceiveAdInfo(const XAdInfo& answer) {
  const OperationLog log{"-[XAdManager serverCommunicator:didReceiveAdInfo:]"};
  platformLog("Received async response from server");
  progress_ = {};
  takeOver(answer);
  const auto view = adView_.lock();
  if (!view) return;
  const Verdict verdict = classify(answer, slotFacts(*view));
  std::visit([&](const auto& outcome) { carryOut(outcome, answer); }, verdict);
  conclude();
}

// The answer to a redirect keeps the addresses of the first answer where it has none of its own.
void XAdManager::takeOver(const XAdInfo& answer) {
  if (const auto file = present(answer.fileURL)) baseUrl_ = Url::fromText(*file);
  if (auto click = present(answer.clickTrackingURL)) clickThroughURL_ = std::move(click);
  if (auto impression = present(answer.impressionTrackingURL)) {
    impressionTrackingURL_ = std::move(impression);
  }
}

SlotFacts XAdManager::slotFacts(const AdManagerView& view) const {
  const auto slot = view.slotConfiguration();
  return {.realTimeBidding = slot && slot->RTBRequired,
          .interstitial = view.mobileAdTypes() == MobileAdTypes::interstitial,
          .requestRedirected = requestRedirected_,
          .canStartMediation = delegate.implements(&XAdManagerDelegate::startMediationWithAdView),
          .mediationPlacementId = slot ? slot->mediationPlacementId.value_or("") : "",
          .mediationSize =
              slot ? Size{slot->mediationBannerWidth, slot->mediationBannerHeight} : Size{}};
}

void XAdManager::conclude() {
  if (progress_.mediating) return;
  if (progress_.handled && !progress_.waitingForCompletion) {
    platformLog("\n\nAd is displayed successfully");
    processImpressionTracking();
  } else if (!progress_.handled && !requestRedirected_ && !progress_.waitingForCompletion) {
    platformLog("\n\nTAVO: No ads available from Server");
    fail(makeError(SdkError::noAd, "No ads available from TAVO server."));
  }
}

void XAdManager::didFailWithError(const std::optional<Error>& error) {
  const OperationLog log{"-[XAdManager serverCommunicator:didFailWithError:]"};
  if (error && error->code == ignoredFailure) return;
  if (error && error->code == static_cast<int>(SdkError::emptyAd)) {
    log.debug("\n\nEmpty Ad");
    delegate.tell(&XAdManagerDelegate::adManagerDidReceiveEmptyAd, *this);
    return;
  }
  log.debug("\n\nError: ", error ? error->description : "(null)");
  delegate.tell(&XAdManagerDelegate::adManagerDidFailWithError, error);
}

void XAdManager::fail(const Error& error) {
  delegate.tell(&XAdManagerDelegate::adManagerDidFailWithError, std::optional{error});
}

void XAdManager::carryOut(const NoAd& /*verdict*/, const XAdInfo& /*answer*/) {}

void XAdManager::carryOut(const EmptyAd& verdict, const XAdInfo& /*answer*/) {
  platformLog(verdict.message);
  progress_.handled = true;
  delegate.tell(&XAdManagerDelegate::adManagerDidReceiveEmptyAd, *this);
}

void XAdManager::carryOut(const FollowRedirect& verdict, const XAdInfo& /*answer*/) {
  platformLog("\n\nRequest is redirected");
  if (++redirectAnswers_ > Runtime::current().limits().redirectAnswers) {
    progress_ = {.waitingForCompletion = true};
    fail(makeError(TransportError::tooManyRedirects, "Too many answers in a row were redirects."));
    return;
  }
  loadAdWithRedirectURL(verdict.url);
}

void XAdManager::carryOut(const ShowImage& verdict, const XAdInfo& answer) {
  const auto view = adView_.lock();
  if (!view) return;
  view->setMobileAdSubTypes(verdict.subType);
  progress_.handled = true;
  const bool fromFile = verdict.source == ShowImage::Source::creativeFile;
  loadImageAdType(*view,
                  fromFile ? Url::fromText(answer.fileURL.value_or("")) : requestedUrl(answer));
}

void XAdManager::carryOut(const ShowHtml& verdict, const XAdInfo& /*answer*/) {
  const auto view = adView_.lock();
  if (!view) return;
  if (verdict.subType) {
    view->setMobileAdSubTypes(*verdict.subType);
  } else if (view->mobileAdSubTypes() == MobileAdSubTypes::unknown) {
    const bool banner = view->mobileAdTypes() != MobileAdTypes::interstitial;
    platformLog(banner ? "Rich Media Ad - Banner" : "Rich Media Ad - Interstitial");
    view->setMobileAdSubTypes(banner ? MobileAdSubTypes::richMediaBanner
                                     : MobileAdSubTypes::richMediaInterstitial);
  }
  loadRichMediaAd(*view, verdict.html);
}

// The refusal is the answer's one outcome: neither an impression nor a second failure follows.
void XAdManager::carryOut(const RefuseEmptyPicture& verdict, const XAdInfo& /*answer*/) {
  const OperationLog log{"-[XAdManager sendFailDelegateForEmptyGif]"};
  const auto view = adView_.lock();
  if (view && verdict.subType) view->setMobileAdSubTypes(*verdict.subType);
  progress_ = {.handled = true, .waitingForCompletion = true};
  fail(makeError(SdkError::noAd, "empty.gif file response received."));
}

void XAdManager::carryOut(const PlayVast& /*verdict*/, const XAdInfo& answer) {
  loadVastAd(answer.text.value_or(""));
}

void XAdManager::carryOut(const Mediate& verdict, const XAdInfo& /*answer*/) {
  progress_ = {.handled = true, .mediating = true};
  (void)delegate.ask(&XAdManagerDelegate::startMediationWithAdView, verdict.placementId,
                     verdict.size, true);
}

void XAdManager::followScreen(AdManagerView& view) {
  view.setEnterForegroundNotification();
  view.setOrientationNotification();
}

void XAdManager::loadImageAdType(AdManagerView& view, const Url& imageUrl) {
  const OperationLog log{"-[XAdManager loadImageAdTypeWithURL:]"};
  platformLog("\n\nImage Ad");
  View& sceneView = view.sceneView();
  vastRoad_.reset();
  sceneView.removeAllSubviews();
  webViewAgent_.reset();
  const Rect& frame = sceneView.frame();
  const auto banner = XMRAIDBannerView::create({0, 0, frame.width, frame.height}, bannerEvents_);
  // An interstitial's picture is fetched before its screen is there.
  if (view.mobileAdTypes() == MobileAdTypes::interstitial) {
    banner->setAutoresizingMask(flexibleWidth | flexibleHeight);
  }
  const auto slot = view.slotConfiguration();
  banner->isScalingAllowed = slot && slot->scalingAllowed;
  if (clickThroughURL_) {
    platformLog("\n\nClickthrough URL set for Standard Banner");
    banner->clickThroughUrl = Url::fromText(*clickThroughURL_);
  }
  banner->loadImageWithURL(imageUrl, adView_);
  followScreen(view);
  sceneView.addSubview(banner);
  delegate.tell(&XAdManagerDelegate::refreshAd);
}

void XAdManager::loadRichMediaAd(AdManagerView& view, const std::string& html) {
  const OperationLog log{"-[XAdManager loadRichMediaAdWithAdInfo:htmlString:baseUrl:]"};
  followScreen(view);
  View& sceneView = view.sceneView();
  vastRoad_.reset();
  sceneView.removeAllSubviews();
  webViewAgent_.reset();  // its native view is free for the next page
  const Rect& frame = sceneView.frame();
  webViewAgent_ =
      XWebViewAgent::create({0, 0, frame.width, frame.height}, &sceneView, webViewEvents_);
  sceneView.addSubview(webViewAgent_);
  webViewAgent_->loadHTMLString(html, baseUrl_, adView_);
  if (!slotName_.empty()) HtmlSlots::add(slotName_);
  progress_ = {.handled = true, .waitingForCompletion = true};
  log.debug("\n\nRefresh Ad");
  delegate.tell(&XAdManagerDelegate::refreshAd);
}

bool XAdManager::webViewDidFinishRender(WebView& webView) {
  const OperationLog log{"-[XAdManager webViewDidFinishRender:]"};
  progress_.handled =
      delegate.ask(&XAdManagerDelegate::adManagerWebViewDidFinishRender, *this, webView)
          .value_or(true);
  progress_.waitingForCompletion = false;
  if (!progress_.handled) return false;
  log.debug("\n\nTracking Impressions...");
  processImpressionTracking();
  return true;
}

void XAdManager::processImpressionTracking() {
  const OperationLog log{"-[XAdManager processImpressionTracking:]"};
  if (!impressionTrackingURL_) return;
  XAdTracker tracker;
  tracker.impressionURL = Url::fromText(*impressionTrackingURL_);
  tracker.impressionURLs = {tracker.impressionURL};
  tracker.slotConfiguration = slotConfiguration;
  tracker.trackImpressions();
}

}  // namespace tavo
