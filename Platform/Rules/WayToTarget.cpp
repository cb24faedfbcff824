#include "Rules/WayToTarget.h"

#include <arpa/inet.h>

#include "Values/Text.h"

namespace tavo {

namespace {

// A numeric address of either family, and whether it is the machine's own.
WayToTarget wayToAddress(const std::string& text) {
  in_addr four{};
  if (inet_pton(AF_INET, text.c_str(), &four) == 1) {
    const bool loops = (ntohl(four.s_addr) >> 24U) == 127;
    return loops ? WayToTarget::thisMachine : WayToTarget::internet;
  }
  in6_addr six{};
  if (inet_pton(AF_INET6, text.c_str(), &six) != 1) return WayToTarget::none;
  return IN6_IS_ADDR_LOOPBACK(&six) ? WayToTarget::thisMachine : WayToTarget::internet;
}

WayToTarget wayToHost(const std::string& name) {
  if (name.empty()) return WayToTarget::none;
  if (const auto way = wayToAddress(name); way != WayToTarget::none) return way;
  const bool isLocal = equalsIgnoringCase(name, "localhost") || name.ends_with(".localhost");
  return isLocal ? WayToTarget::thisMachine : WayToTarget::internet;
}

}  // namespace

WayToTarget wayTo(const ReachabilityTarget& target) {
  switch (target.kind) {
    case ReachabilityTarget::Kind::internet:
      return WayToTarget::internet;
    case ReachabilityTarget::Kind::localWiFi:
      return WayToTarget::localWiFi;
    case ReachabilityTarget::Kind::hostName:
      return wayToHost(target.host);
    case ReachabilityTarget::Kind::address:
      return wayToAddress(target.host);
  }
  return WayToTarget::none;
}

}  // namespace tavo
