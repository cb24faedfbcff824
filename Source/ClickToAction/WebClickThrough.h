#pragma once

#include <cstdint>
#include <memory>

#include <tavo/Url.h>

#include "ClickToAction/ClickActionsView.h"
#include "Services/HttpClient.h"
#include "Services/RunLoop.h"
#include "UserInterface/WebView/InAppBrowser/XInAppBrowser.h"

namespace tavo {

// Opens the page behind a click: outside the application, in the in-app browser, or, where a
// store's page is at the end of the way, in the store's sheet. Belongs to one ad view; main thread
// only.
class WebClickThrough : public std::enable_shared_from_this<WebClickThrough> {
 public:
  [[nodiscard]] static std::shared_ptr<WebClickThrough> create(ClickActionsView& view);
  ~WebClickThrough();

  // Where the way leads is found out first, without holding anything up; a second click meanwhile
  // takes the place of the first.
  void openUrlInBrowser(const Url& url);

  [[nodiscard]] bool appBrowserOpen() const;
  [[nodiscard]] const std::shared_ptr<XInAppBrowser>& appBrowser() const { return appBrowser_; }

 private:
  explicit WebClickThrough(ClickActionsView& view) : view_{view} {}

  void makeBrowser();
  void openOutside(const Url& url);
  void resolve(const Url& url);
  void resolved(const HttpResult& result, const Url& url);
  void showStoreSheet(std::int64_t identifier);
  void productViewControllerDidFinish();
  void presentInAppBrowserWithViewController(ViewController* controller, const Url& url);
  [[nodiscard]] ViewController* presenter();
  [[nodiscard]] ViewController* browserPresenter();
  void browserClosed();

  ClickActionsView& view_;
  std::shared_ptr<XInAppBrowser> appBrowser_;
  std::shared_ptr<const XInAppBrowserDelegate> browserEvents_;
  std::shared_ptr<HttpClient::Exchange> resolving_;
  int click_ = 0;  // so that a late answer to a replaced click is dropped
  Timer storeDelay_;
  std::weak_ptr<ViewController> storeSheet_;
};

}  // namespace tavo
