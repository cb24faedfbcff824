#include "Gtk/Http/NetworkReading.h"

#include <string_view>

#include "Gtk/ForeignText.h"
#include "Rules/WayToTarget.h"
#include "Values/Text.h"

namespace tavo::gtk {

namespace {

using GFolder = GOwned<GDir, &g_dir_close>;

bool isWirelessAndUp(const std::string& interface) {
  const std::string folder = "/sys/class/net/" + interface;
  if (g_file_test((folder + "/wireless").c_str(), G_FILE_TEST_IS_DIR) == FALSE) return false;
  char* state = nullptr;
  if (g_file_get_contents((folder + "/operstate").c_str(), &state, nullptr, nullptr) == FALSE) {
    return false;
  }
  const GText owned{state};
  return trimmed(textOf(owned.get())) == "up";
}

}  // namespace

std::optional<std::uint32_t> NetworkReading::flagsFor(const ReachabilityTarget& target) const {
  switch (wayTo(target)) {
    case WayToTarget::none:
      return std::nullopt;
    case WayToTarget::thisMachine:
      return thisMachineFlags;
    case WayToTarget::localWiFi:
      return wiFiFlags();
    case WayToTarget::internet:
      return internetFlags();
  }
  return std::nullopt;
}

std::uint32_t NetworkReading::internetFlags() const {
  if (assumesReachable_) return reachabilityReachable;
  if (g_network_monitor_get_network_available(monitor_.get()) == FALSE) return 0;
  // A limited network stays reachable: it has a route, and only the distribution's own probe has
  // failed, which many company networks block.
  if (g_network_monitor_get_connectivity(monitor_.get()) != G_NETWORK_CONNECTIVITY_PORTAL) {
    return reachabilityReachable;
  }
  return reachabilityReachable | reachabilityConnectionRequired | reachabilityInterventionRequired;
}

std::uint32_t NetworkReading::wiFiFlags() const {
  if (assumesReachable_) return reachabilityReachable | reachabilityIsDirect;
  const GFolder interfaces{g_dir_open("/sys/class/net", 0, nullptr)};
  while (const char* const name = interfaces ? g_dir_read_name(interfaces.get()) : nullptr) {
    if (isWirelessAndUp(name)) return reachabilityReachable | reachabilityIsDirect;
  }
  return 0;
}

}  // namespace tavo::gtk
