#include <algorithm>

#include <tavo/Runtime.h>
#include <tavo/SdkErrors.h>
#include <tavo/XAdView.h>
#include <tavo/XGlobalConfiguration.h>

#include "AdController/AdGenerator/XWebViewAgent.h"
#include "AdManager/XAdManager.h"
#include "ClickToAction/CreativePictures.h"
#include "Configuration/MediationSwitch.h"
#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "RequestEnrichment/ScreenAndVisibility.h"
#include "Scene/Window.h"
#include "Services/Application.h"
#include "UserInterface/WebView/ExposableViews/MRAIDComplaint/XMRAIDBannerView.h"

namespace tavo {

std::shared_ptr<XAdView> XAdView::create(const Rect& frame) {
  const OperationLog log{"-[XAdView initWithFrame:]"};
  std::shared_ptr<XAdView> view{new XAdView{frame}};
  view->makeObservers();
  return view;
}

XAdView::XAdView(const Rect& frame)
    : View{frame},
      slotConfiguration_{std::make_shared<XAdSlotConfiguration>()},
      defaultFrame_{frame} {
  setClipsToBounds(true);
}

XAdView::~XAdView() { XAdView::releaseMemory(); }

std::string XAdView::corvaneTAVOSDKVersion() {
  const OperationLog log{"+[XAdView corvaneTAVOSDKVersion]"};
  return "Ver 2.2.2";
}

// Every report holds the view for its length: a host may drop it from inside.
void XAdView::makeObservers() {
  const std::weak_ptr<View> weak = weak_from_this();
  const auto self = [weak] { return std::static_pointer_cast<XAdView>(weak.lock()); };
  const auto events = std::make_shared<XAdManagerDelegate>(XAdManagerDelegate{
      .adManagerDidLoad =
          [self](XAdManager&) {
            if (const auto view = self()) view->adManagerDidLoad();
          },
      .adManagerDidReceiveEmptyAd =
          [self](XAdManager&) {
            if (const auto view = self()) view->adManagerDidReceiveEmptyAd();
          },
      .adManagerDidFailWithError =
          [self](const std::optional<Error>& error) {
            if (const auto view = self()) view->adManagerDidFailWithError(error);
          },
      .adManagerWebViewDidFinishRender =
          [self](XAdManager&, WebView& webView) {
            const auto view = self();
            return view && view->webViewDidFinishRender(webView);
          },
      .adManagerWebViewOpenCustomURL =
          [self](XAdManager&, const Url& url) {
            if (const auto view = self()) view->openCustomURL(url);
          },
      .refreshAd =
          [self] {
            if (const auto view = self()) view->refreshAd();
          },
      .startMediationWithAdView =
          [self](const std::string& placementId, const Size& size, bool isMediationMandate) {
            const auto view = self();
            return view && view->mediation_.start(placementId, size, isMediationMandate);
          }});
  addVideoEvents(*events);
  managerEvents_ = events;
}

void XAdView::setSlotConfiguration(std::shared_ptr<XAdSlotConfiguration> configuration) {
  if (configuration && configuration != slotConfiguration_) {
    slotConfiguration_ = std::move(configuration);
  }
}

void XAdView::loadWithDomainName(const std::string& domainName, const std::string& pageName,
                                 const std::string& adPosition, const std::string& keywords,
                                 const std::string& queryString) {
  const OperationLog log{"-[XAdView loadWithDomainName:pageName:adPosition:keywords:queryString:]"};
  const auto held = shared_from_this();
  userColor_ = backgroundColor();
  parameters_ = {domainName, pageName, adPosition, keywords, queryString};
  makeManager();
  platformLog("SDK Version: " + corvaneTAVOSDKVersion());
  loader_.loadAd();
}

void XAdView::makeManager() {
  const auto self = std::static_pointer_cast<XAdView>(shared_from_this());
  adManager_ = XAdManager::create(Runtime::current().environment(), self, managerEvents_);
  adManager_->slotConfiguration = slotConfiguration_;
  adManager_->moviePlayerInstance = moviePlayerInstance_;
}

std::shared_ptr<PictureSaver> XAdView::makePictureManager(PictureSaver::Failed failed) {
  return std::make_shared<CreativePictures>(Runtime::current().environment(), std::move(failed));
}

void XAdView::requestAd() {
  if (!adManager_) return;
  const auto manager = adManager_;
  manager->loadAdWithDomainName({parameters_.domainName, parameters_.pageName,
                                 parameters_.adPosition, parameters_.keywords,
                                 parameters_.queryString});
}

void XAdView::reload() {
  const RequestParameters stored = parameters_;
  loadWithDomainName(stored.domainName, stored.pageName, stored.adPosition, stored.keywords,
                     stored.queryString);
}

RefreshFacts XAdView::refreshFacts() const {
  return {.visible = XViewIsVisible(*this),
          .type = adType_,
          .subType = adSubType_,
          .interval = slotConfiguration_->bannerRefreshInterval};
}

bool XAdView::isExpandedOrResized() const {
  const auto state = presentation_.state();
  return state == MRAIDState::expanded || state == MRAIDState::resized;
}

void XAdView::didAppearOnScreen() {
  const auto held = shared_from_this();
  loader_.didAppearOnScreen();
}

void XAdView::releaseMemory() {
  const OperationLog log{"-[XAdView releaseMemory]"};
  const auto held = weak_from_this().lock();
  // What is taken off is destroyed after this turn: the caller may be one of them.
  const auto manager = std::move(adManager_);
  adManager_ = nullptr;
  mediation_.release();
  removeAllSubviews();
  presentation_.dismissExpanded();
  if (auto* interstitial = interstitialController()) interstitial->adViewDidReleaseMemory();
  if (appBrowserOpen()) {
    const auto browser = clickActions_->appBrowser();
    browser->dismissViewController(Animated::yes);
  }
  loader_.stop(AdViewLoader::Extent::whatReloads);
  presentation_.release();
}

void XAdView::willMoveToSuperview(View* newSuperview) {
  const OperationLog log{"-[XAdView willMoveToSuperview:]"};
  if (newSuperview != nullptr) return;
  platformLog("release memory");
  releaseMemory();
}

void XAdView::layoutSubviews() {
  if (placementType_ == PlacementType::interstitial) presentation_.placeDidChange();
}

InterstitialController* XAdView::interstitialController() const {
  return dynamic_cast<InterstitialController*>(nearestController());
}

bool XAdView::showsRenderer() const {
  const auto isRenderer = [](const std::shared_ptr<View>& view) {
    return dynamic_cast<const XWebViewAgent*>(view.get()) != nullptr ||
           dynamic_cast<const XMRAIDBannerView*>(view.get()) != nullptr;
  };
  return std::any_of(subviews().begin(), subviews().end(), isRenderer);
}

// Quirk: a browser that is open above an ad which its user has opened is reported as closed, while
// it stays where it is.
void XAdView::didLockScreen() {
  setHidden(false);
  if (!isMraid(adSubType_)) return;
  if (showsRenderer() && isExpandedOrResized() && appBrowserOpen()) {
    platformLog("Closing inAppBrowser as device is locked");
    delegate.tell(&XAdViewDelegate::xAdViewWillCloseInAppBrowser, *this);
  }
  if (auto* interstitial = interstitialController()) {
    platformLog("Dismissing Interstitialview Controller");
    interstitial->deviceDidLock();
  }
}

void XAdView::didReceiveMemoryWarning() {
  const OperationLog log{"-[XAdView didReceiveMemoryWarningNotification:]"};
  platformLog("Device is low on memory");
  releaseMemory();
  delegate.tell(&XAdViewDelegate::xAdViewDidDismissOnMemoryWarning, *this);
}

void XAdView::showBackgroundImage() {
  if (slotConfiguration_->backGroundImage.empty() || loader_.isAdLoaded()) return;
  userColor_ = backgroundColor();
  setBackgroundPattern(slotConfiguration_->backGroundImage);
}

void XAdView::adManagerDidLoad() {
  const OperationLog log{"-[XAdView adManagerDidLoad:]"};
  if (mediatedAdDidFailToLoad_) return showBackgroundImage();
  loader_.setAdLoaded();
  setBackgroundPattern({});
  setBackgroundColor(userColor_);
  platformLog("TAVOSDK: Finished loading the ad successfully.");
  delegate.tell(&XAdViewDelegate::xAdViewDidLoad, *this);
}

void XAdView::adManagerDidReceiveEmptyAd() {
  const OperationLog log{"-[XAdView adManagerDidReceiveEmptyAd:]"};
  platformLog("TAVOSDK: Identified an Empty ad response from server.");
  if (adSubType_ == MobileAdSubTypes::vastBanner) {
    delegate.tell(&XAdViewDelegate::xAdViewPrerollDidFinishWithPlayer, *this, moviePlayerInstance_);
  } else {
    delegate.tell(&XAdViewDelegate::xAdViewDidFailWithError, *this,
                  std::optional{makeError(SdkError::noAd, "No Ad recieved from server")});
  }
  showBackgroundImage();
}

void XAdView::adManagerDidFailWithError(const std::optional<Error>& error) {
  const OperationLog log{"-[XAdView adManagerDidFailWithError:]"};
  platformLog("TAVOSDK: Failed to load ad from Server.");
  if (!mediatedAdDidFailToLoad_ &&
      mediationFollowsFailure(XGlobalConfiguration::sharedInstance().canMediate,
                              slotConfiguration_->canMediate)) {
    (void)mediation_.start(
        slotConfiguration_->mediationPlacementId.value_or(""),
        {slotConfiguration_->mediationBannerWidth, slotConfiguration_->mediationBannerHeight},
        false);
  }
  // A network that failed at once has told the host already.
  if (mediatedAdDidFailToLoad_) return;
  showBackgroundImage();
  platformLog("TAVOSDK: " + (error ? error->description : std::string{"(null)"}));
  delegate.tell(&XAdViewDelegate::xAdViewDidFailWithError, *this, error);
  refreshAd();
}

void XAdView::willLoad() {
  mediationAdServed_ = false;
  mediatedAdDidFailToLoad_ = false;
  mediation_.abandonLoad();
}

std::shared_ptr<MediatedView> XAdView::mediatedView() {
  return std::static_pointer_cast<XAdView>(weak_from_this().lock());
}

std::optional<MediationType> XAdView::mediationType() const {
  return mediationTypeFor(adType_, adSubType_, placementType_);
}

bool XAdView::isRequiredDelegateImplementedByPublisher() const {
  return pDelegate
      .ask(&XAdViewOnlyForSubClassEyesDelegate::isRequiredDelegateImplementedByPublisher)
      .value_or(false);
}

ViewController* XAdView::mediationRootController() { return getRootViewController(); }

void XAdView::mediatedAdDidLoad() {
  refreshAd();
  adManagerDidLoad();
}

void XAdView::mediatedAdDidFail(const Error& error) {
  mediatedAdDidFailToLoad_ = true;
  refreshAd();
  showBackgroundImage();
  delegate.tell(&XAdViewDelegate::xAdViewDidFailWithError, *this, std::optional{error});
}

void XAdView::mediationWasRefused(const Error& error) {
  delegate.tell(&XAdViewDelegate::xAdViewDidFailWithError, *this, std::optional{error});
}

void XAdView::mediatedAdWasClicked() {
  delegate.tell(&XAdViewDelegate::xAdViewDidClickOnAd, *this);
}

void XAdView::mediatedAdWillPresent() {
  delegate.tell(&XAdViewDelegate::xAdViewWillOpenInInAppBrowser, *this);
}

void XAdView::mediatedAdDidClose() {
  delegate.tell(&XAdViewDelegate::xAdViewWillCloseInAppBrowser, *this);
}

void XAdView::mediatedAdWillLeaveApplication() {
  delegate.tell(&XAdViewDelegate::xAdViewWillLeaveApplication, *this);
}

void XAdView::handleInitMRAIDAdWithWebView(const PageRef& webView,
                                           const std::shared_ptr<XMRAIDEventEmitter>& emitter) {
  const OperationLog log{"-[XAdView handleInitMRAIDAdWithWebView:emitter:]"};
  presentation_.handleInitMRAIDAd(webView, emitter);
}

void XAdView::expandToFrame(const Rect& frame, bool isCustomClose, bool /*isOrientationAllowed*/,
                            const PageRef& webView) {
  presentation_.expandToFrame(frame, isCustomClose, webView);
}

// Quirk: the ad returns to the view's present bounds, whatever frame was kept for it.
void XAdView::collapseToFrame(const Rect& /*frame*/) { presentation_.collapseToFrame(); }

void XAdView::resizeAd(const std::optional<XMRAIDResizeProperties>& properties,
                       const PageRef& webView) {
  presentation_.resizeAd(properties, webView);
}

void XAdView::setExpandPropertiesWithDict(const XMRAIDExpandProperties& properties) {
  const OperationLog log{"-[XAdView setExpandPropertiesWithDict:]"};
  pDelegate.tell(&XAdViewOnlyForSubClassEyesDelegate::expandPropertiesChnaged, properties);
}

void XAdView::setOrientationPropertiesWith(const XMRAIDOrientationProperties& properties,
                                           const PageRef& webView) {
  presentation_.setOrientationPropertiesWith(properties, webView);
}

void XAdView::updateCurrentPositionOfWebView(const PageRef& /*webView*/) {
  const OperationLog log{"-[XAdView updateCurrentPositionOfWebView:]"};
  presentation_.updateLayOutForNewState(presentation_.state());
}

void XAdView::removeCloseButtonFromSuperView() {
  const OperationLog log{"-[XAdView removeCloseButtonFromSuperView]"};
  const auto current = subviews();
  for (const auto& subview : current) {
    if (dynamic_cast<const Button*>(subview.get()) != nullptr) subview->removeFromSuperview();
  }
}

std::shared_ptr<View> XAdView::resizeViewSuperview() const {
  const OperationLog log{"-[XAdView resizeViewSuperview]"};
  ViewController* root = getRootViewController();
  return root != nullptr ? root->view() : nullptr;
}

void XAdView::adDidExpand() { delegate.tell(&XAdViewDelegate::xAdDidExpand, *this); }

void XAdView::adDidCollapse() { delegate.tell(&XAdViewDelegate::xAdDidCollapse, *this); }

void XAdView::interstitialAdDidClose() {
  pDelegate.tell(&XAdViewOnlyForSubClassEyesDelegate::XInterstitialAdDidClose, *this);
}

void XAdView::orientationPropertiesDidChange(const XMRAIDOrientationProperties& properties) {
  pDelegate.tell(&XAdViewOnlyForSubClassEyesDelegate::setOrientationPropertiesWith, properties);
}

bool XAdView::webViewDidFinishRender(WebView& webView) {
  const OperationLog log{"-[XAdView adManager:webViewDidFinishRender:]"};
  platformLog("webViewDidFinishRender");
  const auto answer =
      delegate.ask(&XAdViewDelegate::xAdViewShouldDisplayAdOnWebViewFinishRender, *this, webView);
  if (answer)
    platformLog("End publisher handled delegate: -[XAdView adManager:webViewDidFinishRender:]");
  return answer.value_or(true);
}

void XAdView::openCustomURL(const Url& url) {
  const OperationLog log{"-[XAdView adManager:webViewOpenCustomURL:]"};
  const auto handled =
      delegate.ask(&XAdViewDelegate::xAdViewShouldHandleCustomURL, *this, url).has_value();
  platformLog(handled ? "CustomURLScheme \"app://\" found. Publisher will handle customURL, "
                        "Terminating SDK Flow."
                      : "Publisher did not handle the customURLScheme \"app://\". Ignoring the "
                        "request.");
}

ViewController* XAdView::windowRootViewController() {
  const Window* const standsIn = window();
  return standsIn == nullptr ? nullptr : standsIn->rootViewController().get();
}

void XAdView::appBrowserClosed() {
  setHidden(false);
  delegate.tell(&XAdViewDelegate::xAdViewWillCloseInAppBrowser, *this);
}

bool XAdView::shouldHandleClickToAction(ClickToAction action,
                                        const ClickToActionParameters& parameters) {
  return delegate.ask(&XAdViewDelegate::xAdViewShouldHandleClickToAction, *this, action, parameters)
      .value_or(true);
}

void XAdView::willOpenInInAppBrowser() {
  delegate.tell(&XAdViewDelegate::xAdViewWillOpenInInAppBrowser, *this);
}

void XAdView::willLeaveApplication() {
  delegate.tell(&XAdViewDelegate::xAdViewWillLeaveApplication, *this);
}

void XAdView::reportErrorMessage(std::string_view message, std::string_view action) {
  const auto& emitter = presentation_.eventEmitter();
  if (emitter) emitter->reportErrorMessage(message, action, presentation_.webViewInstance());
}

}  // namespace tavo
