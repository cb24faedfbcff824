#include <tavo/Runtime.h>
#include <tavo/XAdInterstitialViewController.h>

#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"

namespace tavo {

// What the ad view reports becomes what the interstitial reports. Every report holds the controller
// for its length: a host may drop it from inside.

std::function<std::shared_ptr<XAdInterstitialViewController>()>
XAdInterstitialViewController::holder() {
  return [weak = weak_from_this()] {
    return std::static_pointer_cast<XAdInterstitialViewController>(weak.lock());
  };
}

void XAdInterstitialViewController::makeObservers() {
  const auto self = holder();
  const auto call = [self](auto operation) {
    return [self, operation](auto&... arguments) {
      if (const auto controller = self()) (controller.get()->*operation)(arguments...);
    };
  };
  using Self = XAdInterstitialViewController;
  XAdViewDelegate events{
      .xAdViewDidLoad = call(&Self::xAdViewDidLoad),
      .xAdViewDidFailWithError = call(&Self::xAdViewDidFailWithError),
      .xAdViewWillLeaveApplication = call(&Self::xAdViewWillLeaveApplication),
      .xAdViewDidDismissOnMemoryWarning = call(&Self::xAdViewDidDismissOnMemoryWarning),
      .xAdViewDidEnterFullScreen = call(&Self::xAdViewDidEnterFullScreen),
      .xAdViewShouldDisplayAdOnWebViewFinishRender =
          [self](XAdView& adView, WebView& webView) {
            const auto controller = self();
            return controller &&
                   controller->xAdViewShouldDisplayAdOnWebViewFinishRender(adView, &webView);
          },
      .xAdViewShouldHandleCustomURL =
          [self](XAdView& adView, const Url& url) {
            const auto controller = self();
            if (controller) controller->xAdViewShouldHandleCustomURL(adView, url);
            return controller != nullptr;
          },
      .xAdViewShouldHandleClickToAction =
          [self](XAdView& adView, ClickToAction action, const ClickToActionParameters& parameters) {
            const auto controller = self();
            return controller &&
                   controller->xAdViewShouldHandleClickToAction(adView, action, parameters);
          },
      .interstitialAdDismissed = call(&Self::interstitialAdDismissed)};
  addVideoEvents(events);
  adViewEvents_ = std::make_shared<XAdViewDelegate>(std::move(events));
  subClassEvents_ =
      std::make_shared<XAdViewOnlyForSubClassEyesDelegate>(XAdViewOnlyForSubClassEyesDelegate{
          .expandPropertiesChnaged = call(&Self::expandPropertiesChnaged),
          .setOrientationPropertiesWith = call(&Self::setOrientationPropertiesWith),
          .XInterstitialAdDidClose = call(&Self::XInterstitialAdDidClose),
          .isRequiredDelegateImplementedByPublisher = [self] {
            const auto controller = self();
            return controller && controller->isRequiredDelegateImplementedByPublisher();
          }});
}

void XAdInterstitialViewController::addVideoEvents(XAdViewDelegate& events) {
  const auto relay = [self = holder()](auto operation) {
    return [self, operation](XAdView&, const auto&... value) {
      if (const auto controller = self())
        controller->delegate.tell(operation, *controller, value...);
    };
  };
  events.xAdViewDidClickOnAd = relay(&Told::xAdInterstitialDidClick);
  events.xAdViewDidExitFullScreen = relay(&Told::xAdInterstitialDidExitFullScreen);
  events.xAdViewDidSkipVideo = relay(&Told::xAdInterstitialDidSkipVideo);
  events.xAdViewDidFinishQuartile = relay(&Told::xAdInterstitialDidFinishQuartile);
  events.xAdViewDidPauseVideo = relay(&Told::xAdInterstitialDidPauseVideo);
  events.xAdViewDidResume = relay(&Told::xAdInterstitialDidResume);
  events.xAdViewDidRewind = relay(&Told::xAdInterstitialDidRewind);
  events.xAdViewWillOpenInInAppBrowser = relay(&Told::xAdInterstitialWillOpenInInAppBrowser);
  events.xAdViewWillCloseInAppBrowser = relay(&Told::xAdInterstitialWillCloseInAppBrowser);
}

void XAdInterstitialViewController::xAdViewDidLoad(XAdView& adView) {
  const OperationLog log{"-[XAdInterstitialViewController xAdViewDidLoad:]"};
  const auto held = shared_from_this();
  if (activityindicator_) activityindicator_->hide();
  adLoaded_ = true;
  const bool isMediated = adView.isMediationAdServed();
  if (isMediated && !isRequiredDelegateImplementedByPublisher()) {
    platformLog("Required delegate xAdInterstitialDidLoad is not implemented.");
    return;
  }
  if (!isMediated) {
    Runtime::current().platform().application->setStatusBarHidden(true, StatusBarAnimation::fade);
  }
  if (isFirstMRAIDAd) {
    delegate.tell(&Told::xAdInterstitialDidLoad, isMediated ? nullptr : this);
  }
  // The host may have closed the ad again.
  if (!over_ && isClosedLikeRedirect(mobileAdSubTypes())) addCloseButtonForRedirect();
}

bool XAdInterstitialViewController::xAdViewShouldDisplayAdOnWebViewFinishRender(XAdView& /*adView*/,
                                                                                WebView* webView) {
  const OperationLog log{
      "-[XAdInterstitialViewController xAdView:shouldDisplayAdOnWebViewFinishRender:]"};
  if (webView == nullptr) return true;
  const auto held = shared_from_this();
  const bool mayDisplay =
      delegate
          .ask(&Told::xAdInterstitialViewControllerShouldDisplayAdOnWebViewFinishRender, *this,
               *webView)
          .value_or(true);
  if (!over_) addCloseButton();
  return mayDisplay;
}

// Quirk: who wants to hear of the beginning must want to hear of the end. Hosts pause and resume by
// the pair.
void XAdInterstitialViewController::xAdViewDidEnterFullScreen(XAdView& /*adView*/) {
  const OperationLog log{"-[XAdInterstitialViewController xAdViewDidEnterFullScreen:]"};
  if (!delegate.implements(&Told::xAdInterstitialDidExitFullScreen)) return;
  delegate.tell(&Told::xAdInterstitialDidEnterFullScreen, *this);
}

// The button itself stays on the screen: the user comes back to the ad, and wants to leave it then.
void XAdInterstitialViewController::xAdViewWillLeaveApplication(XAdView& /*adView*/) {
  const OperationLog log{"-[XAdInterstitialViewController xAdViewWillLeaveApplication:]"};
  closeButton_.reset();
  delegate.tell(&Told::xAdInterstitialWillLeaveApplication, *this);
}

bool XAdInterstitialViewController::xAdViewShouldHandleClickToAction(
    XAdView& /*adView*/, ClickToAction action, const ClickToActionParameters& parameters) {
  const OperationLog log{
      "-[XAdInterstitialViewController xAdView:shouldHandleClickToAction:parameters:]"};
  return delegate
      .ask(&Told::xAdInterstitialViewControllerShouldHandleClickToAction, *this, action, parameters)
      .value_or(true);
}

void XAdInterstitialViewController::xAdViewShouldHandleCustomURL(XAdView& /*adView*/,
                                                                 const Url& url) {
  const OperationLog log{"-[XAdInterstitialViewController xAdView:shouldHandleCustomURL:]"};
  const auto held = shared_from_this();
  const bool handles =
      delegate.implements(&Told::xAdInterstitialViewControllerShouldHandleCustomURL);
  delegate.tell(&Told::xAdInterstitialViewControllerShouldHandleCustomURL, *this, url);
  platformLog(handles ? "CustomURLScheme \"app://\" found. Publisher will handle customURL, "
                        "Terminating SDK Flow."
                      : "Publisher did not handle the customURLScheme \"app://\". Ignoring the "
                        "request.");
}

void XAdInterstitialViewController::adManagerDidLoad(XAdManager& /*manager*/) {
  const OperationLog log{"-[XAdInterstitialViewController adManagerDidLoad:]"};
  delegate.tell(&Told::xAdInterstitialDidLoad, this);
}

}  // namespace tavo
