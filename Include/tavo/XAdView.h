#pragma once

#include <memory>
#include <optional>
#include <string>

#include <tavo/MobileAdTypes.h>
#include <tavo/Observer.h>
#include <tavo/Runtime.h>
#include <tavo/View.h>
#include <tavo/XAdSlotConfiguration.h>
#include <tavo/XAdViewDelegate.h>

#include "AdManager/AdManagerView.h"
#include "ClickToAction/ClickActions.h"
#include "UserInterface/WebView/BaseViews/AdViewLoader.h"
#include "UserInterface/WebView/BaseViews/AdViewMediation.h"
#include "UserInterface/WebView/BaseViews/InterstitialController.h"
#include "UserInterface/WebView/BaseViews/MraidPresentation.h"
#include "UserInterface/WebView/BaseViews/XAdViewOnlyForSubClassEyesDelegate.h"

namespace tavo {

class XAdManager;
struct XAdManagerDelegate;

// A banner slot on the host's screen. The host makes one with `create`, sets its delegate and
// settings, puts it into its layout and calls `loadWithDomainName`; the view asks the ad server,
// draws what came back and refreshes it on a timer while it is visible.
//
// Main thread only. The host owns the view through the shared pointer; leaving the screen or
// `releaseMemory` takes the ad away, a later load brings a new one.
class XAdView : public View,
                public AdManagerView,
                public MediatedView,
                private AdViewLoader::Host,
                private MraidPresentation::Host,
                private AdViewMediation::Host,
                private ClickActionsView {
 public:
  // `frame` in points, in the coordinates of the view that it will stand in.
  [[nodiscard]] static std::shared_ptr<XAdView> create(const Rect& frame);
  ~XAdView() override;

  // The version of this library: "Ver 2.2.2".
  [[nodiscard]] static std::string corvaneTAVOSDKVersion();

  // Hears every outcome.
  Observer<XAdViewDelegate> delegate;
  // For the SDK's own full-screen controller.
  Observer<XAdViewOnlyForSubClassEyesDelegate> pDelegate;

  // Where the ad stands: among the host's content, or above all of it.
  [[nodiscard]] PlacementType placementType() const override { return placementType_; }
  void setPlacementType(PlacementType placement) { placementType_ = placement; }

  // The slot's settings, shared with the host; never null before the view is destroyed.
  [[nodiscard]] std::shared_ptr<XAdSlotConfiguration> slotConfiguration() const override {
    return slotConfiguration_;
  }
  void setSlotConfiguration(std::shared_ptr<XAdSlotConfiguration> configuration);

  // What the current ad is, as the ad manager found.
  [[nodiscard]] MobileAdTypes mobileAdTypes() const override { return adType_; }
  void setMobileAdTypes(MobileAdTypes type) { adType_ = type; }
  [[nodiscard]] MobileAdSubTypes mobileAdSubTypes() const override { return adSubType_; }
  void setMobileAdSubTypes(MobileAdSubTypes subType) override { adSubType_ = subType; }

  // Lends the host's player to the slot, which then serves a pre-roll: the ad plays in it and hands
  // it back with the content that it had. Set it before the load; null ends the loan.
  void setMoviePlayerInstance(std::shared_ptr<MoviePlayer> player);
  [[nodiscard]] const std::shared_ptr<MoviePlayer>& moviePlayerInstance() const {
    return moviePlayerInstance_;
  }

  // Asks the server at `domainName` (host and delivery path, without scheme) for an ad of page
  // `pageName` at position `adPosition`; keywords and query string are "key=value" pairs joined by
  // "&". Outcomes reach the delegate, offline ones inside this call.
  void loadWithDomainName(const std::string& domainName, const std::string& pageName,
                          const std::string& adPosition, const std::string& keywords = {},
                          const std::string& queryString = {});

  // Starts or stops the refresh timer, by the settings and by what the view shows. Called by the
  // SDK after every render and failure; a host calls it after it has changed what decides.
  void refreshAd() { loader_.refreshAd(); }
  [[nodiscard]] bool isRefreshTimerRunning() const { return loader_.isRefreshTimerRunning(); }

  // Takes the ad away and ends the timer and all requests. May be called any number of times, also
  // from inside a delegate operation.
  void releaseMemory() override;

  // Opens the page behind a click.
  void openUrlInBrowser(const Url& url) override { clickActions_->openUrlInBrowser(url); }
  // Whether that page stands above the application.
  [[nodiscard]] bool appBrowserOpen() const override { return clickActions_->appBrowserOpen(); }

  // What else a click may ask for. The host is asked first.
  void openDiallerWithUrl(const Url& url) override { clickActions_->openDiallerWithUrl(url); }
  void sendSMSWithUrl(const Url& url) override { clickActions_->sendSMSWithUrl(url); }
  void sendEmailWithUrl(const Url& url) override { clickActions_->sendEmailWithUrl(url); }
  void makeFaceTimeCallWithUrl(const Url& url) override {
    clickActions_->makeFaceTimeCallWithUrl(url);
  }
  void openAppStoreWithURL(const Url& url) { clickActions_->openAppStoreWithURL(url); }
  [[nodiscard]] std::shared_ptr<PictureSaver> makePictureManager(
      PictureSaver::Failed failed) override;
  void createCalenderEvent(const std::string& event) override { createCalendarEvent(event); }
  void createCalendarEvent(const std::string& event) { clickActions_->createCalendarEvent(event); }
  void handlePlayVideoWithURL(const Url& url) override {
    clickActions_->handlePlayVideoWithURL(url);
  }
  // The same without the question, for whoever has asked already.
  void performClickToAction(ClickToAction actionType, const ClickToActionParameters& parameters) {
    clickActions_->performClickToAction(actionType, parameters);
  }
  void checkCalendarAuthorizationStatus() { clickActions_->checkCalendarAuthorizationStatus(); }
  // Whether the ad takes the full screen again when the user leaves the calendar; set by the SDK
  // for an expanded ad.
  [[nodiscard]] bool calendarReExpand() const override { return calendarReExpand_; }
  void setCalendarReExpand(bool reExpand) override { calendarReExpand_ = reExpand; }

  // Whether an external network fills the slot.
  [[nodiscard]] bool isMediationAdServed() const { return mediationAdServed_; }
  void setIsMediationAdServed(bool served) override { mediationAdServed_ = served; }

  // The creative's place and what it has opened. The close button of an expanded ad leads back, as
  // does its own request.
  void closeButtonPressed() { presentation_.closeButtonPressed(); }
  void setCustomCloseButton(bool isCustomClose) {
    presentation_.setCustomCloseButton(isCustomClose);
  }
  // The name of a picture among the resources, "png" unless it has an ending.
  void setCloseButtonImageWithImageNamed(std::string_view name) {
    presentation_.setCloseButtonImageWithImageNamed(name);
  }
  // Takes every button off the view itself.
  void removeCloseButtonFromSuperView();
  // Tells the creative about its place as it is in `state`.
  void updateLayOutForNewState(MRAIDState state) { presentation_.updateLayOutForNewState(state); }
  [[nodiscard]] const std::shared_ptr<XMRAIDEventEmitter>& eventEmitter() const {
    return presentation_.eventEmitter();
  }
  [[nodiscard]] std::shared_ptr<WebView> webViewInstance() const {
    return presentation_.webViewInstance();
  }
  [[nodiscard]] bool isAdExpanded() const { return presentation_.isAdExpanded(); }

  // The controller that the view stands in, the root one of its window (or of the application's),
  // and that one's view; null when there is none.
  [[nodiscard]] ViewController* currentViewController() const override {
    return nearestController();
  }
  [[nodiscard]] ViewController* getRootViewController() const {
    return presentation_.getRootViewController();
  }
  [[nodiscard]] std::shared_ptr<View> resizeViewSuperview() const;

  // WebViewAgentHost
  void handleInitMRAIDAdWithWebView(const PageRef& webView,
                                    const std::shared_ptr<XMRAIDEventEmitter>& emitter) override;
  void expandToFrame(const Rect& frame, bool isCustomClose, bool isOrientationAllowed,
                     const PageRef& webView) override;
  void collapseToFrame(const Rect& frame) override;
  void resizeAd(const std::optional<XMRAIDResizeProperties>& properties,
                const PageRef& webView) override;
  void setExpandPropertiesWithDict(const XMRAIDExpandProperties& properties) override;
  void setOrientationPropertiesWith(const XMRAIDOrientationProperties& properties,
                                    const PageRef& webView) override;
  void updateCurrentPositionOfWebView(const PageRef& webView) override;
  void webViewLeavesScreen(const PageRef& webView) override {
    presentation_.webViewLeavesScreen(webView);
  }

  // View
  void didAppearOnScreen() override;

  // AdManagerView
  void setEnterForegroundNotification() override { loader_.setEnterForegroundNotification(); }
  void setOrientationNotification() override { loader_.setOrientationNotification(); }
  [[nodiscard]] View& sceneView() override { return *this; }
  void dismissVastVideoView() override;
  void dismissVastVideoViewOnMemoryWarning() override;

 protected:
  void willMoveToSuperview(View* newSuperview) override;
  void layoutSubviews() override;

 private:
  // The arguments of the last load, for every later one.
  struct RequestParameters {
    std::string domainName;
    std::string pageName;
    std::string adPosition;
    std::string keywords;
    std::string queryString;
  };

  explicit XAdView(const Rect& frame);

  void makeObservers();
  void addVideoEvents(XAdManagerDelegate& events);
  void makeManager();
  void showBackgroundImage();
  [[nodiscard]] bool showsRenderer() const;
  // The controller that shows the view on the whole screen; null for a banner.
  [[nodiscard]] InterstitialController* interstitialController() const;

  // What the ad manager reports.
  void adManagerDidLoad();
  void adManagerDidReceiveEmptyAd();
  void adManagerDidFailWithError(const std::optional<Error>& error);
  [[nodiscard]] bool webViewDidFinishRender(WebView& webView);
  void openCustomURL(const Url& url);

  // AdViewLoader::Host
  [[nodiscard]] RefreshFacts refreshFacts() const override;
  [[nodiscard]] bool isExpandedOrResized() const override;
  [[nodiscard]] std::shared_ptr<void> hold() override { return weak_from_this().lock(); }
  void requestAd() override;
  void reload() override;
  void didReceiveMemoryWarning() override;
  void didLockScreen() override;
  void orientatioDidChange() override { presentation_.orientationDidChange(); }
  void willLoad() override;

  // MraidPresentation::Host
  [[nodiscard]] const Rect& defaultFrame() const override { return defaultFrame_; }
  [[nodiscard]] bool isDeviceLocked() const override { return loader_.isDeviceLocked(); }
  void adDidExpand() override;
  void adDidCollapse() override;
  void interstitialAdDidClose() override;
  void orientationPropertiesDidChange(const XMRAIDOrientationProperties& properties) override;

  // AdViewMediation::Host
  [[nodiscard]] std::shared_ptr<MediatedView> mediatedView() override;
  [[nodiscard]] std::optional<MediationType> mediationType() const override;
  [[nodiscard]] bool isRequiredDelegateImplementedByPublisher() const override;
  [[nodiscard]] std::shared_ptr<XAdSlotConfiguration> mediationSettings() const override {
    return slotConfiguration_;
  }
  [[nodiscard]] ViewController* mediationRootController() override;
  void mediatedAdDidLoad() override;
  void mediatedAdDidFail(const Error& error) override;
  void mediationWasRefused(const Error& error) override;
  void mediatedAdWasClicked() override;
  void mediatedAdWillPresent() override;
  void mediatedAdDidClose() override;
  void mediatedAdWillLeaveApplication() override;

  // ClickActionsView
  [[nodiscard]] MRAIDState state() const override { return presentation_.state(); }
  [[nodiscard]] Rect adFrame() const override { return frame(); }
  [[nodiscard]] ViewController* windowRootViewController() override;
  [[nodiscard]] ViewController* expandedViewController() override {
    return presentation_.expandedViewController().get();
  }
  void presentExpandView() override { presentation_.presentModalView(presentation_.expandView()); }
  void setAdExpanded(bool expanded) override { presentation_.setAdExpanded(expanded); }
  void appBrowserClosed() override;
  [[nodiscard]] bool shouldHandleClickToAction(ClickToAction action,
                                               const ClickToActionParameters& parameters) override;
  void willOpenInInAppBrowser() override;
  void willLeaveApplication() override;
  void reportErrorMessage(std::string_view message, std::string_view action) override;

  std::shared_ptr<XAdSlotConfiguration> slotConfiguration_;
  MobileAdTypes adType_ = MobileAdTypes::banner;
  MobileAdSubTypes adSubType_ = MobileAdSubTypes::unknown;
  std::optional<Color> userColor_;  // the background that the host had set
  Rect defaultFrame_;
  PlacementType placementType_ = PlacementType::inlined;
  std::shared_ptr<MoviePlayer> moviePlayerInstance_;
  RequestParameters parameters_;
  bool mediationAdServed_ = false;
  bool calendarReExpand_ = false;
  bool mediatedAdDidFailToLoad_ = false;  // stops further mediation and the ordinary failure path
  AdViewLoader loader_{*this};
  AdViewMediation mediation_{*this};
  const std::shared_ptr<ClickActions> clickActions_ =
      ClickActions::create(Runtime::current().environment(), *this);
  MraidPresentation presentation_{*this};
  std::shared_ptr<XAdManager> adManager_;
  std::shared_ptr<const XAdManagerDelegate> managerEvents_;
};

}  // namespace tavo
