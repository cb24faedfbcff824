#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "Runtime/Environment.h"
#include "Services/NetworkMonitor.h"

namespace tavo {

// Posted on the main thread when the way to an instance's target has changed; the notification's
// object is the instance.
inline constexpr std::string_view networkReachabilityChangedNotification =
    "XkNetworkReachabilityChangedNotification";

// 1 also stands for a cellular connection: there is no value of its own for that.
enum class NetworkStatus : int { notReachable = 0, reachable = 1 };

// Whether one target can be reached now, and a notification when that changes. Main thread only.
// The environment must outlive it.
class XNetworkReachability {
 public:
  // Null when the platform has no use for the target: an empty name, a text that is no numeric
  // address.
  [[nodiscard]] static std::shared_ptr<XNetworkReachability> reachabilityWithHostName(
      Environment& environment, const std::string& hostName);
  // An IPv4 or IPv6 address as text.
  [[nodiscard]] static std::shared_ptr<XNetworkReachability> reachabilityWithAddress(
      Environment& environment, const std::string& address);
  [[nodiscard]] static std::shared_ptr<XNetworkReachability> reachabilityForInternetConnection(
      Environment& environment);
  [[nodiscard]] static std::shared_ptr<XNetworkReachability> reachabilityForLocalWiFi(
      Environment& environment);

  XNetworkReachability(Environment& environment, ReachabilityTarget target);
  ~XNetworkReachability();
  XNetworkReachability(const XNetworkReachability&) = delete;
  XNetworkReachability& operator=(const XNetworkReachability&) = delete;

  // Starts the notifications; returns whether the platform agreed. Starting twice is harmless.
  bool startNotifier();
  void stopNotifier();

  // Not reachable, too, while the platform cannot tell.
  [[nodiscard]] NetworkStatus currentReachabilityStatus() const;
  [[nodiscard]] bool connectionRequired() const;

  // What the flags mean for the local Wi-Fi link, and for every other target.
  [[nodiscard]] NetworkStatus localWiFiStatusForFlags(std::uint32_t flags) const;
  [[nodiscard]] NetworkStatus networkStatusForFlags(std::uint32_t flags) const;

  [[nodiscard]] bool localWiFiRef() const;

 private:
  friend void ReachabilityCallback(const XNetworkReachability& reachability);

  const std::shared_ptr<NetworkMonitor> monitor_;
  NotificationCenter& notifications_;
  ReachabilityTarget target_;
  std::unique_ptr<NetworkMonitor::Watch> watch_;
};

// Posts the notification for `reachability`; called by the platform's watch.
void ReachabilityCallback(const XNetworkReachability& reachability);

// One line of the debug log: a letter for each flag that is set, "-" for the others.
void PrintReachabilityFlags(std::uint32_t flags, std::string_view comment);
[[nodiscard]] std::string reachabilityFlagsLine(std::uint32_t flags, std::string_view comment);

}  // namespace tavo
