#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <tavo/ClickToAction.h>
#include <tavo/Color.h>
#include <tavo/Export.h>
#include <tavo/MRAIDState.h>
#include <tavo/MobileAdTypes.h>
#include <tavo/Observer.h>
#include <tavo/PlacementType.h>
#include <tavo/View.h>
#include <tavo/XAdSlotConfiguration.h>
#include <tavo/XAdViewDelegate.h>

namespace tavo {

class AdViewCore;
class XAdManager;
class XMRAIDEventEmitter;
struct XAdViewOnlyForSubClassEyesDelegate;

// A banner slot on the host's screen. The host makes one with `create`, sets its delegate and
// settings, puts it into its layout and calls `loadWithDomainName`:
//
//   banner->delegate.set(events);
//   banner->slotConfiguration()->bannerRefreshInterval = 60;
//   root->view()->addSubview(banner);
//   banner->loadWithDomainName("ads.example.com/delivery", "news/front", "Top");
//
// The view asks the ad server, draws what came back and refreshes it on a timer while it is
// visible. Each outcome is told to the delegate.
//
// Main thread only, without exception. The host owns the view through the shared pointer and may
// drop it at any time, also inside a report: an operation that runs keeps the view for its own
// length. Leaving the screen or `releaseMemory` takes the ad away, a later load brings a new one.
// Lengths are points, times seconds. Nothing here throws; what fails is reported.
class TAVO_EXPORT XAdView : public View {
 public:
  // Makes a slot in the current runtime, which must be there. `frame` is in points, in the
  // coordinates of the view that it will stand in.
  [[nodiscard]] static std::shared_ptr<XAdView> create(const Rect& frame);
  // Takes the ad and everything that it had opened off the screen; reports nothing.
  ~XAdView() override;

  // The version of this library: "Ver 2.2.2".
  [[nodiscard]] static std::string corvaneTAVOSDKVersion();

  // Hears every outcome. Held weakly: the host keeps the table as long as it wants to hear.
  Observer<XAdViewDelegate> delegate;
  // The same for the SDK's own full-screen controller, which sets it; a host leaves it alone.
  Observer<XAdViewOnlyForSubClassEyesDelegate> pDelegate;

  // Where the ad stands: among the host's content, which is the default, or above all of it. Set it
  // before the load.
  [[nodiscard]] PlacementType placementType() const { return placementType_; }
  void setPlacementType(PlacementType placement) { placementType_ = placement; }

  // The slot's settings, shared with the host, which may change them at any time: each is read when
  // it is used. Never null, and made with its defaults where the host sets none; setting null
  // changes nothing. Another record counts from the next load on.
  [[nodiscard]] const std::shared_ptr<XAdSlotConfiguration>& slotConfiguration() const {
    return slotConfiguration_;
  }
  void setSlotConfiguration(std::shared_ptr<XAdSlotConfiguration> configuration);

  // What the current ad is, as the ad manager found; the sub-type is unknown before the first
  // answer. A full-screen slot is made one by setting its type before the load. The sub-type is the
  // SDK's to set.
  [[nodiscard]] MobileAdTypes mobileAdTypes() const { return adType_; }
  void setMobileAdTypes(MobileAdTypes type) { adType_ = type; }
  [[nodiscard]] MobileAdSubTypes mobileAdSubTypes() const { return adSubType_; }
  void setMobileAdSubTypes(MobileAdSubTypes subType) { adSubType_ = subType; }

  // Lends the host's player to the slot, which then serves a pre-roll: the ad plays in it and hands
  // it back with the content that it had. Set it before the load; null ends the loan.
  void setMoviePlayerInstance(std::shared_ptr<MoviePlayer> player);
  [[nodiscard]] const std::shared_ptr<MoviePlayer>& moviePlayerInstance() const {
    return moviePlayerInstance_;
  }

  // Asks the server at `domainName` (host and delivery path, without scheme) for an ad of page
  // `pageName` at position `adPosition`; keywords and query string are "key=value" pairs joined by
  // "&". The five are remembered for every refresh. The answer to an earlier load is not waited for
  // any more. Outcomes reach the delegate in later turns of the loop, in the order in which they
  // happen, that of a device without a network too: never inside this call.
  void loadWithDomainName(const std::string& domainName, const std::string& pageName,
                          const std::string& adPosition, const std::string& keywords = {},
                          const std::string& queryString = {});

  // Starts or stops the refresh timer, by the settings and by what the view shows. Called by the
  // SDK after every render and failure; a host calls it after it has changed what decides. Where
  // the timer had been stopped it asks for an ad at once.
  void refreshAd();
  [[nodiscard]] bool isRefreshTimerRunning() const;
  // Whether the answer to a request is being waited for. Not so after a load that was not carried
  // out: of an ad that is expanded, and, once the refresh timer was started, of a view that nobody
  // sees.
  [[nodiscard]] bool isLoading() const;

