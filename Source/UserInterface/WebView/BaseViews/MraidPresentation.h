#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include <tavo/Button.h>

#include "AdController/AdGenerator/AdViewIdentity.h"
#include "AdController/AdGenerator/XMRAIDEventEmitter.h"
#include "Runtime/Relay.h"
#include "Scene/LayoutView.h"
#include "Services/RunLoop.h"
#include "UserInterface/ActivityIndicator/ActivityIndicator.h"
#include "UserInterface/WebView/BaseViews/AdPlace.h"
#include "UserInterface/WebView/BaseViews/ResizeGeometry.h"
#include "UserInterface/WebView/BaseViews/SecondPart.h"
#include "UserInterface/WebView/BaseViews/XExpandedViewController.h"

namespace tavo {

class Environment;

// An ad view's side of what a creative asks for: full screen, another size, back again, and what
// the creative is told about it. Belongs to one view, which is held by the caller of each
// operation; main thread only.
class MraidPresentation : private SecondPart::Owner {
 public:
  using PageRef = std::shared_ptr<WebView>;

  // What the presentation needs of its view.
  class Host : public virtual AdViewIdentity {
   public:
    // The view's place when it was made.
    [[nodiscard]] virtual const Rect& defaultFrame() const = 0;
    [[nodiscard]] virtual bool isDeviceLocked() const = 0;
    [[nodiscard]] virtual bool appBrowserOpen() const = 0;
    // Reports. The receiver may release the view's memory in return.
    virtual void adDidExpand() = 0;
    virtual void adDidCollapse() = 0;
    virtual void interstitialAdDidClose() = 0;
    virtual void orientationPropertiesDidChange(const XMRAIDOrientationProperties& properties) = 0;
    virtual void customUrlOpened(const Url& url) = 0;
  };

  MraidPresentation(std::shared_ptr<Environment> environment, Host& host);
  ~MraidPresentation() override { release(); }
  MraidPresentation(const MraidPresentation&) = delete;
  MraidPresentation& operator=(const MraidPresentation&) = delete;

  // The last state told to the creative; loading where there is none.
  [[nodiscard]] MRAIDState state() const;
  // Whether it was so already before the expanded ad was presented.
  [[nodiscard]] bool statusBarHidden() const { return flags_.statusBarHidden; }
  [[nodiscard]] bool isAdExpanded() const { return flags_.adExpanded; }
  // Null after a release, until the next creative has said "init".
  [[nodiscard]] const std::shared_ptr<XMRAIDEventEmitter>& eventEmitter() const { return emitter_; }
  [[nodiscard]] PageRef webViewInstance() const { return webView_.lock(); }

  void handleInitMRAIDAd(const PageRef& webView, std::shared_ptr<XMRAIDEventEmitter> emitter);
  // False: something else covers the screen, and the creative has heard so.
  bool expandToFrame(bool isCustomClose, const PageRef& webView);
  // The same to a page of another address, in a view of its own. `ad` belongs to the same view.
  void expandToPage(const Url& url, bool isCustomClose, const PageRef& webView,
                    WebViewAgentHost& ad);
  void collapseToFrame();
  void resizeAd(const std::optional<XMRAIDResizeProperties>& properties, const PageRef& webView);
  void closeButtonPressed();
  void setOrientationPropertiesWith(const XMRAIDOrientationProperties& properties,
                                    const PageRef& webView);
  // What the creative now says about an expansion, which may be under way.
  void expandPropertiesDidChange(const XMRAIDExpandProperties& properties);
  // To the page that stands in front.
  void reportError(std::string_view message, std::string_view action);
  // With true the SDK draws no close button: its place can be hit all the same.
  void setCustomCloseButton(bool isCustomClose);
  void setCloseButtonImageWithImageNamed(std::string_view name);

