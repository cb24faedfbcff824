#pragma once

#include <memory>
#include <optional>
#include <string>

#include "AdManager/AdManagerView.h"
#include "UserInterface/WebView/BaseViews/AdViewClicks.h"
#include "UserInterface/WebView/BaseViews/AdViewLoader.h"
#include "UserInterface/WebView/BaseViews/AdViewPart.h"
#include "UserInterface/WebView/BaseViews/MraidPresentation.h"
#include "XMediation/MediatedView.h"

namespace tavo {

// The ad view as those see it who fill it: the ad manager, its renderers with the pages in them,
// and the mediated network. Leads what they ask for to the part that answers it. Main thread only.
class AdViewStage : public AdViewPart, public AdManagerView, public MediatedView {
 public:
  AdViewStage(std::shared_ptr<Environment> environment, XAdView& view, AdViewLoader& loader,
              MraidPresentation& presentation, AdViewClicks& clicks);

  // ClickThroughHost, and the actions of a creative
  [[nodiscard]] std::shared_ptr<XAdSlotConfiguration> slotConfiguration() const override {
    return view().slotConfiguration();
  }
  void openUrlInBrowser(const Url& url) override { actions().openUrlInBrowser(url); }
  void openDiallerWithUrl(const Url& url) override { actions().openDiallerWithUrl(url); }
  void sendSMSWithUrl(const Url& url) override { actions().sendSMSWithUrl(url); }
  void sendEmailWithUrl(const Url& url) override { actions().sendEmailWithUrl(url); }
  void makeFaceTimeCallWithUrl(const Url& url) override { actions().makeFaceTimeCallWithUrl(url); }
  [[nodiscard]] std::shared_ptr<PictureSaver> makePictureManager(
      PictureSaver::Failed failed) override;
  void createCalenderEvent(const std::string& event) override {
    actions().createCalendarEvent(event);
  }
  void handlePlayVideoWithURL(const Url& url) override { actions().handlePlayVideoWithURL(url); }

  // WebViewAgentHost
  void handleInitMRAIDAdWithWebView(const PageRef& webView,
                                    const std::shared_ptr<XMRAIDEventEmitter>& emitter) override;
  bool expandToFrame(const Rect& frame, bool isCustomClose, bool isOrientationAllowed,
                     const PageRef& webView) override;
  void collapseToFrame(const Rect& frame) override;
  void resizeAd(const std::optional<XMRAIDResizeProperties>& properties,
                const PageRef& webView) override;
  void setExpandPropertiesWithDict(const XMRAIDExpandProperties& properties) override;
  void setOrientationPropertiesWith(const XMRAIDOrientationProperties& properties,
                                    const PageRef& webView) override;
  void updateCurrentPositionOfWebView(const PageRef& webView) override;
  void webViewJoinsScreen(const PageRef& webView) override {
    presentation_.webViewJoinsScreen(webView);
  }
  void webViewLeavesScreen(const PageRef& webView) override;

  // AdManagerView
  [[nodiscard]] bool followsStandards() const override;
  void expandToPage(const Url& page, bool isCustomClose, const PageRef& webView) override {
    presentation_.expandToPage(page, isCustomClose, webView, *this);
  }
  [[nodiscard]] MobileAdTypes mobileAdTypes() const override { return view().mobileAdTypes(); }
  [[nodiscard]] MobileAdSubTypes mobileAdSubTypes() const override {
    return view().mobileAdSubTypes();
  }
  void setMobileAdSubTypes(MobileAdSubTypes subType) override {
    view().setMobileAdSubTypes(subType);
  }
  void setEnterForegroundNotification() override { loader_.setEnterForegroundNotification(); }
  void setOrientationNotification() override { loader_.setOrientationNotification(); }
  void dismissVastVideoView() override;
  void dismissVastVideoViewOnMemoryWarning() override;

  // MediatedView
  void setIsMediationAdServed(bool served) override { view().setIsMediationAdServed(served); }

 private:
  [[nodiscard]] ClickActions& actions() { return clicks_.actions(); }

  const std::shared_ptr<Environment> environment_;
  AdViewLoader& loader_;
  MraidPresentation& presentation_;
  AdViewClicks& clicks_;
};

}  // namespace tavo
