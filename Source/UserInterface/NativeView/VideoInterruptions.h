#pragma once

#include <functional>
#include <memory>

#include "Runtime/Environment.h"
#include "UserInterface/NativeView/ScreenLockWatch.h"

namespace tavo {

// Listens, while a video ad plays, for what may end or disturb it from outside. Main thread only.
class VideoInterruptions {
 public:
  struct Events {
    std::function<void()> connectionLost{};
    std::function<void()> memoryLow{};
    std::function<void()> turned{};  // the device, or the interstitial on it
    ScreenLockWatch::Events lock{};
  };

  VideoInterruptions(const std::shared_ptr<Environment>& environment, Events events);

  // `orientation`: the name of the notification that the device, or the interstitial, has turned.
  void start(std::string_view orientation);
  // Of a locked screen, the user's return is still heard.
  void stop();

  [[nodiscard]] ScreenLockWatch& lock() { return lock_; }

 private:
  void internetAccessChanged(const Notification& notification);

  std::shared_ptr<Environment> environment_;
  Events events_;
  ScreenLockWatch lock_;
  Subscription internetAccess_;
  Subscription memoryWarning_;
  Subscription orientation_;
};

}  // namespace tavo
