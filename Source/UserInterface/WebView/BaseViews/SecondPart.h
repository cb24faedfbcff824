#pragma once

#include <memory>
#include <optional>
#include <string>

#include "AdController/AdGenerator/WebViewAgentDelegate.h"
#include "AdController/AdGenerator/WebViewAgentHost.h"
#include "AdController/AdGenerator/XWebViewAgent.h"
#include "Runtime/Environment.h"

namespace tavo {

// The second page of an ad in two parts: a page in a view of its own with its own bridge, confined,
// counted and watched like the first. It fills a view that its maker has put on the screen. What it
// asks of the ad's state goes to the maker, every other wish to the ad itself. Main thread only.
class SecondPart : public WebViewAgentHost {
 public:
  // Who made it, and ends it. Told in a turn of the page's own; the part lives through it.
  class Owner {
   public:
    virtual ~Owner() = default;
    virtual void secondPartIsReady() = 0;  // it waits to be told its place
    virtual void secondPartIsShown() = 0;
    virtual void secondPartCloses() = 0;
    virtual void secondPartFailed(const Error& error) = 0;
    virtual void secondPartUsesCustomClose(bool isCustomClose) = 0;
    virtual void secondPartTurns(const XMRAIDOrientationProperties& properties) = 0;
    // An address of the host's own scheme.
    virtual void secondPartOpens(const Url& url) = 0;
  };

  // `ad` and `owner` belong to the ad view, which `ad` holds; `screen` is where the page goes.
  SecondPart(const std::shared_ptr<Environment>& environment, WebViewAgentHost& ad, Owner& owner,
             std::shared_ptr<View> screen);
  ~SecondPart() override;
  SecondPart(const SecondPart&) = delete;
  SecondPart& operator=(const SecondPart&) = delete;

  // `self` holds the ad view, and this with it.
  void load(const Url& url, std::weak_ptr<WebViewAgentHost> self);
  // None of its wishes is followed any more, and it leaves the screen; the page lives on with the
  // part until the part is dropped.
  void leave();

  // Nothing before the page's script has asked.
  void tellPlace(const MraidPlace& place);
  void reportError(std::string_view message, std::string_view action);
  [[nodiscard]] const PageRef& page() const { return agent_->webView(); }

  // WebViewAgentHost
  [[nodiscard]] std::shared_ptr<void> hold() override { return isOver_ ? nullptr : ad_.hold(); }
  [[nodiscard]] View& sceneView() override { return *screen_; }
  [[nodiscard]] PlacementType placementType() const override { return placement_; }
  [[nodiscard]] std::shared_ptr<XAdSlotConfiguration> slotConfiguration() const override;
  [[nodiscard]] MobileAdSubTypes mobileAdSubTypes() const override;
  [[nodiscard]] bool followsStandards() const override { return true; }
  [[nodiscard]] std::shared_ptr<PictureSaver> makePictureManager(
      PictureSaver::Failed failed) override;
  void handleInitMRAIDAdWithWebView(const PageRef& webView,
                                    const std::shared_ptr<XMRAIDEventEmitter>& emitter) override;
  bool expandToFrame(const Rect& frame, bool isCustomClose, bool isOrientationAllowed,
                     const PageRef& webView) override;
  void expandToPage(const Url& page, bool isCustomClose, const PageRef& webView) override;
  void collapseToFrame(const Rect& frame) override;
  void resizeAd(const std::optional<XMRAIDResizeProperties>& properties,
                const PageRef& webView) override;
  void setExpandPropertiesWithDict(const XMRAIDExpandProperties& properties) override;
  void setOrientationPropertiesWith(const XMRAIDOrientationProperties& properties,
                                    const PageRef& webView) override;
  void updateCurrentPositionOfWebView(const PageRef& webView) override;
  void openUrlInBrowser(const Url& url) override;
  void openDiallerWithUrl(const Url& url) override;
  void sendSMSWithUrl(const Url& url) override;
  void sendEmailWithUrl(const Url& url) override;
  void makeFaceTimeCallWithUrl(const Url& url) override;
  void createCalenderEvent(const std::string& event) override;
  void handlePlayVideoWithURL(const Url& url) override;
  void webViewJoinsScreen(const PageRef& /*webView*/) override {}
  void webViewLeavesScreen(const PageRef& webView) override;

 private:
  void shown();
  void failed(const Error& error);

  WebViewAgentHost& ad_;
  Owner& owner_;
  std::shared_ptr<View> screen_;
  const PlacementType placement_;
  std::shared_ptr<const WebViewAgentDelegate> events_;
  std::shared_ptr<XWebViewAgent> agent_;
  std::optional<MraidPlace> told_;
  bool isReady_ = false;
  bool isOver_ = false;
};

}  // namespace tavo
