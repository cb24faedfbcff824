#include "UserInterface/NativeView/VideoInterruptions.h"

#include "Communicator/Network/XNetworkManager.h"
#include "ErrorHandler/OperationLog.h"
#include "Services/Application.h"

namespace tavo {

VideoInterruptions::VideoInterruptions(const std::shared_ptr<Environment>& environment,
                                       Events events)
    : environment_{environment}, events_{std::move(events)}, lock_{environment, events_.lock} {}

void VideoInterruptions::start(std::string_view orientation) {
  auto& center = environment_->notifications();
  internetAccess_ = center.subscribe(
      internetAccessChangedNotification,
      [this](const Notification& notification) { internetAccessChanged(notification); });
  memoryWarning_ = center.subscribe(notifications::didReceiveMemoryWarning,
                                    [this](const Notification&) { events_.memoryLow(); });
  orientation_ = center.subscribe(orientation, [this](const Notification&) { events_.turned(); });
  lock_.start();
}

void VideoInterruptions::stop() {
  internetAccess_.reset();
  memoryWarning_.reset();
  orientation_.reset();
  lock_.stop();
}

void VideoInterruptions::internetAccessChanged(const Notification& notification) {
  const OperationLog log{"-[XMPMoviePlayer internetAccessChanged:]"};
  const auto available = notification.userInfo.find("Available");
  const bool lost = available == notification.userInfo.end() || available->second == 0;
  if (lost) events_.connectionLost();
}

}  // namespace tavo
