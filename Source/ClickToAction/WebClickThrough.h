#pragma once

#include <memory>

#include <tavo/Url.h>

#include "ClickThrough/ClickResolution.h"
#include "ClickThrough/OpenSheets.h"
#include "ClickThrough/StorePresenter.h"
#include "ClickToAction/ClickActionsView.h"
#include "Runtime/Environment.h"
#include "UserInterface/WebView/InAppBrowser/XInAppBrowser.h"

namespace tavo {

// Opens the page behind a click: outside the application, in the in-app browser, or, where a
// store's page is at the end of the way, in the store's sheet. Belongs to one ad view; main thread
// only.
class WebClickThrough : public std::enable_shared_from_this<WebClickThrough> {
 public:
  [[nodiscard]] static std::shared_ptr<WebClickThrough> create(
      std::shared_ptr<Environment> environment, ClickActionsView& view);

  // Where the way leads is found out first, without holding anything up; a second click meanwhile
  // takes the place of the first.
  void openUrlInBrowser(const Url& url);

  // Takes the page or the sheet away and forgets a click whose way is still looked up.
  void end();

  [[nodiscard]] bool appBrowserOpen() const;
  [[nodiscard]] const std::shared_ptr<XInAppBrowser>& appBrowser() const { return appBrowser_; }

 private:
  WebClickThrough(std::shared_ptr<Environment> environment, ClickActionsView& view);

  void makeBrowser();
  void willLeaveApplication();
  void openOutside(const Url& url);
  void resolved(const HttpResult& result, const Url& url);
  void productViewControllerDidFinish();
  void presentInAppBrowserWithViewController(ViewController* controller, const Url& url);
  [[nodiscard]] ViewController* presenter();
  [[nodiscard]] ViewController* storePresenter();
  [[nodiscard]] ViewController* browserPresenter();
  void browserClosed();

  std::shared_ptr<Environment> environment_;
  ClickActionsView& view_;
  std::shared_ptr<XInAppBrowser> appBrowser_;
  std::shared_ptr<const XInAppBrowserDelegate> browserEvents_;
  OpenSheets sheets_;
  ClickResolution resolution_;
  std::shared_ptr<StorePresenter> store_;
};

}  // namespace tavo
