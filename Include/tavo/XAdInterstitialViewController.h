#pragma once

#include <memory>
#include <optional>
#include <string>

#include <tavo/XAdInterstitialViewControllerDelegate.h>
#include <tavo/XAdView.h>

#include "Runtime/NotificationCenter.h"
#include "Scene/LayoutView.h"
#include "UserInterface/ActivityIndicator/ActivityIndicator.h"
#include "UserInterface/NativeView/XVASTVideoView.h"
#include "UserInterface/WebView/BaseViews/InterstitialCloseButton.h"
#include "UserInterface/WebView/BaseViews/InterstitialController.h"
#include "UserInterface/WebView/BaseViews/InterstitialOrientation.h"

namespace tavo {

// An ad on the whole screen. The host makes one with `create`, sets its delegate, calls
// `loadWithDomainName` and presents the controller once it hears `xAdInterstitialDidLoad`:
//
//   interstitial->delegate.set(events);
//   interstitial->loadWithDomainName("ads.example.com/delivery", "news/front", "Full");
//   // in xAdInterstitialDidLoad:
//   root->presentViewController(interstitial, Animated::yes);
//
// It leaves the screen by its close button, by the Escape key wherever the button would work, by
// the creative's own request, after a failure, on low memory, when the screen is locked and when
// the application goes to the background. The host hears `xAdInterstitialDismissed` once, except
// after a failure, which it has heard of.
//
// Main thread only. The host shares the controller with whoever presents it; it may drop it at any
// time, also from inside a report. A controller may load again after it was closed.
class XAdInterstitialViewController : public ViewController, public InterstitialController {
 public:
  [[nodiscard]] static std::shared_ptr<XAdInterstitialViewController> create();
  ~XAdInterstitialViewController() override;

  // The version of this library: "Ver 2.2.2".
  [[nodiscard]] static std::string corvaneTAVOSDKVersion();

  // Hears every outcome.
  Observer<XAdInterstitialViewControllerDelegate> delegate;
  // The slot's settings, handed to the ad view before each load; null: the defaults.
  std::shared_ptr<XAdSlotConfiguration> slotConfiguration;
  // For the host's own use: whether it expects a video.
  bool isVastInterestitial = false;
  // Let go of with the ad: an ad manager and a controller of whoever stands behind this one.
  std::shared_ptr<XAdManager> adManager;
  std::shared_ptr<ViewController> viewController;
  // The creative draws its own close control.
  bool useCustomClose = false;
  // False until the first use; no load is reported before.
  bool isFirstMRAIDAd = false;
  // As the screen was held when the interstitial was last seen.
  InterfaceOrientation orientationWhileLeaving = InterfaceOrientation::unknown;

  // Asks the server at `domainName` (host and delivery path, without scheme) for an ad of page
  // `pageName` at position `adPosition`; keywords and query string are "key=value" pairs joined by
  // "&". Outcomes reach the delegate, offline ones inside this call.
  void loadWithDomainName(const std::string& domainName, const std::string& pageName,
                          const std::string& adPosition, const std::string& keywords = {},
                          const std::string& queryString = {});

  // What the close button does.
  void closeInterstitialAd();
  // Carries an action out without asking the host.
  void performClickToAction(ClickToAction actionType, const ClickToActionParameters& parameters);
  // Ends the ad and drops everything that belongs to it; a later load begins anew.
  void releaseMemory();

  [[nodiscard]] bool isMRAID() const { return isMraid(mobileAdSubTypes()); }
  [[nodiscard]] MobileAdSubTypes mobileAdSubTypes() const;
  [[nodiscard]] bool isRequiredDelegateImplementedByPublisher() const;
  // Null before the first load and after `releaseMemory`.
  [[nodiscard]] const std::shared_ptr<XAdView>& xadView() const { return xadView_; }
  // Null before the first time that there was something to wait for on the screen.
  [[nodiscard]] const std::shared_ptr<ActivityIndicator>& activityindicator() const {
    return activityindicator_;
  }
  // Null while there is none; not the one that a video brings.
  [[nodiscard]] const std::shared_ptr<Button>& closeButton() const { return closeButton_; }

  // The close button in its three kinds; each is added only where its rules allow it.
  void addCloseButton();
  void addCloseButtonWithoutImage();
  void addCloseButtonForRedirect();

