#include "Communicator/Network/XNetworkManager.h"

#include <exception>

#include "ErrorHandler/OperationLog.h"

namespace tavo {

XNetworkManager& XNetworkManager::shareInstance(Environment& environment) {
  const OperationLog log{"+[XNetworkManager shareInstance]"};
  return environment.shared<XNetworkManager>();
}

XNetworkManager::XNetworkManager(Environment& environment)
    : internetReach{XNetworkReachability::reachabilityForInternetConnection(environment)},
      notifications_{environment.notifications()},
      changes_{notifications_.subscribe(
          networkReachabilityChangedNotification,
          [this](const Notification& notification) { reachabilityChanged(notification); })} {
  internetReach->startNotifier();
}

bool XNetworkManager::internetAvailable() const {
  const OperationLog log{"-[XNetworkManager internetAvailable]"};
  return internetReach->currentReachabilityStatus() != NetworkStatus::notReachable;
}

void XNetworkManager::reachabilityChanged(const Notification& notification) {
  const OperationLog log{"-[XNetworkManager reachabilityChanged:]"};
  try {
    // Only reachability objects post under this name, and they are alive while they do.
    const auto* reachability = static_cast<const XNetworkReachability*>(notification.object);
    if (reachability == nullptr) return;
    const auto status = reachability->currentReachabilityStatus();
    log.debug("\n\nNet Status: ", static_cast<int>(status));
    const bool available = status != NetworkStatus::notReachable;
    if (!available) log.debug("\n\nNo internet connection");
    notifications_.post(
        {std::string{internetAccessChangedNotification}, this, {{"Available", available ? 1 : 0}}});
  } catch (const std::exception& exception) {
    // Only a host's own subscriber throws here; the host is to see it.
    log.debug("\n\nAn Exception occured: ", exception.what());
    throw;
  }
}

}  // namespace tavo
