#pragma once

#include <functional>
#include <memory>

#include "Runtime/Environment.h"
#include "Services/RunLoop.h"

namespace tavo {

// Follows the lock of the screen while a video ad plays: one that stays locked for half a minute
// puts the ad to sleep. Main thread only.
class ScreenLockWatch {
 public:
  struct Events {
    std::function<void()> hibernate{};  // locked for long enough
    // The user is back.
    std::function<void()> foreground{};
  };

  ScreenLockWatch(std::shared_ptr<Environment> environment, Events events)
      : environment_{std::move(environment)}, events_{std::move(events)} {}

  void start();
  // Ends the watch for the lock; of a screen that is locked already, the user's return is still
  // seen, until `clear`.
  void stop();

  [[nodiscard]] bool isDeviceLocked() const { return deviceLocked_; }
  [[nodiscard]] bool isHibernationDone() const { return hibernationDone_; }
  // The user is back and what had to follow has followed.
  void clear();

 private:
  void onDeviceScreenLock();
  void afterDeviceScreenLockTimerFinish();

  const std::shared_ptr<Environment> environment_;
  const Events events_;
  Subscription lock_;
  Subscription foreground_;
  Timer hibernationTimer_;
  bool deviceLocked_ = false;
  bool hibernationDone_ = false;
};

}  // namespace tavo
