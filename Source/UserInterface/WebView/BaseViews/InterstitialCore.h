#pragma once

#include <memory>
#include <optional>

#include <tavo/XAdInterstitialViewController.h>
#include <tavo/XAdView.h>

#include "OnlineRequest/AdAddress.h"
#include "Runtime/NotificationCenter.h"
#include "Runtime/Relay.h"
#include "Scene/LayoutView.h"
#include "UserInterface/ActivityIndicator/ActivityIndicator.h"
#include "UserInterface/WebView/BaseViews/InterstitialCloseControl.h"
#include "UserInterface/WebView/BaseViews/InterstitialExit.h"
#include "UserInterface/WebView/BaseViews/InterstitialRotation.h"
#include "UserInterface/WebView/BaseViews/XAdViewOnlyForSubClassEyesDelegate.h"

namespace tavo {

class XVASTVideoView;

// What works behind an interstitial: owns its ad view and its parts, and turns what the ad view
// reports into what the interstitial reports. Main thread only.
class InterstitialCore : private InterstitialExit::Host {
 public:
  InterstitialCore(std::shared_ptr<Environment> environment,
                   XAdInterstitialViewController& controller);
  ~InterstitialCore() override;

  void load(const AdAddress& address);
  void releaseMemory() override;

  // The controller's view and its life on the screen.
  [[nodiscard]] std::shared_ptr<View> makeScreen();
  void viewDidLoad();
  void viewWillAppear();
  void viewDidAppear();
  // What Escape does.
  void cancel();

  void closeInterstitialAd() { exit_.end(EndCause::userClosed); }
  void didReceiveMemoryWarning() { exit_.end(EndCause::lowMemory); }
  // Tells the host, and leaves after a while.
  void fail(const std::optional<Error>& error, Seconds delay);

  [[nodiscard]] const std::shared_ptr<XAdView>& xadView() const { return xadView_; }
  [[nodiscard]] const std::shared_ptr<ActivityIndicator>& activityindicator() const {
    return activityindicator_;
  }
  [[nodiscard]] InterstitialCloseControl& closeControl() { return closeControl_; }
  [[nodiscard]] InterstitialRotation& rotation() { return rotation_; }

 private:
  using Told = XAdInterstitialViewControllerDelegate;

  [[nodiscard]] Relay<InterstitialCore> relay();
  void makeObservers();
  void makeAdView();
  void showIndicator();
  [[nodiscard]] std::shared_ptr<XVASTVideoView> videoView() const;

  // What the ad view reports, where more than passing it on follows.
  void xAdViewDidLoad(XAdView& adView);
  void xAdViewDidFailWithError(const std::optional<Error>& error);
  void xAdViewWillLeaveApplication();
  void xAdViewDidDismissOnMemoryWarning();
  void xAdViewDidEnterFullScreen();
  [[nodiscard]] bool xAdViewShouldDisplayAdOnWebViewFinishRender(WebView& webView);
  [[nodiscard]] bool xAdViewShouldHandleClickToAction(XAdView& adView, ClickToAction action,
                                                      const ClickToActionParameters& parameters);
  [[nodiscard]] bool xAdViewShouldHandleCustomURL(const Url& url);
  void interstitialAdDismissed();
  void XInterstitialAdDidClose();
  void adViewDidReleaseMemory() { exit_.end(EndCause::adReleased); }
  void deviceDidLock();

  // InterstitialExit::Host
  void tellCreativeThatItIsHidden() override;
  void removeContent() override;

  const std::shared_ptr<Environment> environment_;
  XAdInterstitialViewController& controller_;
  InterstitialExit exit_;
  InterstitialCloseControl closeControl_;
  InterstitialRotation rotation_;
  bool adLoaded_ = false;
  std::shared_ptr<LayoutView> screen_;
  std::shared_ptr<XAdView> xadView_;
  std::shared_ptr<ActivityIndicator> activityindicator_;
  std::shared_ptr<const XAdViewDelegate> adViewEvents_;
  std::shared_ptr<const XAdViewOnlyForSubClassEyesDelegate> subClassEvents_;
  Subscription memoryWarning_;
};

}  // namespace tavo
