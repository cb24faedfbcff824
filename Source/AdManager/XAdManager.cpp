#include "AdManager/XAdManager.h"

#include <tavo/SdkErrors.h>
#include <tavo/XURLBuilder.h>

#include "AdManager/FilmRoad/StandardsVastRoad.h"
#include "AdManager/FilmRoad/VastRoad.h"
#include "AdManager/HostMistakes.h"
#include "AdManager/PageBase.h"
#include "AdManager/VerdictAccount.h"
#include "Communicator/Network/XNetworkManager.h"
#include "Configuration/StandardsMode.h"
#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "Runtime/Relay.h"
#include "Services/RunLoop.h"
#include "Services/WebViewFactory.h"
#include "Tracker/XAdTracker.h"

namespace tavo {

namespace {

constexpr int ignoredFailure = 306;

// What a server wrote, or none for what it left out.
std::optional<std::string> present(const std::optional<std::string>& text) {
  return isNilString(text) ? std::nullopt : text;
}

// The key under which the slot's pages are made. An ad that fills the window goes down alone.
WebViewOptions pageOf(AdManagerView& view) {
  return {.owner = &view.sceneView(),
          .ownProcess = view.mobileAdTypes() == MobileAdTypes::interstitial};
}

}  // namespace

XAdManager::XAdManager(std::shared_ptr<Environment> environment,
                       std::weak_ptr<AdManagerView> adView)
    : environment_{std::move(environment)},
      adView_{std::move(adView)},
      htmlSlots_{environment_->platform().userDefaults} {}

std::shared_ptr<XAdManager> XAdManager::create(
    std::shared_ptr<Environment> environment, std::weak_ptr<AdManagerView> adView,
    const std::shared_ptr<const XAdManagerDelegate>& delegate) {
  const OperationLog log{"-[XAdManager initWithXadView:Delegate:]"};
  std::shared_ptr<XAdManager> manager{new XAdManager{std::move(environment), std::move(adView)}};
  manager->delegate.set(delegate);
  manager->makeObservers();
  manager->makeVideoObserver();
  return manager;
}

void XAdManager::makeObservers() {
  using Told = XAdManagerDelegate;
  const Relay relay{*this};
  communicatorEvents_ = std::make_shared<XServerCommunicatorDelegate>(XServerCommunicatorDelegate{
      .serverCommunicatorDidReceiveAdInfo = relay.call(&XAdManager::didReceiveAdInfo),
      .serverCommunicatorDidFailWithError = relay.call(&XAdManager::didFailWithError)});
  webViewEvents_ = std::make_shared<WebViewAgentDelegate>(WebViewAgentDelegate{
      .webViewDidFinishRender = relay.call(&XAdManager::webViewDidFinishRender),
      .webViewAgentDidFinishLoad = relay.pass(&Told::adManagerDidLoad),
      .webViewAgentDidFailWithError = relay.call(&XAdManager::fail),
      .webViewOpenCustomURL = relay.pass(&Told::adManagerWebViewOpenCustomURL)});
  bannerEvents_ = std::make_shared<XMRAIDBannerViewDelegate>(
      XMRAIDBannerViewDelegate{.xStandardBannerAdDidLoad = relay.pass(&Told::adManagerDidLoad),
                               .xStandardBannerAdDidFailWithErrorBannerView =
                                   relay.call(&XAdManager::xStandardBannerAdDidFailWithError)});
  serverCommunicator_ = XServerCommunicator::create(environment_, communicatorEvents_);
}

void XAdManager::makeVideoObserver() {
  using Told = XAdManagerDelegate;
  const Relay relay{*this};
  videoEvents_ = std::make_shared<XVASTVidoeViewDelegate>(XVASTVidoeViewDelegate{
      .vastVideoAdDidLoad = relay.pass(&Told::adManagerDidLoad),
      .vastVideoViewDidClickVideoWithURL = relay.pass(&Told::adManagerDidClickOnAdWithURL),
      .vastVideoViewDidFinishQuartile = relay.pass(&Told::adManagerDidFinishQuartile),
      .vastVideoViewDidSkipVideo = relay.pass(&Told::adManagerDidSkipVideo),
      .vastVideoViewDidPauseVideo = relay.pass(&Told::adManagerDidPauseVideo),
      .vastVideoViewDidResume = relay.pass(&Told::adManagerDidResume),
      .vastVideoViewDidRewind = relay.pass(&Told::adManagerDidRewind),
      .vastVideoViewWillOpenInAppBrowser = relay.pass(&Told::adManagerWillOpenInAppBrowser),
      .vastVideoViewDidCloseInAppBrowser = relay.pass(&Told::adManagerDidCloseInAppBrowser),
      .vastVideoViewWillLeaveApplication = relay.pass(&Told::adManagerWillLeaveAppliation),
      .VASTVideoViewDidEnterFullScreen = relay.pass(&Told::adManagerDidEnterFullScreen),
      .VASTVideoViewDidExitFullScreen = relay.pass(&Told::adManagerDidExitFullScreen),
      .vastVideoViewDismissOnMemoryWarning = relay.pass(&Told::prerollDidFinishOnMemoryWarning),
      .prerollDidFinishWithPlayer = relay.pass(&Told::prerollDidFinishPlayingWithPlayer),
      .playerDidFinishWithErrorWithPlayer = relay.call(&XAdManager::playerDidFinishWithError),
      .dismissVastViewController = relay.call(&XAdManager::dismissVastViewController),
      .dismissVastViewControllerOnMemoryWarning =
          relay.call(&XAdManager::dismissVastViewControllerOnMemoryWarning),
      .hold = relay.call(&XAdManager::hold)});
}

// A view that is taken off the screen lets go of its manager at once.
std::shared_ptr<const void> XAdManager::hold() {
  return std::make_shared<std::pair<std::shared_ptr<XAdManager>, std::shared_ptr<AdManagerView>>>(
      shared_from_this(), adView_.lock());
}

std::shared_ptr<XVASTVideoView> XAdManager::videoView() const {
  return vastRoad_ ? vastRoad_->videoView() : nullptr;
}

void XAdManager::loadAdWithDomainName(const AdAddress& address) {
  const OperationLog log{
      "-[XAdManager loadAdWithDomainName:pageName:adPosition:keywords:queryString:]"};
  requestRedirected_ = false;
  redirectAnswers_ = 0;
  clickThroughURL_.reset();
  impressionTrackingURL_.reset();
  slotName_ = HtmlSlots::nameOf(address);
  const bool bids = slotConfiguration && slotConfiguration->RTBRequired;
  request(XURLBuilder::URLWithDomainName(address.domainName, bids ? "sdkl" : "sdk",
                                         address.pageName, address.adPosition, address.keywords,
                                         address.queryString, slotConfiguration.get()));
  startEngineIfExpected();
}

// Beside the request, which takes longer. The key is the one under which the page will be made.
void XAdManager::startEngineIfExpected() const {
  const auto view = adView_.lock();
  if (!view || !htmlSlots_.contains(slotName_)) return;
  environment_->platform().webViews->warmUp(pageOf(*view));
}

void XAdManager::loadAdWithRedirectURL(const std::string& url) {
  const OperationLog log{"-[XAdManager loadAdWithRedirectURL:]"};
  requestRedirected_ = true;
  request(Url::fromText(url));
}

void XAdManager::request(const Url& url) {
  serverCommunicator_->slotConfiguration = slotConfiguration;
  const auto view = adView_.lock();
  serverCommunicator_->slot = view ? &view->sceneView() : nullptr;
  if (XNetworkManager::shareInstance(*environment_).internetAvailable()) {
    return serverCommunicator_->loadURL(url);
  }
  if (const auto hint = hintWithoutNetwork(url)) platformLog(*hint, LogLevel::warning);
  // A failure that is told at once would be told inside the host's call, and a host that asks again
  // when it hears of one would do so until the stack ends.
  environment_->platform().runLoop->post([weak = weak_from_this(), url] {
    if (const auto self = weak.lock()) self->serverCommunicator_->loadURL(url);
  });
}

void XAdManager::didReceiveAdInfo(const std::shared_ptr<XAdInfo>& answer) {
  const OperationLog log{"-[XAdManager serverCommunicator:didReceiveAdInfo:]"};
  platformLog("Received async response from server");
  takeOver(*answer);
  const auto view = adView_.lock();
  if (!view) return reportWithoutView(answer);
  const auto impression = impression_;  // held: a report may bring the next answer
  const SlotFacts slot = slotFacts(*view);
  switch (routeOf(*answer, slot)) {
    case AnswerRoute::bidding:
      break;
    case AnswerRoute::redirect:
      platformLog("\n\nRequest is redirected");
      break;
    case AnswerRoute::redirected:
      log.debug("\n\nRedirect request response received");
      break;
    case AnswerRoute::normal:
      platformLog("\n\nRequest is Normal");
      break;
  }
  const Verdict verdict = classify(*answer, slot);
  inspect(*answer, slot, verdict, *view);
  const auto outcome = std::visit([&](const auto& one) { return carryOut(one, *view); }, verdict);
  conclude(outcome, *view, *impression, slot.requestRedirected);
}

void XAdManager::inspect(const XAdInfo& answer, const SlotFacts& slot, const Verdict& verdict,
                         AdManagerView& view) const {
  const auto& inspection = environment_->platform().inspection;
  if (!inspection->isOn()) return;
  auto account = accountOf(answer, slot, verdict, environment_->limits().answerDepth);
  inspection->tell(InspectionKind::classified, &view.sceneView(), std::move(account.text),
                   std::move(account.fields));
}

// Nobody can show anything, but what the answer says of itself is reported.
void XAdManager::reportWithoutView(const std::shared_ptr<XAdInfo>& answer) {
  const Verdict verdict =
      classify(*answer, {.realTimeBidding = slotConfiguration && slotConfiguration->RTBRequired,
                         .requestRedirected = requestRedirected_,
                         .canStartMediation = false});
  if (const auto* elsewhere = std::get_if<FollowRedirect>(&verdict)) return follow(*elsewhere);
  if (std::holds_alternative<EmptyAd>(verdict)) {
    return delegate.tell(&XAdManagerDelegate::adManagerDidReceiveEmptyAd, *this);
  }
  failWithoutAd();
}

// The answer to a redirect keeps the addresses of the first answer where it has none of its own.
void XAdManager::takeOver(const XAdInfo& answer) {
  servedFrom_ = answer.servedFrom;
  if (const auto file = present(answer.fileURL)) baseUrl_ = Url::fromText(*file);
  if (auto click = present(answer.clickTrackingURL)) clickThroughURL_ = std::move(click);
  if (auto impression = present(answer.impressionTrackingURL)) {
    impressionTrackingURL_ = std::move(impression);
  }
  tracker_ = std::make_shared<XAdTracker>(environment_);
  impression_ = std::make_shared<AnswerImpression>(
      tracker_, Url::fromText(impressionTrackingURL_.value_or("")), slotConfiguration);
}

SlotFacts XAdManager::slotFacts(const AdManagerView& view) const {
  const auto slot = view.slotConfiguration();
  return {
      .realTimeBidding = slot && slot->RTBRequired,
      .interstitial = view.mobileAdTypes() == MobileAdTypes::interstitial,
      .requestRedirected = requestRedirected_,
      .canStartMediation = delegate.implements(&XAdManagerDelegate::startMediationWithAdView),
      .standardsMode = standardsModeIsOn(environment_->shared<XGlobalConfiguration>(), slot.get()),
      .mediationPlacementId = slot ? slot->mediationPlacementId.value_or("") : "",
      .mediationSize =
          slot ? Size{slot->mediationBannerWidth, slot->mediationBannerHeight} : Size{}};
}

// Quirk: an answer to a redirect that cannot be shown is passed over without a report.
void XAdManager::conclude(Outcome outcome, AdManagerView& view, AnswerImpression& impression,
                          bool requestRedirected) {
  if (outcome == Outcome::shown) {
    platformLog("\n\nAd is displayed successfully");
    impression.processImpressionTracking();
  } else if (outcome == Outcome::unusable && !requestRedirected) {
    platformLog("\n\nTAVO: No ads available from Server");
    tellWithoutAd(view, [this] { failWithoutAd(); });
  }
}

// An answer's kind begins as not yet known, also where it brings nothing: who hears of it may hand
// the slot to another network. What stands in the slot has its own kind back afterwards, unless it
// was a film, which is over.
void XAdManager::tellWithoutAd(AdManagerView& view, const std::function<void()>& report) {
  if (isForFilms()) return report();
  const MobileAdSubTypes standing = view.mobileAdSubTypes();
  view.setMobileAdSubTypes(MobileAdSubTypes::unknown);
  report();
  const bool wasFilm =
      standing == MobileAdSubTypes::vastBanner || standing == MobileAdSubTypes::vastInterstitial;
  if (!wasFilm && view.mobileAdSubTypes() == MobileAdSubTypes::unknown) {
    view.setMobileAdSubTypes(standing);
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

void XAdManager::failWithoutAd() {
  fail(makeError(SdkError::noAd, "No ads available from TAVO server."));
}

XAdManager::Outcome XAdManager::carryOut(const NoAd& /*verdict*/, AdManagerView& /*view*/) {
  return Outcome::unusable;
}

XAdManager::Outcome XAdManager::carryOut(const EmptyAd& verdict, AdManagerView& view) {
  const OperationLog log{"-[XAdManager serverCommunicatorDidReceiveEmptyAd:]"};
  if (verdict.route == AnswerRoute::redirect) {
    platformLog("\n\nRedirect: Empty Ad");
  } else {
    log.debug("\n\nEmpty Ad");
  }
  tellWithoutAd(view,
                [this] { delegate.tell(&XAdManagerDelegate::adManagerDidReceiveEmptyAd, *this); });
  return Outcome::shown;
}

XAdManager::Outcome XAdManager::carryOut(const FollowRedirect& verdict, AdManagerView& /*view*/) {
  follow(verdict);
  return Outcome::elsewhere;
}

void XAdManager::follow(const FollowRedirect& verdict) {
  if (++redirectAnswers_ > environment_->limits().redirectAnswers) {
    fail(makeError(TransportError::tooManyRedirects, "Too many answers in a row were redirects."));
  } else {
    loadAdWithRedirectURL(verdict.url);
  }
}

XAdManager::Outcome XAdManager::carryOut(const ShowImage& verdict, AdManagerView& view) {
  const OperationLog log{"-[XAdManager processResponseSuccessWithAdInfo:communicator:]"};
  if (verdict.subType == MobileAdSubTypes::image) log.debug("\n\nLoading Image Ad...");
  view.setMobileAdSubTypes(verdict.subType);
  showImage(view, verdict.picture);
  return Outcome::shown;
}

XAdManager::Outcome XAdManager::carryOut(const ShowHtml& verdict, AdManagerView& view) {
  const OperationLog log{"-[XAdManager processResponseSuccessWithAdInfo:communicator:]"};
  if (verdict.subType) {
    view.setMobileAdSubTypes(*verdict.subType);
  } else {
    log.debug("\n\nLoading MRAID/HTML Ad...");
    if (!moviePlayerInstance) view.setMobileAdSubTypes(MobileAdSubTypes::unknown);
  }
  const bool confines = slotConfiguration && slotConfiguration->confinesPagesToServingSite;
  const BasedPage page = confines ? confinedPage(verdict.html, baseUrl_, servedFrom_,
                                                 *environment_->platform().cookies)
                                  : BasedPage{verdict.html, baseUrl_};
  showPage(view, page.html, page.base);
  return Outcome::later;
}

XAdManager::Outcome XAdManager::carryOut(const RefuseEmptyPicture& verdict, AdManagerView& view) {
  const OperationLog log{"-[XAdManager sendFailDelegateForEmptyGif]"};
  if (verdict.subType) view.setMobileAdSubTypes(*verdict.subType);
  fail(makeError(SdkError::noAd, "empty.gif file response received."));
  return Outcome::elsewhere;
}

XAdManager::Outcome XAdManager::carryOut(const PlayVast& verdict, AdManagerView& /*view*/) {
  playVideo(verdict.document);
  return Outcome::later;
}

XAdManager::Outcome XAdManager::carryOut(const Mediate& verdict, AdManagerView& view) {
  if (!isForFilms()) view.setMobileAdSubTypes(MobileAdSubTypes::unknown);
  (void)delegate.ask(&XAdManagerDelegate::startMediationWithAdView, verdict.placementId,
                     verdict.size, true);
  return Outcome::elsewhere;
}

void XAdManager::loadImageAdTypeWithURL(const Url& url) {
  if (const auto view = adView_.lock()) showImage(*view, url);
}

void XAdManager::loadRichMediaAdWithAdInfo(const XAdInfo& /*adInfo*/, const std::string& htmlString,
                                           const Url& baseUrl) {
  if (const auto view = adView_.lock()) showPage(*view, htmlString, baseUrl);
}

void XAdManager::playVideo(const std::string& document) {
  const OperationLog log{"-[XAdManager loadVastAdWithAdInfo:]"};
  log.debug("\n\nLoading Vast Ad...");
  videoImpression_ = impression_;
  const auto view = adView_.lock();
  isVastInterestitial = view && view->mobileAdTypes() == MobileAdTypes::interstitial;
  vastRoad_ = makeFilmRoad();
  const auto road = vastRoad_;  // its first report may drop the manager
  road->loadVastAd(document);
}

// The one place where a film's document goes one way or the other.
std::shared_ptr<FilmRoad> XAdManager::makeFilmRoad() {
  using Told = XAdManagerDelegate;
  const Relay relay{*this};
  FilmSlot slot{.environment = environment_,
                .adView = adView_,
                .moviePlayerInstance = moviePlayerInstance,
                .slotConfiguration = slotConfiguration,
                .videoEvents = videoEvents_};
  if (!standardsModeIsOn(environment_->shared<XGlobalConfiguration>(), slotConfiguration.get())) {
    return VastRoad::create(std::move(slot),
                            {.failed = relay.call(&XAdManager::fail),
                             .concluded = relay.call(&XAdManager::didConcludeVast)});
  }
  return StandardsVastRoad::create(std::move(slot), servedFrom_,
                                   {.failed = relay.call(&XAdManager::fail),
                                    .concluded = relay.call(&XAdManager::didConcludeVast),
                                    .began = relay.pass(&Told::adManagerDidBeginVastAd),
                                    .companions = relay.pass(&Told::adManagerDidOfferCompanions)});
}

// Quirk: the answer's impression is counted when the answer is dealt with, also after a failure:
// a document that was served is billed, as a picture is that cannot be decoded.
void XAdManager::didConcludeVast() {
  if (adView_.expired() || !videoImpression_) return;
  platformLog("\n\nAd is displayed successfully");
  videoImpression_->processImpressionTracking();
}

void XAdManager::dismissVastViewController() {
  if (const auto view = adView_.lock()) view->dismissVastVideoView();
}

void XAdManager::dismissVastViewControllerOnMemoryWarning() {
  if (const auto view = adView_.lock()) view->dismissVastVideoViewOnMemoryWarning();
}

void XAdManager::followScreen(AdManagerView& view) {
  view.setEnterForegroundNotification();
  view.setOrientationNotification();
}

// What showed the ad before goes; a page's native view is free for the next page then.
void XAdManager::emptySlot(AdManagerView& view) {
  vastRoad_.reset();
  view.sceneView().removeAllSubviews();
  webViewAgent_.reset();
}

void XAdManager::showImage(AdManagerView& view, const Url& picture) {
  const OperationLog log{"-[XAdManager loadImageAdTypeWithURL:]"};
  platformLog("\n\nImage Ad");
  emptySlot(view);
  View& slotView = view.sceneView();
  const Rect& frame = slotView.frame();
  const auto banner =
      XMRAIDBannerView::create(environment_, {0, 0, frame.width, frame.height}, bannerEvents_);
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
  banner->loadImageWithURL(picture, adView_);
  followScreen(view);
  slotView.addSubview(banner);
  delegate.tell(&XAdManagerDelegate::refreshAd);
}

void XAdManager::showPage(AdManagerView& view, const std::string& html, const Url& baseUrl) {
  const OperationLog log{"-[XAdManager loadRichMediaAdWithAdInfo:htmlString:baseUrl:]"};
  if (view.mobileAdSubTypes() == MobileAdSubTypes::unknown) {
    const bool banner = view.mobileAdTypes() != MobileAdTypes::interstitial;
    platformLog(banner ? "Rich Media Ad - Banner" : "Rich Media Ad - Interstitial");
    view.setMobileAdSubTypes(banner ? MobileAdSubTypes::richMediaBanner
                                    : MobileAdSubTypes::richMediaInterstitial);
  }
  followScreen(view);
  emptySlot(view);
  if (const auto mistake = missingResources(*environment_->platform().bundle)) {
    platformLog(*mistake, LogLevel::error);
    return fail(makeError(SdkError::noAd, *mistake));
  }
  View& slotView = view.sceneView();
  const Rect& frame = slotView.frame();
  pageImpression_ = impression_;
  webViewAgent_ = XWebViewAgent::create(environment_, {0, 0, frame.width, frame.height},
                                        pageOf(view), webViewEvents_);
  slotView.addSubview(webViewAgent_);
  webViewAgent_->loadHTMLString(html, baseUrl, adView_);
  if (!slotName_.empty()) htmlSlots_.add(slotName_);
  log.debug("\n\nRefresh Ad");
  delegate.tell(&XAdManagerDelegate::refreshAd);
}

bool XAdManager::webViewDidFinishRender(WebView& webView) {
  const OperationLog log{"-[XAdManager webViewDidFinishRender:]"};
  const auto impression = pageImpression_;  // the host may load anew inside the question
  const bool mayShow =
      delegate.ask(&XAdManagerDelegate::adManagerWebViewDidFinishRender, *this, webView)
          .value_or(true);
  if (!mayShow) return false;
  // The host may have let go of the page inside the question.
  if (!webViewAgent_ || webViewAgent_->superview() == nullptr) return true;
  log.debug("\n\nTracking Impressions...");
  if (impression) impression->processImpressionTracking();
  return true;
}

}  // namespace tavo
