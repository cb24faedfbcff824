#pragma once

#include <gio/gio.h>

#include <memory>

#include "Gtk/GPtr.h"
#include "Services/NetworkMonitor.h"

namespace tavo::gtk {

class NetworkReading;

// Reachability out of GIO's network monitor (netlink, NetworkManager or the portal).
//
// A network with a route to others is reachable; one behind a sign-in page is reachable too but
// needs somebody's intervention first; the machine itself is reachable always, as a local address.
class GtkNetworkMonitor : public NetworkMonitor {
 public:
  enum class Assumption {
    none,
    // Everything can be reached, whatever the system says: for a server on the loopback interface
    // of a machine without any network.
    reachable,
  };

  explicit GtkNetworkMonitor(Assumption assumption = Assumption::none);
  // For a monitor other than the system's.
  GtkNetworkMonitor(GPtr<GNetworkMonitor> monitor, Assumption assumption);

  // `reachable` when the environment variable TAVO_ASSUME_REACHABLE is "1".
  [[nodiscard]] static Assumption assumptionOfEnvironment();

  [[nodiscard]] std::optional<std::uint32_t> flagsFor(
      const ReachabilityTarget& target) const override;
  [[nodiscard]] std::unique_ptr<Watch> watch(const ReachabilityTarget& target,
                                             std::function<void()> changed) override;

 private:
  std::shared_ptr<const NetworkReading> reading_;
};

}  // namespace tavo::gtk
