#pragma once

#include <memory>
#include <string_view>

#include "Communicator/Network/XNetworkReachability.h"
#include "Runtime/Environment.h"

namespace tavo {

// Posted on the main thread on every change of connectivity; the user info's "Available" is 1 or 0.
inline constexpr std::string_view internetAccessChangedNotification = "InternetAccessChanged";

// The watcher of the connection to the internet. Main thread only.
class XNetworkManager {
 public:
  // The one manager of the environment; the first call begins the watch.
  [[nodiscard]] static XNetworkManager& shareInstance(Environment& environment);

  explicit XNetworkManager(Environment& environment);

  [[nodiscard]] bool internetAvailable() const;

  // Turns the notification of a reachability object into "InternetAccessChanged".
  void reachabilityChanged(const Notification& notification);

  std::shared_ptr<XNetworkReachability> internetReach;
  // Not in use.
  std::shared_ptr<XNetworkReachability> hostReach;
  std::shared_ptr<XNetworkReachability> wifiReach;

 private:
  NotificationCenter& notifications_;
  Subscription changes_;
};

}  // namespace tavo
