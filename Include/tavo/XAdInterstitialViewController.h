#pragma once

#include <memory>
#include <optional>
#include <string>

#include <tavo/Button.h>
#include <tavo/ClickToAction.h>
#include <tavo/Export.h>
#include <tavo/MobileAdTypes.h>
#include <tavo/Observer.h>
#include <tavo/ViewController.h>
#include <tavo/XAdInterstitialViewControllerDelegate.h>
#include <tavo/XAdSlotConfiguration.h>

namespace tavo {

class ActivityIndicator;
class InterstitialCore;
class XAdManager;
class XAdView;
struct XMRAIDExpandProperties;
struct XMRAIDOrientationProperties;

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
// Main thread only, without exception. The host shares the controller with whoever presents it; it
// may drop it at any time, also from inside a report. A controller may load again after it was
// closed. Nothing here throws; what fails is reported.
class TAVO_EXPORT XAdInterstitialViewController : public ViewController {
 public:
  // Makes a controller in the current runtime, which must be there.
  [[nodiscard]] static std::shared_ptr<XAdInterstitialViewController> create();
  // Ends the ad; reports nothing.
  ~XAdInterstitialViewController() override;

  // The version of this library: "Ver 2.2.2".
  [[nodiscard]] static std::string corvaneTAVOSDKVersion();

  // Hears every outcome. Held weakly: the host keeps the table as long as it wants to hear.
  Observer<XAdInterstitialViewControllerDelegate> delegate;
  // The slot's settings, handed to the ad view before each load; null: the defaults.
  std::shared_ptr<XAdSlotConfiguration> slotConfiguration;
  // For the host's own use: whether it expects a video.
  bool isVastInterestitial = false;
  // Let go of with the ad: an ad manager and a controller of whoever stands behind this one.
  std::shared_ptr<XAdManager> adManager;
  std::shared_ptr<ViewController> viewController;
  // The creative draws its own close control; each load begins with false.
  bool useCustomClose = false;
  // False until the view is made, which is before the first load; no load is reported before.
  bool isFirstMRAIDAd = false;
  // As the screen was held when the interstitial was last seen.
  InterfaceOrientation orientationWhileLeaving = InterfaceOrientation::unknown;

  // Asks the server at `domainName` (host and delivery path, without scheme) for an ad of page
  // `pageName` at position `adPosition`; keywords and query string are "key=value" pairs joined by
  // "&". What the last ad had asked for is forgotten. Outcomes reach the delegate in later turns of
  // the loop, in the order in which they happen, that of a device without a network too: never
  // inside this call.
  void loadWithDomainName(const std::string& domainName, const std::string& pageName,
                          const std::string& adPosition, const std::string& keywords = {},
                          const std::string& queryString = {});

  // What the close button does: the controller leaves the screen and the host hears of it.
  void closeInterstitialAd();
  // Carries an action out without asking the host.
  void performClickToAction(ClickToAction actionType, const ClickToActionParameters& parameters);
  // Ends the ad and drops everything that belongs to it; a later load begins anew.
  void releaseMemory();

  // Whether the current ad is a page or a picture; not so before the first answer.
  [[nodiscard]] bool isMRAID() const { return isMraid(mobileAdSubTypes()); }
  // What the current ad is; unknown while there is none.
  [[nodiscard]] MobileAdSubTypes mobileAdSubTypes() const;
  // Whether the host hears of loaded interstitials, without which none is mediated.
  [[nodiscard]] bool isRequiredDelegateImplementedByPublisher() const;
  // Null before the first load and after `releaseMemory`.
  [[nodiscard]] const std::shared_ptr<XAdView>& xadView() const;
  // Null before the first time that there was something to wait for on the screen.
  [[nodiscard]] const std::shared_ptr<ActivityIndicator>& activityindicator() const;
  // Null while there is none; not the one that a video brings.
  [[nodiscard]] const std::shared_ptr<Button>& closeButton() const;

  // The close button in its three kinds; each is added only where its rules allow it: drawn, for
  // pages; without a picture, over a creative's own control; and drawn, for all but videos.
  void addCloseButton();
  void addCloseButtonWithoutImage();
  void addCloseButtonForRedirect();
  // The creative has said whether it draws the close control.
  void expandPropertiesChnaged(const XMRAIDExpandProperties& properties);

  // The creative's orientation rules, and their effect on the screen. Null after `releaseMemory`.
  [[nodiscard]] const XMRAIDOrientationProperties* orientationProp() const;
  void setOrientationPropertiesWith(const XMRAIDOrientationProperties& properties);
  [[nodiscard]] bool shouldAutorotate() const override;
  [[nodiscard]] bool shouldAutorotateToInterfaceOrientation(InterfaceOrientation orientation) const;
  [[nodiscard]] OrientationMask supportedInterfaceOrientations() const override;
  [[nodiscard]] InterfaceOrientation preferredInterfaceOrientationForPresentation() const override;
  void didRotateFromInterfaceOrientation(InterfaceOrientation from) override;
  // Presents the controller anew, for the system to look at its rules again.
  void forceRotateToInterfaceOrientation();

  // Escape: what the close button does, or nothing while a video may not be closed yet. Always
  // uses the key up.
  bool cancelOperation() override;
  // Memory is low: the ad leaves the screen, is released and is reported. Called by the SDK, which
  // hears of it from the platform.
  void didReceiveMemoryWarning();

  // What an ad manager reports that was given this controller, and a view without an ad: led to the
  // host, and in the last two cases to the end of the ad a few seconds later.
  void adManagerDidLoad(XAdManager& manager);
  void adManagerDidFailWithError(const std::optional<Error>& error);
  void xAdViewDidReceiveNoAd(XAdView& adView);

 protected:
  [[nodiscard]] std::shared_ptr<View> loadView() override;
  void viewDidLoad() override;
  void viewWillAppear(Animated animated) override;
  void viewDidAppear(Animated animated) override;
  void viewDidDisappear(Animated animated) override;

 private:
  XAdInterstitialViewController();

  std::unique_ptr<InterstitialCore> core_;
};

}  // namespace tavo
