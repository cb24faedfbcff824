#include "Communicator/Network/XNetworkReachability.h"

#include <arpa/inet.h>

#include <array>

#include "ErrorHandler/OperationLog.h"

namespace tavo {

namespace {

std::shared_ptr<XNetworkReachability> make(Environment& environment, ReachabilityTarget::Kind kind,
                                           std::string host) {
  return std::make_shared<XNetworkReachability>(environment,
                                                ReachabilityTarget{kind, std::move(host)});
}

bool isNumericAddress(const std::string& text) {
  in6_addr address{};
  return inet_pton(AF_INET, text.c_str(), &address) == 1 ||
         inet_pton(AF_INET6, text.c_str(), &address) == 1;
}

NetworkStatus statusOf(bool reachable) {
  return reachable ? NetworkStatus::reachable : NetworkStatus::notReachable;
}

}  // namespace

std::shared_ptr<XNetworkReachability> XNetworkReachability::reachabilityWithHostName(
    Environment& environment, const std::string& hostName) {
  const OperationLog log{"+[XNetworkReachability reachabilityWithHostName:]"};
  return hostName.empty() ? nullptr
                          : make(environment, ReachabilityTarget::Kind::hostName, hostName);
}

std::shared_ptr<XNetworkReachability> XNetworkReachability::reachabilityWithAddress(
    Environment& environment, const std::string& address) {
  const OperationLog log{"+[XNetworkReachability reachabilityWithAddress:]"};
  return isNumericAddress(address) ? make(environment, ReachabilityTarget::Kind::address, address)
                                   : nullptr;
}

std::shared_ptr<XNetworkReachability> XNetworkReachability::reachabilityForInternetConnection(
    Environment& environment) {
  const OperationLog log{"+[XNetworkReachability reachabilityForInternetConnection]"};
  return make(environment, ReachabilityTarget::Kind::internet, "0.0.0.0");
}

std::shared_ptr<XNetworkReachability> XNetworkReachability::reachabilityForLocalWiFi(
    Environment& environment) {
  const OperationLog log{"+[XNetworkReachability reachabilityForLocalWiFi]"};
  return make(environment, ReachabilityTarget::Kind::localWiFi, "169.254.0.0");
}

XNetworkReachability::XNetworkReachability(Environment& environment, ReachabilityTarget target)
    : monitor_{environment.platform().network},
      notifications_{environment.notifications()},
      target_{std::move(target)} {}

XNetworkReachability::~XNetworkReachability() { stopNotifier(); }

bool XNetworkReachability::startNotifier() {
  const OperationLog log{"-[XNetworkReachability startNotifier]"};
  if (!watch_) {
    watch_ = monitor_->watch(target_, [this] { ReachabilityCallback(*this); });
  }
  return watch_ != nullptr;
}

void XNetworkReachability::stopNotifier() {
  const OperationLog log{"-[XNetworkReachability stopNotifier]"};
  watch_.reset();
}

NetworkStatus XNetworkReachability::currentReachabilityStatus() const {
  const OperationLog log{"-[XNetworkReachability currentReachabilityStatus]"};
  const auto flags = monitor_->flagsFor(target_);
  if (!flags) return NetworkStatus::notReachable;
  return localWiFiRef() ? localWiFiStatusForFlags(*flags) : networkStatusForFlags(*flags);
}

bool XNetworkReachability::connectionRequired() const {
  const OperationLog log{"-[XNetworkReachability connectionRequired]"};
  return (monitor_->flagsFor(target_).value_or(0) & reachabilityConnectionRequired) != 0;
}

NetworkStatus XNetworkReachability::localWiFiStatusForFlags(std::uint32_t flags) const {
  const OperationLog log{"-[XNetworkReachability localWiFiStatusForFlags:]"};
  PrintReachabilityFlags(flags, "localWiFiStatusForFlags");
  constexpr std::uint32_t needed = reachabilityReachable | reachabilityIsDirect;
  return statusOf((flags & needed) == needed);
}

NetworkStatus XNetworkReachability::networkStatusForFlags(std::uint32_t flags) const {
  const OperationLog log{"-[XNetworkReachability networkStatusForFlags:]"};
  PrintReachabilityFlags(flags, "networkStatusForFlags");
  const auto has = [&](std::uint32_t bits) { return (flags & bits) != 0; };
  if (!has(reachabilityReachable)) return NetworkStatus::notReachable;

  const bool connectsByItself =
      has(reachabilityConnectionOnDemand | reachabilityConnectionOnTraffic) &&
      !has(reachabilityInterventionRequired);
  const bool reachable =
      !has(reachabilityConnectionRequired) || connectsByItself || has(reachabilityIsWwan);
  log.debug("\n\nConnectivity: ", static_cast<int>(reachable));
  return statusOf(reachable);
}

bool XNetworkReachability::localWiFiRef() const {
  return target_.kind == ReachabilityTarget::Kind::localWiFi;
}

void ReachabilityCallback(const XNetworkReachability& reachability) {
  const OperationLog log{"ReachabilityCallback"};
  reachability.notifications_.post(
      {std::string{networkReachabilityChangedNotification}, &reachability, {}});
}

void PrintReachabilityFlags(std::uint32_t flags, std::string_view comment) {
  const OperationLog log{"PrintReachabilityFlags"};
  // Every ping comes by here, and the line is longer than what a text holds without memory.
  if (isDebugLogEnabled()) log.debug(reachabilityFlagsLine(flags, comment), "\n");
}

std::string reachabilityFlagsLine(std::uint32_t flags, std::string_view comment) {
  struct Letter {
    std::uint32_t flag;
    char letter;
  };
  constexpr std::array letters{
      Letter{reachabilityIsWwan, 'W'},
      Letter{reachabilityReachable, 'R'},
      Letter{0, ' '},
      Letter{reachabilityTransientConnection, 't'},
      Letter{reachabilityConnectionRequired, 'c'},
      Letter{reachabilityConnectionOnTraffic, 'C'},
      Letter{reachabilityInterventionRequired, 'i'},
      Letter{reachabilityConnectionOnDemand, 'D'},
      Letter{reachabilityIsLocalAddress, 'l'},
      Letter{reachabilityIsDirect, 'd'},
  };
  std::string line = "\n\nReachability Flag Status: ";
  for (const auto& [flag, letter] : letters) {
    line += flag == 0 || (flags & flag) != 0 ? letter : '-';
  }
  return line.append(" ").append(comment);
}

}  // namespace tavo
