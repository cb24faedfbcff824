#pragma once

#include <gio/gio.h>

#include <cstdint>
#include <optional>
#include <string>

#include "Gtk/GPtr.h"
#include "Services/NetworkMonitor.h"

namespace tavo::gtk {

// What a network monitor says now, as reachability flags.
class NetworkReading {
 public:
  NetworkReading(GPtr<GNetworkMonitor> monitor, bool assumesReachable)
      : monitor_{std::move(monitor)}, assumesReachable_{assumesReachable} {}

  [[nodiscard]] GNetworkMonitor* monitor() const { return monitor_.get(); }

  // None for a target that makes no sense: no host, or an address that is none.
  [[nodiscard]] std::optional<std::uint32_t> flagsFor(const ReachabilityTarget& target) const;

 private:
  [[nodiscard]] std::uint32_t internetFlags() const;
  [[nodiscard]] std::uint32_t wiFiFlags() const;

  GPtr<GNetworkMonitor> monitor_;
  bool assumesReachable_;
};

}  // namespace tavo::gtk
