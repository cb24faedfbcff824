#include "UserInterface/NativeView/ScreenLockWatch.h"

#include "ErrorHandler/OperationLog.h"
#include "Runtime/NotificationCenter.h"
#include "Services/Application.h"

namespace tavo {

namespace {
constexpr Seconds hibernationDelay{30};
}  // namespace

void ScreenLockWatch::start() {
  auto& center = environment_->notifications();
  lock_ = center.subscribe(notifications::screenLocked,
                           [this](const Notification&) { onDeviceScreenLock(); });
  foreground_ = center.subscribe(notifications::willEnterForeground,
                                 [this](const Notification&) { events_.foreground(); });
}

void ScreenLockWatch::stop() {
  lock_.reset();
  if (deviceLocked_) return;
  foreground_.reset();
  hibernationTimer_.invalidate();
}

void ScreenLockWatch::onDeviceScreenLock() {
  const OperationLog log{"-[XMPMoviePlayer onDeviceScreenLock:]"};
  deviceLocked_ = true;
  hibernationTimer_ = environment_->platform().runLoop->after(
      hibernationDelay, [this] { afterDeviceScreenLockTimerFinish(); });
}

void ScreenLockWatch::afterDeviceScreenLockTimerFinish() {
  const OperationLog log{"-[XMPMoviePlayer afterDeviceScreenLockTimerFinish]"};
  if (!deviceLocked_) return;
  hibernationDone_ = true;
  events_.hibernate();
}

void ScreenLockWatch::clear() {
  deviceLocked_ = false;
  hibernationDone_ = false;
  hibernationTimer_.invalidate();
}

}  // namespace tavo
