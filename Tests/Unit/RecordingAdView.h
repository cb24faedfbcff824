#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "AdController/AdGenerator/MraidStatement.h"
#include "AdManager/AdManagerView.h"

namespace tavo::test {

class RecordingAdView : public View, public AdManagerView {
 public:
  RecordingAdView(const Rect& frame, std::vector<std::string>& lines)
      : View{frame}, lines_{lines} {}

  std::shared_ptr<XAdSlotConfiguration> slotConfiguration() const override { return slot; }
  MobileAdTypes mobileAdTypes() const override { return type; }
  MobileAdSubTypes mobileAdSubTypes() const override { return subType; }
  void setMobileAdSubTypes(MobileAdSubTypes value) override { subType = value; }
  void setEnterForegroundNotification() override {}
  void setOrientationNotification() override {}
  void dismissVastVideoView() override { note("dismissVastVideoView"); }
  void dismissVastVideoViewOnMemoryWarning() override {}
  std::shared_ptr<void> hold() override { return shared_from_this(); }
  View& sceneView() override { return *this; }
  PlacementType placementType() const override { return placement; }
  std::shared_ptr<PictureSaver> makePictureManager(PictureSaver::Failed) override {
    return nullptr;
  }
  void openUrlInBrowser(const Url& url) override { note("openUrlInBrowser " + url.text()); }
  void openDiallerWithUrl(const Url& url) override { note("openDiallerWithUrl " + url.text()); }
  void sendSMSWithUrl(const Url& url) override { note("sendSMSWithUrl " + url.text()); }
  void sendEmailWithUrl(const Url& url) override { note("sendEmailWithUrl " + url.text()); }
  void makeFaceTimeCallWithUrl(const Url& url) override {
    note("makeFaceTimeCallWithUrl " + url.text());
  }
  void createCalenderEvent(const std::string& event) override {
    note("createCalenderEvent " + event);
  }
  void handlePlayVideoWithURL(const Url& url) override {
    note("handlePlayVideoWithURL " + url.text());
  }
  void handleInitMRAIDAdWithWebView(const PageRef& webView,
                                    const std::shared_ptr<XMRAIDEventEmitter>& emitter) override {
    note("handleInitMRAIDAdWithWebView");
    emitter->setMaxSize({320, 480}, webView);
  }
  bool expandToFrame(const Rect& frame, bool isCustomClose, bool isOrientationAllowed,
                     const PageRef&) override {
    note("expandToFrame " + members(frame) + (isCustomClose ? " customClose" : "") +
         (isOrientationAllowed ? " orientation" : ""));
    return expands;
  }
  [[nodiscard]] bool followsStandards() const override { return byStandard; }
  void expandToPage(const Url& page, bool /*isCustomClose*/, const PageRef& /*webView*/) override {
    note("expandToPage " + page.text());
  }
  void collapseToFrame(const Rect& frame) override { note("collapseToFrame " + members(frame)); }
  void resizeAd(const std::optional<XMRAIDResizeProperties>& properties, const PageRef&) override {
    note("resizeAd " + (properties ? properties->description() : "none"));
  }
  void setExpandPropertiesWithDict(const XMRAIDExpandProperties& properties) override {
    note("setExpandPropertiesWithDict " + properties.description());
  }
  void setOrientationPropertiesWith(const XMRAIDOrientationProperties& properties,
                                    const PageRef&) override {
    note("setOrientationPropertiesWith " + properties.description());
  }
  void updateCurrentPositionOfWebView(const PageRef&) override {
    note("updateCurrentPositionOfWebView");
  }
  void webViewJoinsScreen(const PageRef&) override {}
  void webViewLeavesScreen(const PageRef&) override { note("webViewLeavesScreen"); }

  MobileAdTypes type = MobileAdTypes::banner;
  MobileAdSubTypes subType = MobileAdSubTypes::richMediaBanner;
  PlacementType placement = PlacementType::inlined;
  bool expands = true;
  bool byStandard = false;
  std::shared_ptr<XAdSlotConfiguration> slot = std::make_shared<XAdSlotConfiguration>();
  std::function<void()> onCall{};

 private:
  void note(const std::string& line) {
    lines_.push_back(line);
    if (onCall) onCall();
  }

  std::vector<std::string>& lines_;
};

}  // namespace tavo::test
