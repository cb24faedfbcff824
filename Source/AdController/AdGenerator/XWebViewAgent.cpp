#include "AdController/AdGenerator/XWebViewAgent.h"

#include <tavo/SdkErrors.h>

#include "AdController/AdGenerator/CreativeHtml.h"
#include "AdController/AdGenerator/NavigationPolicy.h"
#include "AdController/AdGenerator/XBundleManager.h"
#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "RequestEnrichment/ScreenAndVisibility.h"
#include "RequestEnrichment/XDeviceSupportProperties.h"
#include "Runtime/Relay.h"
#include "Services/Bundle.h"
#include "Services/WebViewFactory.h"
#include "Values/Text.h"

namespace tavo {

XWebViewAgent::XWebViewAgent(std::shared_ptr<Environment> environment, const Rect& frame)
    : View{frame}, environment_{std::move(environment)} {}

std::shared_ptr<XWebViewAgent> XWebViewAgent::create(
    std::shared_ptr<Environment> environment, const Rect& frame, const WebViewOptions& page,
    const std::shared_ptr<const WebViewAgentDelegate>& delegate) {
  const OperationLog log{"-[XWebViewAgent initWithFrame:allowExpansion:Delegate:]"};
  std::shared_ptr<XWebViewAgent> agent{new XWebViewAgent{std::move(environment), frame}};
  agent->delegate.set(delegate);
  agent->makeWebView(page);
  agent->makeCommands();
  const Relay relay{*agent};
  agent->orientationSubscription_ = agent->environment_->notifications().subscribe(
      interstitialOrientationDidChangeNotification,
      relay.call(&XWebViewAgent::orientationDidChange));
  return agent;
}

XWebViewAgent::~XWebViewAgent() {
  webView_->setClient({});
  webView_->stopLoading();
  if (connection_) connection_->cancel();
}

void XWebViewAgent::makeWebView(const WebViewOptions& page) {
  webView_ = environment_->platform().webViews->create(frame(), page);
  webView_->setAutoresizingMask(flexibleWidth | flexibleHeight);
  webView_->setBackgroundColor(colors::clear);
  webView_->setClipsToBounds(true);
  webView_->setOpaque(false);
  webView_->allowsInlineMediaPlayback = true;
  webView_->mediaPlaybackRequiresUserAction = false;
  inspection_ = {environment_->platform().inspection, page.owner};
  eventEmitter_ =
      std::make_shared<XMRAIDEventEmitter>(environment_->platform().runLoop, inspection_);
  auto singleTap = std::make_shared<TapRecognizer>();
  const Relay relay{*this};
  singleTap->action = relay.call(&XWebViewAgent::handleTap);
  webView_->addTapRecognizer(std::move(singleTap));
}

void XWebViewAgent::makeCommands() {
  const Platform& platform = environment_->platform();
  commands_ = std::make_unique<CreativeCommands>(
      CreativeCommands::Means{.runLoop = platform.runLoop,
                              .application = platform.application,
                              .webView = webView_,
                              .eventEmitter = eventEmitter_,
                              .inspection = inspection_,
                              .openUrl = [this](const Url& url) { openUrl(url); }},
      environment_->limits());
}

void XWebViewAgent::handleTap(const TapRecognizer& recognizer) {
  const OperationLog log{"-[XWebViewAgent handleTap:]"};
  if (recognizer.state != TapRecognizer::State::ended) return;
  userTappedWebView = true;
  commands_->tapped();
}

void XWebViewAgent::orientationDidChange() {
  const OperationLog log{"-[XWebViewAgent orientationDidChange]"};
  if (superview() != nullptr) setFrame(superview()->frame());
}

std::optional<std::string> XWebViewAgent::MRAIDScriptPath() const {
  const OperationLog log{"-[XWebViewAgent MRAIDScriptPath]"};
  return environment_->shared<XBundleManager>().bundlePathForResource("XMraid", "js",
                                                                      "CorvaneTAVOSDKMRAID");
}

void XWebViewAgent::loadHTMLString(const std::string& html, const Url& baseURL,
                                   std::weak_ptr<WebViewAgentHost> xAdView) {
  const OperationLog log{"-[XWebViewAgent loadHTMLString:baseURL:inXAdView:]"};
  const auto scriptPath = MRAIDScriptPath();
  if (!scriptPath) {
    log.debug("\n\nMRAIDScriptPath: NIL");
    return;
  }
  const bool namesScript = contains(html, "mraid.js");
  connect(*scriptPath, std::move(xAdView));
  const Url scriptUrl = Url::fromText("file://" + *scriptPath);
  webView_->loadHtml(HTMLWithJavaScriptBridge(html, scriptUrl.text()),
                     namesScript ? Url{} : baseURL);
  isHTMLRequest_ = true;
  isFailureTold_ = false;
}

void XWebViewAgent::loadPage(const Url& url, std::weak_ptr<WebViewAgentHost> xAdView) {
  const auto scriptPath = MRAIDScriptPath();
  if (!scriptPath) {
    return delegate.tell(&WebViewAgentDelegate::webViewAgentDidFailWithError,
                         makeError(SdkError::renderingRefused, "The MRAID script is missing."));
  }
  connect(*scriptPath, std::move(xAdView));
  webView_->loadUrl(url);
  isHTMLRequest_ = true;
  isPage_ = true;
  isFailureTold_ = false;
}

void XWebViewAgent::connect(const std::string& scriptPath,
                            std::weak_ptr<WebViewAgentHost> xAdView) {
  xadViewInstance_ = std::move(xAdView);
  commands_->setAdView(xadViewInstance_);
  webView_->setClient(std::static_pointer_cast<XWebViewAgent>(shared_from_this()));
  const auto adView = xadViewInstance_.lock();
  eventEmitter_->setFollowsStandards(adView && adView->followsStandards());
  if (eventEmitter_->followsStandards()) {
    webView_->addDocumentStartScript("window.mraidFollowsStandards = true;");
  }
  // The engine loads the tag's file URL only from pages with a file base; the script itself reaches
  // every page this way.
  if (const auto script = environment_->platform().bundle->contents(scriptPath)) {
    webView_->addDocumentStartScript(*script);
  }
}

void XWebViewAgent::loadRequest(HttpRequest request) {
  const OperationLog log{"-[XWebViewAgent loadRequest:]"};
  connection_ = environment_->platform().http->send(std::move(request), {});
  if (connection_) log.debug("\n\nConnection: Established Successfully");
}

bool XWebViewAgent::webViewShouldStartLoad(WebView& /*webView*/, const Navigation& navigation) {
  const OperationLog log{"-[XWebViewAgent webView:shouldStartLoadWithRequest:navigationType:]"};
  const auto adView = xadViewInstance_.lock();
  const NavigationFacts facts{adView ? adView->mobileAdSubTypes() : MobileAdSubTypes::unknown,
                              userTappedWebView, isMetaRefreshExist_};
  const NavigationDecision decision = decideNavigation(navigation, facts);
  inspect(navigation, decision);
  // A tap counts for one navigation; commands, clicked links and what is refused do not use it up.
  const bool isClickedLink =
      decision == NavigationDecision::openAsClick && navigation.type == NavigationType::linkClicked;
  const bool keepsTap = isClickedLink || decision == NavigationDecision::runCommand ||
                        decision == NavigationDecision::refuse;
  if (!keepsTap) userTappedWebView = false;
  switch (decision) {
    case NavigationDecision::runCommand:
      takeCommand(navigation.url);
      return false;
    case NavigationDecision::openAsClick:
      if (commands_->mayOpen(navigation.url)) openUrl(navigation.url);
      return false;
    case NavigationDecision::followRefresh:
      isMetaRefreshExist_ = false;
      platformLog("The creative's own document is refreshed: " + navigation.url.text());
      return true;
    case NavigationDecision::allow:
      return mayLoadInPage(navigation);
    case NavigationDecision::refuse:
      return false;
  }
  return true;
}

// Commands are told of where they are carried out.
void XWebViewAgent::inspect(const Navigation& navigation, NavigationDecision decision) const {
  if (decision == NavigationDecision::runCommand || !inspection_.isOn()) return;
  std::string text = "loads in the page";
  if (decision == NavigationDecision::openAsClick) text = "a click: opened outside the page";
  if (decision == NavigationDecision::refuse) text = "refused: a window that no tap asked for";
  if (decision == NavigationDecision::followRefresh) text = "the page's own refresh: loads in it";
  const bool isMainFrame = navigation.url == navigation.mainDocumentUrl;
  inspection_.tell(InspectionKind::navigation, text + ": " + navigation.url.text(),
                   {{"decision", text},
                    {"url", navigation.url.text()},
                    {"frame", isMainFrame ? "main" : "inner"},
                    {"tapped", userTappedWebView ? "yes" : "no"}});
}

// What may load and is not the web goes where it belongs: no page can show a telephone number.
bool XWebViewAgent::mayLoadInPage(const Navigation& navigation) {
  if (routeClick(navigation.url) == ClickRoute::browser) return true;
  if (commands_->mayOpen(navigation.url)) openUrl(navigation.url);
  return false;
}

void XWebViewAgent::openUrl(const Url& url) {
  const OperationLog log{"-[XWebViewAgent openUrl:]"};
  const bool handled = handleClickCommandsWithUrl(url);
  const auto adView = xadViewInstance_.lock();
  if (!handled && adView && adView->slotConfiguration()) adView->openUrlInBrowser(url);
}

bool XWebViewAgent::handleClickCommandsWithUrl(const Url& url) {
  const OperationLog log{"-[XWebViewAgent handleClickCommandsWithUrl:]"};
  const ClickRoute route = routeClick(url);
  if (route == ClickRoute::customUrl) {
    platformLog(
        "Custom URL Found. Calling delegate webViewOpenCustomURL and terminating SDK flow.");
    delegate.tell(&WebViewAgentDelegate::webViewOpenCustomURL, url);
    return true;
  }
  const auto adView = xadViewInstance_.lock();
  if (!adView || route == ClickRoute::browser) return false;
  if (route == ClickRoute::dialler) adView->openDiallerWithUrl(url);
  if (route == ClickRoute::sms) adView->sendSMSWithUrl(url);
  if (route == ClickRoute::email) adView->sendEmailWithUrl(url);
  if (route == ClickRoute::faceTime) adView->makeFaceTimeCallWithUrl(url);
  return true;
}

// The engine waits for its answer meanwhile: a command that takes the page apart runs after it.
void XWebViewAgent::takeCommand(const Url& url) {
  if (!commands_->mayRun(url.text())) return;
  const Relay relay{*this};
  environment_->platform().runLoop->post(
      [handle = relay.call(&XWebViewAgent::handleCommandWithURL), url] { handle(url); });
}

void XWebViewAgent::handleCommandWithURL(const Url& url) {
  const auto self = shared_from_this();
  commands_->handle(mraidCommandFromUrl(url));
}

void XWebViewAgent::webViewDidFinishLoad(WebView& webView) {
  const OperationLog log{"-[XWebViewAgent webViewDidFinishLoad:]"};
  isFailureTold_ = false;
  initializeJavaScriptBridge(*eventEmitter_, webView_);
  const int load = ++finishedLoads_;
  webView.evaluate("document.documentElement.outerHTML",
                   [weak = weak_from_this(), load](const std::string& markup) {
                     const auto self = std::static_pointer_cast<XWebViewAgent>(weak.lock());
                     if (self && self->finishedLoads_ == load) self->finishedDocument(markup);
                   });
}

void XWebViewAgent::finishedDocument(const std::string& markup) {
  isMetaRefreshExist_ = hasMetaRefresh(markup);
  // A document that sends itself elsewhere is not the creative yet: the next finished load is.
  if (isMetaRefreshExist_ || !isHTMLRequest_) return;
  isHTMLRequest_ = false;
  // A page can send commands while it is still loading, and be on the screen before anybody was
  // asked whether it may.
  const auto adView = xadViewInstance_.lock();
  if (adView && webView_->superview() != nullptr) adView->webViewLeavesScreen(webView_);
  reportRendered();
}

void XWebViewAgent::reportRendered() {
  const bool stoodInSlot = superview() != nullptr;
  const bool canRenderAd =
      delegate.ask(&WebViewAgentDelegate::webViewDidFinishRender, *webView_).value_or(true);
  // The host may have let go of the ad inside the question: then nobody polices its page any more.
  if (stoodInSlot && superview() == nullptr) return;
  if (!canRenderAd) {
    platformLog("\n\nError: Rendering of ad interrupted by publisher");
    delegate.tell(
        &WebViewAgentDelegate::webViewAgentDidFailWithError,
        makeError(SdkError::renderingRefused, "Rendering of ad interrupted by publisher."));
    return;
  }
  if (const auto adView = xadViewInstance_.lock()) {
    adView->sceneView().addSubview(webView_);
    adView->webViewJoinsScreen(webView_);
  }
  delegate.tell(&WebViewAgentDelegate::webViewAgentDidFinishLoad, *this);
}

void XWebViewAgent::webViewDidFailLoad(WebView& /*webView*/, const Error& error) {
  const OperationLog log{"-[XWebViewAgent webView:didFailLoadWithError:]"};
  const bool isPageRefused = isPage_ && isHTMLRequest_ && error.code == cannotShowUrlError;
  if ((error.code == cannotShowUrlError && !isPageRefused) ||
      error.code == static_cast<int>(TransportError::cancelled)) {
    return;
  }
  isFailureTold_ = true;
  delegate.tell(&WebViewAgentDelegate::webViewAgentDidFailWithError, error);
}

void XWebViewAgent::webViewProcessDidTerminate(WebView& webView, const Error& error) {
  // The page is lost: what is left of it leaves the screen, and the host hears of a failure, unless
  // it has heard of one since a page was there.
  ++finishedLoads_;
  isHTMLRequest_ = false;
  const auto adView = xadViewInstance_.lock();
  if (adView) adView->webViewLeavesScreen(webView_);
  webView.removeFromSuperview();
  if (std::exchange(isFailureTold_, true)) return;
  delegate.tell(&WebViewAgentDelegate::webViewAgentDidFailWithError, error);
}

void XWebViewAgent::mraidSupportsFeatures(const std::shared_ptr<WebView>& webView) {
  const OperationLog log{"-[XWebViewAgent mraidSupportsFeatures:]"};
  const auto has = XDeviceSupportProperties::defaultProperty(environment_->platform());
  eventEmitter_->setSupported(has.deviceSupportsSms, MRAIDFeature::sms, webView);
  eventEmitter_->setSupported(has.deviceSupportsCalendar, MRAIDFeature::calendar, webView);
  eventEmitter_->setSupported(has.deviceSupportsInlineVideo, MRAIDFeature::inlineVideo, webView);
  eventEmitter_->setSupported(has.deviceSupportsTel, MRAIDFeature::tel, webView);
  eventEmitter_->setSupported(has.deviceSupportsStorePicture, MRAIDFeature::storePicture, webView);
}

// What is missing here, largest size and default position, the ad view tells when it answers
// "init". The records are the page's first answers, not what the creative has asked for.
void XWebViewAgent::initializeJavaScriptBridge(XMRAIDEventEmitter& emitter,
                                               const std::shared_ptr<WebView>& webView) {
  const OperationLog log{"-[XWebViewAgent initializeJavaScriptBridge:forWebView:]"};
  const Size screen = screenSizeIncludingStatusBar(false);
  const auto adView = xadViewInstance_.lock();
  mraidSupportsFeatures(webView);
  emitter.setExpandProperties(XMRAIDExpandProperties{screen}, webView);
  emitter.setResizeProperties({}, webView);
  emitter.setOrientationProperties({}, webView);
  emitter.setPlacementType(adView ? adView->placementType() : PlacementType::inlined, webView);
  emitter.setState(MRAIDState::normal, webView);
  emitter.setCurrentPosition(adView ? adView->sceneView().frame() : Rect{}, webView);
  emitter.setViewable(true, webView);
  emitter.setScreenSize(screen, webView);
  emitter.fireEventForEvent(sizeChangeEventName(screen), webView);
  emitter.fireReadyEventForWebView(webView);
}

// Quirk: where the orientation is not known the frames are told upright and the size comes out
// sideways.
Size XWebViewAgent::screenSizeIncludingStatusBar(bool includingStatusBar) const {
  const OperationLog log{"-[XWebViewAgent screenSizeIncludingStatusBar:]"};
  const Size size = includingStatusBar ? XDeviceScreenBounds(environment_->platform()).size()
                                       : XApplicationFrame(environment_->platform()).size();
  const bool isKnown =
      XDeviceInterfaceOrientation(environment_->platform()) != InterfaceOrientation::unknown;
  return isKnown ? size : Size{size.height, size.width};
}

}  // namespace tavo
