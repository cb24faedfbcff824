#include "Communicator/Network/XNetworkReachability.h"

#include <arpa/inet.h>

#include <array>

#include <tavo/Runtime.h>

#include "ErrorHandler/OperationLog.h"
#include "Runtime/NotificationCenter.h"

namespace tavo {

namespace {

std::shared_ptr<XNetworkReachability> make(ReachabilityTarget::Kind kind, std::string host) {
  return std::make_shared<XNetworkReachability>(ReachabilityTarget{kind, std::move(host)});
}

bool isNumericAddress(const std::string& text) {
  in6_addr address{};
  return inet_pton(AF_INET, text.c_str(), &address) == 1 ||
         inet_pton(AF_INET6, text.c_str(), &address) == 1;
}

const NetworkMonitor& monitor() { return *Runtime::current().platform().network; }

NetworkStatus statusOf(bool reachable) {
  return reachable ? NetworkStatus::reachable : NetworkStatus::notReachable;
}

}  // namespace

std::shared_ptr<XNetworkReachability> XNetworkReachability::reachabilityWithHostName(
    const std::string& hostName) {
  const OperationLog log{"+[XNetworkReachability reachabilityWithHostName:]"};
  return hostName.empty() ? nullptr : make(ReachabilityTarget::Kind::hostName, hostName);
}

std::shared_ptr<XNetworkReachability> XNetworkReachability::reachabilityWithAddress(
    const std::string& address) {
  const OperationLog log{"+[XNetworkReachability reachabilityWithAddress:]"};
  return isNumericAddress(address) ? make(ReachabilityTarget::Kind::address, address) : nullptr;
}

std::shared_ptr<XNetworkReachability> XNetworkReachability::reachabilityForInternetConnection() {
  const OperationLog log{"+[XNetworkReachability reachabilityForInternetConnection]"};
  return make(ReachabilityTarget::Kind::internet, "0.0.0.0");
}

std::shared_ptr<XNetworkReachability> XNetworkReachability::reachabilityForLocalWiFi() {
  const OperationLog log{"+[XNetworkReachability reachabilityForLocalWiFi]"};
  return make(ReachabilityTarget::Kind::localWiFi, "169.254.0.0");
}

XNetworkReachability::XNetworkReachability(ReachabilityTarget target)
    : target_{std::move(target)} {}

XNetworkReachability::~XNetworkReachability() { stopNotifier(); }

bool XNetworkReachability::startNotifier() {
  const OperationLog log{"-[XNetworkReachability startNotifier]"};
  if (!watch_) {
    watch_ = Runtime::current().platform().network->watch(target_,
                                                          [this] { ReachabilityCallback(*this); });
  }
  return watch_ != nullptr;
}

void XNetworkReachability::stopNotifier() {
  const OperationLog log{"-[XNetworkReachability stopNotifier]"};
  watch_.reset();
}

NetworkStatus XNetworkReachability::currentReachabilityStatus() const {
  const OperationLog log{"-[XNetworkReachability currentReachabilityStatus]"};
  const auto flags = monitor().flagsFor(target_);
  if (!flags) return NetworkStatus::notReachable;
  return localWiFiRef() ? localWiFiStatusForFlags(*flags) : networkStatusForFlags(*flags);
}

bool XNetworkReachability::connectionRequired() const {
  const OperationLog log{"-[XNetworkReachability connectionRequired]"};
  return (monitor().flagsFor(target_).value_or(0) & reachabilityConnectionRequired) != 0;
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
  Runtime::current().notifications().post(
      {std::string{networkReachabilityChangedNotification}, &reachability, {}});
}

void PrintReachabilityFlags(std::uint32_t flags, std::string_view comment) {
  const OperationLog log{"PrintReachabilityFlags"};
  log.debug(reachabilityFlagsLine(flags, comment));
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
  return line.append(" ").append(comment).append("\n");
}

}  // namespace tavo
