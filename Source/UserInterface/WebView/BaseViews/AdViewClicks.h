#pragma once

#include <memory>
#include <string_view>

#include "ClickToAction/ClickActions.h"
#include "UserInterface/WebView/BaseViews/AdViewPart.h"
#include "UserInterface/WebView/BaseViews/MraidPresentation.h"

namespace tavo {

// An ad view's clicks: what they need of the view, and what the host hears of them. Main thread
// only.
class AdViewClicks : public AdViewPart, private ClickActionsView {
 public:
  AdViewClicks(const std::shared_ptr<Environment>& environment, XAdView& view,
               MraidPresentation& presentation);

  // What carries the actions out.
  [[nodiscard]] ClickActions& actions() { return *actions_; }
  [[nodiscard]] bool appBrowserOpen() const { return actions_->appBrowserOpen(); }
  // The ad goes, and with it everything that its clicks have put on the screen.
  void end() { actions_->end(); }

 private:
  [[nodiscard]] MRAIDState state() const override { return presentation_.state(); }
  [[nodiscard]] MobileAdTypes mobileAdTypes() const override { return view().mobileAdTypes(); }
  [[nodiscard]] MobileAdSubTypes mobileAdSubTypes() const override {
    return view().mobileAdSubTypes();
  }
  [[nodiscard]] std::shared_ptr<XAdSlotConfiguration> slotConfiguration() const override {
    return view().slotConfiguration();
  }
  [[nodiscard]] Rect adFrame() const override { return view().frame(); }
  [[nodiscard]] ViewController* currentViewController() const override {
    return view().currentViewController();
  }
  [[nodiscard]] ViewController* windowRootViewController() override;
  [[nodiscard]] ViewController* expandedViewController() override {
    return presentation_.expandedViewController().get();
  }
  [[nodiscard]] bool calendarReExpand() const override { return view().calendarReExpand(); }
  void setCalendarReExpand(bool reExpand) override { view().setCalendarReExpand(reExpand); }
  void presentExpandView() override { presentation_.presentModalView(presentation_.expandView()); }
  void appBrowserClosed() override;
  [[nodiscard]] bool shouldHandleClickToAction(ClickToAction action,
                                               const ClickToActionParameters& parameters) override;
  void willOpenInInAppBrowser() override { tell(&Told::xAdViewWillOpenInInAppBrowser); }
  void willLeaveApplication() override { tell(&Told::xAdViewWillLeaveApplication); }
  void reportErrorMessage(std::string_view message, std::string_view action) override;

  MraidPresentation& presentation_;
  const std::shared_ptr<ClickActions> actions_;
};

}  // namespace tavo