  // Takes the ad away, closes what it had opened, and ends the timer and all requests. May be
  // called any number of times, also from inside a delegate operation.
  void releaseMemory();

  // The manager of the current load; null before the first one and after `releaseMemory`.
  [[nodiscard]] std::shared_ptr<XAdManager> adManager() const;

  // Opens the page behind a click, inside or outside the application as the settings say.
  void openUrlInBrowser(const Url& url);
  // Whether that page stands above the application.
  [[nodiscard]] bool appBrowserOpen() const;

  // What else a click may ask for. The host is asked first, by
  // `xAdViewShouldHandleClickToAction`; what the system cannot do is left undone without a word.
  void openDiallerWithUrl(const Url& url);
  void sendSMSWithUrl(const Url& url);
  void sendEmailWithUrl(const Url& url);
  void makeFaceTimeCallWithUrl(const Url& url);
  void openAppStoreWithURL(const Url& url);
  // `event` is the creative's description of it, the text of a script object.
  void createCalendarEvent(const std::string& event);
  // Plays a video over the whole window until the user closes it; the host is not asked.
  void handlePlayVideoWithURL(const Url& url);
  // An action without the question, for whoever has asked already.
  void performClickToAction(ClickToAction actionType, const ClickToActionParameters& parameters);
  // Asks the user for access to the calendar ahead of the first event, where nothing is decided.
  void checkCalendarAuthorizationStatus();
  // Whether the ad takes the full screen again when the user leaves the calendar; set by the SDK
  // for an expanded ad.
  [[nodiscard]] bool calendarReExpand() const { return calendarReExpand_; }
  void setCalendarReExpand(bool reExpand) { calendarReExpand_ = reExpand; }

  // Whether an external network fills the slot; set by the SDK.
  [[nodiscard]] bool isMediationAdServed() const { return mediationAdServed_; }
  void setIsMediationAdServed(bool served) { mediationAdServed_ = served; }

  // For the host's own use: whether it expects a full-screen video.
  bool isVastInterestitial = false;
  // The background that the host had set before the SDK put its picture of an empty slot there;
  // none: no background. It is put back when an ad has loaded.
  std::optional<Color> userColor;

  // Leads an expanded ad back to its place, as its close button does.
  void closeButtonPressed();
  // With true the creative draws the close button of the expanded ad; its place can be hit all the
  // same.
  void setCustomCloseButton(bool isCustomClose);
  // Gives the close button another picture: the name of one among the host's or the library's
  // resources, "png" unless it has an ending.
  void setCloseButtonImageWithImageNamed(std::string_view name);
  // Takes every button off the view itself, whoever put it there.
  void removeCloseButtonFromSuperView();

  // What a resized ad's close control once did; it has no effect in any state.
  void closeControlEvent() {}

  // Where a collapsed ad belongs: the view's frame when it was made or, in a widget, its place in
  // the window.
  [[nodiscard]] const Rect& defaultFrame() const { return defaultFrame_; }
  // Whether the status bar was hidden already when the ad was expanded, and stays so after it.
  [[nodiscard]] bool statusBarHidden() const;
  [[nodiscard]] bool isAdExpanded() const;
  // Tells the creative about its place as it is in `state`; nothing while there is none.
  void updateLayOutForNewState(MRAIDState state);
  // What speaks to the creative; null after `releaseMemory`, until the next creative is there.
  [[nodiscard]] std::shared_ptr<XMRAIDEventEmitter> eventEmitter() const;
  // The page of the current creative; null when there is none.
  [[nodiscard]] std::shared_ptr<WebView> webViewInstance() const;

  // The controller that the view stands in, the root one of its window (or of the application's),
  // and that one's view; null when there is none.
  [[nodiscard]] ViewController* currentViewController() const { return nearestController(); }
  [[nodiscard]] ViewController* getRootViewController() const;
  [[nodiscard]] std::shared_ptr<View> resizeViewSuperview() const;

  // Called by the platform, whose widget the view stands in.
  void didAppearOnScreen() override;
  void didDisappearFromScreen() override;
  void didMoveOnScreen() override;
  void shownPartDidChange(const Rect& part) override;
  void coverDidChange() override;

 protected:
  explicit XAdView(const Rect& frame);

  void willMoveToSuperview(View* newSuperview) override;
  void layoutSubviews() override;

 private:
  std::shared_ptr<XAdSlotConfiguration> slotConfiguration_;
  MobileAdTypes adType_ = MobileAdTypes::banner;
  MobileAdSubTypes adSubType_ = MobileAdSubTypes::unknown;
  PlacementType placementType_ = PlacementType::inlined;
  Rect defaultFrame_;
  std::shared_ptr<MoviePlayer> moviePlayerInstance_;
  bool mediationAdServed_ = false;
  bool calendarReExpand_ = false;
  std::unique_ptr<AdViewCore> core_;
};

}  // namespace tavo
