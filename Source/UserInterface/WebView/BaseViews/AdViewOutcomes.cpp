#include "UserInterface/WebView/BaseViews/AdViewOutcomes.h"

#include <tavo/SdkErrors.h>
#include <tavo/XGlobalConfiguration.h>

#include "Configuration/MediationSwitch.h"
#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "Runtime/Environment.h"
#include "Runtime/Relay.h"

namespace tavo {

AdViewOutcomes::AdViewOutcomes(std::shared_ptr<Environment> environment, XAdView& view,
                               AdViewLoader& loader, MediatedView& stage)
    : AdViewPart{view},
      environment_{std::move(environment)},
      loader_{loader},
      mediation_{environment_, view, stage, *this} {}

// Hosts hear that something happened in a video, not when.
const std::shared_ptr<const XAdManagerDelegate>& AdViewOutcomes::managerEvents() {
  if (managerEvents_) return managerEvents_;
  using Self = AdViewOutcomes;
  const Relay<Self> self{sharedPart(hold(), *this)};
  const Relay host{view()};
  managerEvents_ = std::make_shared<XAdManagerDelegate>(XAdManagerDelegate{
      .adManagerDidLoad = self.call(&Self::adManagerDidLoad),
      .adManagerDidReceiveEmptyAd = self.call(&Self::adManagerDidReceiveEmptyAd),
      .adManagerDidFailWithError = self.call(&Self::adManagerDidFailWithError),
      .adManagerWebViewDidFinishRender = self.call(&Self::adManagerWebViewDidFinishRender),
      .adManagerWebViewOpenCustomURL = self.call(&Self::adManagerWebViewOpenCustomURL),
      .refreshAd = self.call(&Self::refreshAd),
      .startMediationWithAdView = self.call(&Self::startMediationWithAdView),
      .adManagerWillLeaveAppliation = host.pass(&Told::xAdViewWillLeaveApplication),
      .adManagerWillOpenInAppBrowser = host.pass(&Told::xAdViewWillOpenInInAppBrowser),
      .adManagerDidCloseInAppBrowser = host.pass(&Told::xAdViewWillCloseInAppBrowser),
      .adManagerDidClickOnAdWithURL = host.pass(&Told::xAdViewDidClickOnAd),
      .adManagerDidPauseVideo = host.pass(&Told::xAdViewDidPauseVideo),
      .adManagerDidResume = host.pass(&Told::xAdViewDidResume),
      .adManagerDidSkipVideo = host.pass(&Told::xAdViewDidSkipVideo),
      .adManagerDidFinishQuartile = host.pass(&Told::xAdViewDidFinishQuartile),
      .adManagerDidEnterFullScreen = host.pass(&Told::xAdViewDidEnterFullScreen),
      .adManagerDidExitFullScreen = host.pass(&Told::xAdViewDidExitFullScreen),
      .adManagerDidRewind = host.pass(&Told::xAdViewDidRewind),
      .adManagerDidBeginVastAd = host.pass(&Told::xAdViewDidBeginVastAd),
      .adManagerDidOfferCompanions = host.pass(&Told::xAdViewDidOfferCompanions),
      .prerollDidFinishPlayingWithPlayer = self.call(&Self::prerollDidFinishPlayingWithPlayer),
      .prerollDidFinishOnMemoryWarning = host.pass(&Told::xAdViewDidDismissOnMemoryWarning)});
  return managerEvents_;
}

void AdViewOutcomes::forgetLastLoad() {
  view().setIsMediationAdServed(false);
  mediatedAdDidFailToLoad_ = false;
}

void AdViewOutcomes::showBackgroundImage() {
  const Image& picture = view().slotConfiguration()->backGroundImage;
  if (picture.empty() || loader_.isAdLoaded()) return;
  view().userColor = view().backgroundColor();
  view().setBackgroundPattern(picture);
}

void AdViewOutcomes::adManagerDidLoad() {
  const OperationLog log{"-[XAdView adManagerDidLoad:]"};
  loader_.requestDidEnd();
  if (mediatedAdDidFailToLoad_) return showBackgroundImage();
  loader_.setAdLoaded();
  view().setBackgroundPattern({});
  view().setBackgroundColor(view().userColor);
  platformLog("TAVOSDK: Finished loading the ad successfully.");
  tell(&Told::xAdViewDidLoad);
}

void AdViewOutcomes::adManagerDidReceiveEmptyAd() {
  const OperationLog log{"-[XAdView adManagerDidReceiveEmptyAd:]"};
  loader_.requestDidEnd();
  platformLog("TAVOSDK: Identified an Empty ad response from server.");
  if (view().mobileAdSubTypes() == MobileAdSubTypes::vastBanner) {
    tell(&Told::xAdViewPrerollDidFinishWithPlayer, view().moviePlayerInstance());
  } else {
    tell(&Told::xAdViewDidFailWithError,
         std::optional{makeError(SdkError::noAd, "No Ad recieved from server")});
  }
  showBackgroundImage();
}

void AdViewOutcomes::adManagerDidFailWithError(const std::optional<Error>& error) {
  const OperationLog log{"-[XAdView adManagerDidFailWithError:]"};
  loader_.requestDidEnd();
  platformLog("TAVOSDK: Failed to load ad from Server.", LogLevel::warning);
  const XAdSlotConfiguration& slot = *view().slotConfiguration();
  if (!mediatedAdDidFailToLoad_ &&
      mediationFollowsFailure(environment_->shared<XGlobalConfiguration>().canMediate,
                              slot.canMediate)) {
    (void)mediation_.start(slot.mediationPlacementId.value_or(""),
                           {slot.mediationBannerWidth, slot.mediationBannerHeight}, false);
  }
  // A network that failed at once has told the host already.
  if (mediatedAdDidFailToLoad_) return;
  showBackgroundImage();
  platformLog("TAVOSDK: " + (error ? error->description : std::string{"(null)"}),
              LogLevel::warning);
  tell(&Told::xAdViewDidFailWithError, error);
  loader_.refreshAd();
}

bool AdViewOutcomes::adManagerWebViewDidFinishRender(WebView& webView) {
  const OperationLog log{"-[XAdView adManager:webViewDidFinishRender:]"};
  platformLog("webViewDidFinishRender");
  const auto answer =
      view().delegate.ask(&Told::xAdViewShouldDisplayAdOnWebViewFinishRender, view(), webView);
  if (answer) {
    platformLog("End publisher handled delegate: -[XAdView adManager:webViewDidFinishRender:]");
  }
  return answer.value_or(true);
}

void AdViewOutcomes::adManagerWebViewOpenCustomURL(const Url& url) {
  const OperationLog log{"-[XAdView adManager:webViewOpenCustomURL:]"};
  const auto handled = view().delegate.ask(&Told::xAdViewShouldHandleCustomURL, view(), url);
  platformLog(handled ? "CustomURLScheme \"app://\" found. Publisher will handle customURL, "
                        "Terminating SDK Flow."
                      : "Publisher did not handle the customURLScheme \"app://\". Ignoring the "
                        "request.");
}

void AdViewOutcomes::refreshAd() {
  loader_.requestDidEnd();
  loader_.refreshAd();
}

void AdViewOutcomes::prerollDidFinishPlayingWithPlayer(const std::shared_ptr<MoviePlayer>& player) {
  loader_.requestDidEnd();
  tell(&Told::xAdViewPrerollDidFinishWithPlayer, player);
}

bool AdViewOutcomes::startMediationWithAdView(const std::string& placementId, const Size& size,
                                              bool isMediationMandate) {
  loader_.requestDidEnd();
  return mediation_.start(placementId, size, isMediationMandate);
}

void AdViewOutcomes::mediatedAdDidLoad() {
  loader_.refreshAd();
  adManagerDidLoad();
}

void AdViewOutcomes::mediatedAdDidFail(const Error& error) {
  mediatedAdDidFailToLoad_ = true;
  loader_.refreshAd();
  showBackgroundImage();
  tell(&Told::xAdViewDidFailWithError, std::optional{error});
}

}  // namespace tavo