  // The creative's orientation rules, and their effect on the screen.
  [[nodiscard]] const OrientationRules& orientationProp() const { return orientationProp_; }
  void setOrientationPropertiesWith(const XMRAIDOrientationProperties& properties);
  [[nodiscard]] bool shouldAutorotate() const override;
  [[nodiscard]] bool shouldAutorotateToInterfaceOrientation(InterfaceOrientation orientation) const;
  [[nodiscard]] OrientationMask supportedInterfaceOrientations() const override;
  [[nodiscard]] InterfaceOrientation preferredInterfaceOrientationForPresentation() const override;
  void didRotateFromInterfaceOrientation(InterfaceOrientation from) override;
  // Presents the controller anew, for the system to look at its rules again.
  void forceRotateToInterfaceOrientation();

  // Escape: what the close button does, or nothing while a video may not be closed yet.
  bool cancelOperation() override;
  // Memory is low.
  void didReceiveMemoryWarning();

  // What the ad view reports, where more than passing it on follows.
  void xAdViewDidLoad(XAdView& adView);
  void xAdViewDidFailWithError(XAdView& adView, const std::optional<Error>& error);
  void xAdViewDidReceiveNoAd(XAdView& adView);
  [[nodiscard]] bool xAdViewShouldDisplayAdOnWebViewFinishRender(XAdView& adView, WebView* webView);
  void expandPropertiesChnaged(const XMRAIDExpandProperties& properties);
  void XInterstitialAdDidClose(XAdView& adView);
  void interstitialAdDismissed(XAdView& adView);
  void xAdViewDidDismissOnMemoryWarning(XAdView& adView);
  void xAdViewDidEnterFullScreen(XAdView& adView);
  void xAdViewWillLeaveApplication(XAdView& adView);
  [[nodiscard]] bool xAdViewShouldHandleClickToAction(XAdView& adView, ClickToAction action,
                                                      const ClickToActionParameters& parameters);
  void xAdViewShouldHandleCustomURL(XAdView& adView, const Url& url);

  // What an ad manager reports that was given this controller.
  void adManagerDidLoad(XAdManager& manager);
  void adManagerDidFailWithError(const std::optional<Error>& error);

  // InterstitialController
  void adViewDidReleaseMemory() override;
  void deviceDidLock() override;

 protected:
  [[nodiscard]] std::shared_ptr<View> loadView() override;
  void viewDidLoad() override;
  void viewWillAppear(Animated animated) override;
  void viewDidAppear(Animated animated) override;
  void viewDidDisappear(Animated animated) override;

 private:
  using Told = XAdInterstitialViewControllerDelegate;

  XAdInterstitialViewController() = default;

  [[nodiscard]] std::function<std::shared_ptr<XAdInterstitialViewController>()> holder();
  void makeObservers();
  void addVideoEvents(XAdViewDelegate& events);
  void makeAdView();
  void forgetLastAd();
  void fitAdView() const;
  void postOrientation() const;
  void reportLayout() const;
  void showIndicator();
  [[nodiscard]] CloseButtonFacts closeButtonFacts() const;
  enum class ButtonLook { picture, invisible };
  void putCloseButton(ButtonLook look);
  [[nodiscard]] std::shared_ptr<XVASTVideoView> videoView() const;

  // Steps of leaving.
  void showStatusBar();
  void removeEverything();
  void leave(Animated animated, const std::function<void()>& gone = {});
  void leaveAndTell(Animated animated);
  void dismissLater(Seconds delay);
  void dismissViewControllerWithError();

  std::shared_ptr<LayoutView> screen_;
  std::shared_ptr<XAdView> xadView_;
  std::shared_ptr<ActivityIndicator> activityindicator_;
  std::shared_ptr<Button> closeButton_;
  OrientationRules orientationProp_;
  std::shared_ptr<const XAdViewDelegate> adViewEvents_;
  std::shared_ptr<const XAdViewOnlyForSubClassEyesDelegate> subClassEvents_;
  Subscription memoryWarning_;
  Timer dismissal_;          // after a failure
  Seconds dismissalDue_{0};  // when it comes
  bool adLoaded_ = false;
  bool over_ = false;  // its end was told, or needs no telling
};

}  // namespace tavo
