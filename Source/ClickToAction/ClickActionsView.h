#pragma once

#include <memory>
#include <string_view>

#include <tavo/ClickToAction.h>
#include <tavo/MRAIDState.h>
#include <tavo/MobileAdTypes.h>
#include <tavo/ViewController.h>
#include <tavo/XAdSlotConfiguration.h>

#include "AdController/AdGenerator/AdViewIdentity.h"

namespace tavo {

// What click actions need of the ad view that they belong to: what it shows, who can present
// something above it, and whom to tell. Main thread only.
class ClickActionsView : public virtual AdViewIdentity {
 public:
  [[nodiscard]] virtual MRAIDState state() const = 0;
  [[nodiscard]] virtual MobileAdTypes mobileAdTypes() const = 0;
  [[nodiscard]] virtual MobileAdSubTypes mobileAdSubTypes() const = 0;
  [[nodiscard]] virtual std::shared_ptr<XAdSlotConfiguration> slotConfiguration() const = 0;
  [[nodiscard]] virtual Rect adFrame() const = 0;

  // Controllers that can present; null where there is none. They stay alive for the turn.
  [[nodiscard]] virtual ViewController* currentViewController() const = 0;
  [[nodiscard]] virtual ViewController* windowRootViewController() = 0;
  // Made when absent.
  [[nodiscard]] virtual ViewController* expandedViewController() = 0;

  // Whether the ad was expanded when the event editor covered it, and is to be so after it.
  [[nodiscard]] virtual bool calendarReExpand() const = 0;
  virtual void setCalendarReExpand(bool reExpand) = 0;
  virtual void presentExpandView() = 0;

  // The browser is closed: the ad is back on the screen.
  virtual void appBrowserClosed() = 0;

  // The host's word on an action; true when it has none.
  [[nodiscard]] virtual bool shouldHandleClickToAction(
      ClickToAction action, const ClickToActionParameters& parameters) = 0;
  virtual void willOpenInInAppBrowser() = 0;
  virtual void willLeaveApplication() = 0;
  // To the creative.
  virtual void reportErrorMessage(std::string_view message, std::string_view action) = 0;
};

// Who presents a system's sheet for the ad as it stands now; null: nobody.
[[nodiscard]] ViewController* sheetPresenter(ClickActionsView& view);

}  // namespace tavo
