#pragma once

#include <functional>
#include <memory>
#include <utility>

#include <tavo/Url.h>
#include <tavo/XAdSlotConfiguration.h>

#include "ClickThrough/ClickResolution.h"
#include "ClickThrough/StorePresenter.h"
#include "Runtime/Environment.h"
#include "UserInterface/WebView/InAppBrowser/XInAppBrowser.h"

namespace tavo {

// Follows a click on a video: out of the application, into the in-app browser, or, where a store's
// page is at the end of the way, to the store's sheet. Main thread only; dropping it forgets a
// click that is still being looked up, and leaves an open page to the user.
class VideoClickThrough : public std::enable_shared_from_this<VideoClickThrough> {
 public:
  struct Events {
    // Who can present something above the video now; null: nobody.
    std::function<ViewController*()> presenter{};
    // The same for the store's sheet, which comes after a moment.
    std::function<ViewController*()> storePresenter{};
    std::function<void()> willLeaveApplication{};
    std::function<void()> willOpenInAppBrowser{};
    // The user has closed the page, or is done with the store's sheet, which is gone by then.
    std::function<void()> browserClosed{};
    std::function<void()> storeFinished{};
  };

  VideoClickThrough(std::shared_ptr<Environment> environment, Events events)
      : environment_{std::move(environment)},
        events_{std::move(events)},
        resolution_{environment_} {}

  // An empty URL opens nothing.
  void open(const Url& url, const XAdSlotConfiguration* slot);

  // Shows the page in the in-app browser, above everything; nothing where there is no room for it.
  void presentBrowser(const Url& url);

  // Takes an open page away without a report, and forgets a click whose page is still to come;
  // returns whether a page was open.
  bool closeBrowser();
  // Forgets that click and leaves an open page to the user.
  void forget();

 private:
  void leaveApplication(const Url& url);
  void resolve(const Url& url);
  void resolved(const Url& url, const HttpResult& result);
  [[nodiscard]] bool canShow(const Url& url) const;
  [[nodiscard]] std::shared_ptr<XInAppBrowser> makeBrowser();
  void browserClosed() { events_.browserClosed(); }
  void willLeaveApplication() { events_.willLeaveApplication(); }
  [[nodiscard]] StorePresenter& storeSheet();
  void storeSheetFinished();

  const std::shared_ptr<Environment> environment_;
  const Events events_;
  std::shared_ptr<XInAppBrowser> browser_;  // while it is open
  std::shared_ptr<const XInAppBrowserDelegate> browserEvents_;
  ClickResolution resolution_;
  std::shared_ptr<StorePresenter> store_;  // from the first click that leads to the store
};

}  // namespace tavo