  // Tells the creative about its place.
  void updateLayOutForNewState(MRAIDState state);
  void orientationDidChange();
  // The view has a new size; the creative hears of it once the layout has settled.
  void placeDidChange();
  // The view has another place in its window: a resized ad follows, or returns to it. The creative
  // hears of it once the view rests.
  void viewDidMove();
  // What a person can see of the ad may have changed; `part` is what the host shows of the view, in
  // its coordinates. Pages that are treated by the standard are told; every page rests while
  // nobody sees it.
  void shownPartDidChange(const Rect& part);
  void exposureDidChange();
  // The page has its place on the screen.
  void webViewJoinsScreen(const PageRef& webView);
  // What a creative is told before the ad is taken from the screen for good.
  void willLeaveScreen();
  // Nobody sees the view any more: a resized ad does not stay behind.
  void viewDidDisappear();

  // Puts the expand view on the whole window, and takes it away.
  void presentModalView(const std::shared_ptr<View>& view);
  void dismissModalView(const std::shared_ptr<View>& view, Animated animated);
  [[nodiscard]] ViewController* getRootViewController() const;

  // Working views, made when absent.
  [[nodiscard]] const std::shared_ptr<XExpandedViewController>& expandedViewController();
  [[nodiscard]] const std::shared_ptr<LayoutView>& expandView();
  [[nodiscard]] const std::shared_ptr<Button>& closeButton();
  [[nodiscard]] const std::shared_ptr<View>& resizeView();
  [[nodiscard]] const std::shared_ptr<Button>& resizeCloseControl();

  // The page is going, with its process or for the next ad: everything that it had opened is
  // closed.
  void webViewLeavesScreen(const PageRef& webView);
  // Takes the expanded ad from the screen without telling anybody.
  void dismissExpanded();
  // Drops everything.
  void release();

 private:
  struct Flags {
    bool adExpanded = false;
    bool statusBarHidden = false;  // before the expanded ad was presented
  };

  // SecondPart::Owner
  void secondPartIsReady() override { tellPlace(state()); }
  void secondPartIsShown() override;
  void secondPartCloses() override { collapseToFrame(); }
  void secondPartFailed(const Error& error) override;
  void secondPartUsesCustomClose(bool isCustomClose) override;
  void secondPartTurns(const XMRAIDOrientationProperties& properties) override;
  void secondPartOpens(const Url& url) override { host_.customUrlOpened(url); }

  [[nodiscard]] bool followsStandards() const { return emitter_ && emitter_->followsStandards(); }
  void tellState(MRAIDState state);
  void tellPlace(MRAIDState state);
  void endSecondPart();
  void hideAd();
  [[nodiscard]] PageRef pageInSlot() const;
  void turnExpanded(const XMRAIDOrientationProperties& properties);
  void adopt(const PageRef& webView) { webView_ = webView; }
  void moveWebView(View& container);
  void stayWithoutScreen();
  void undoResize();
  [[nodiscard]] bool isScreenTaken() const;
  [[nodiscard]] ResizeFacts resizeFacts() const;
  void carryOut(const ResizePlan& plan);
  void resizeAnew();
  void didRotate();
  void fullScreenChanged();
  void scheduleReport();
  void manipulateScreenSize();
  [[nodiscard]] Relay<MraidPresentation> relay();

  [[nodiscard]] Application& application() const;

  const std::shared_ptr<Environment> environment_;
  Host& host_;
  Flags flags_;
  std::optional<XMRAIDResizeProperties> resizeProperties_;  // of the resized ad
  std::shared_ptr<XMRAIDEventEmitter> emitter_;
  std::weak_ptr<WebView> webView_;
  // By the standard.
  AdPlace place_;
  AdPlace placeOfSecond_;
  XMRAIDOrientationProperties orientation_;  // what the first page has asked for last
  std::optional<MraidPlace> told_;           // to the first page
  std::shared_ptr<SecondPart> second_;       // while it is open
  std::shared_ptr<ActivityIndicator> wheel_;
  std::shared_ptr<const XExpandedViewControllerDelegate> controllerEvents_;
  std::shared_ptr<XExpandedViewController> expandedViewController_;
  std::shared_ptr<LayoutView> expandView_;
  std::shared_ptr<View> resizeView_;
  std::shared_ptr<Button> closeButton_;
  std::shared_ptr<Button> resizeCloseControl_;
  Timer report_;
  Timer move_;  // tells a new place, once the view rests there
};

}  // namespace tavo
