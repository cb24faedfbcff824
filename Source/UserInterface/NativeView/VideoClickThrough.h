#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "Configuration/XAdSlotConfiguration.h"
#include "Services/HttpClient.h"
#include "Services/RunLoop.h"
#include "UserInterface/NativeView/VideoClickPresenter.h"

namespace tavo {

// Follows a click on a video: out of the application, to the store, or into the in-app browser.
// Main thread; dropping it forgets a click that is still being looked up.
class VideoClickThrough : public std::enable_shared_from_this<VideoClickThrough> {
 public:
  struct Events {
    std::function<void()> willLeaveApplication{};
    std::function<void()> willOpenInAppBrowser{};
  };

  explicit VideoClickThrough(Events events) : events_{std::move(events)} {}

  // An empty URL opens nothing. Without a presenter the page is opened by the system.
  void open(const Url& url, const XAdSlotConfiguration* slot,
            std::weak_ptr<VideoClickPresenter> presenter);

  [[nodiscard]] bool isBrowserOpen() const { return browserOpen_; }
  // The browser is closed; returns whether it was open.
  bool closed() { return std::exchange(browserOpen_, false); }
  void dismissBrowser();

 private:
  void leaveApplication(const Url& url);
  void resolve(const Url& url);
  void resolved(const Url& url, const HttpResult& result);
  void presentBrowser(const Url& url);

  Events events_;
  std::weak_ptr<VideoClickPresenter> presenter_;
  Timer store_;
  int click_ = 0;  // counts clicks, so that a late answer to a former one is dropped
  bool browserOpen_ = false;
};

}  // namespace tavo
