#pragma once

#include "AdController/AdGenerator/WebViewAgentHost.h"
#include "ClickThrough/ClickThroughHost.h"

namespace tavo {

// What an ad manager needs of the view that it works for, renderers' needs included. Main thread;
// managers and renderers hold it weakly.
class AdManagerView : public WebViewAgentHost, public ClickThroughHost {
 public:
  // Of both: one operation.
  [[nodiscard]] std::shared_ptr<XAdSlotConfiguration> slotConfiguration() const override = 0;
  void openUrlInBrowser(const Url& url) override = 0;

  [[nodiscard]] virtual MobileAdTypes mobileAdTypes() const = 0;
  virtual void setMobileAdSubTypes(MobileAdSubTypes subType) = 0;

  // Subscribe the view to what the shown ad has to follow; harmless when repeated.
  virtual void setEnterForegroundNotification() = 0;
  virtual void setOrientationNotification() = 0;

  // A full-screen video is over: it and whatever shows it go.
  virtual void dismissVastVideoView() = 0;
  virtual void dismissVastVideoViewOnMemoryWarning() = 0;
};

}  // namespace tavo
