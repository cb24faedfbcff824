#include "Gtk/Http/GtkNetworkMonitor.h"
#include "Headless/HeadlessNetworkMonitor.h"
#include "Support/FakeNetwork.h"
#include "Support/Testing.h"

namespace tavo::test {
namespace {

using Kind = ReachabilityTarget::Kind;

struct HeadlessNetworkRig {
  headless::HeadlessNetworkMonitor monitor;
  void becomes(bool online) { monitor.setReachable(online); }
};

struct GtkNetworkRig {
  FakeNetwork network;
  gtk::GtkNetworkMonitor monitor{network.monitor(), gtk::GtkNetworkMonitor::Assumption::none};
  // As the system does: more often than there are changes.
  void becomes(bool online) {
    network.set(online, online ? G_NETWORK_CONNECTIVITY_FULL : G_NETWORK_CONNECTIVITY_LOCAL);
    network.announce();
    network.announce();
  }
};

template <typename Rig>
class NetworkMonitorContract : public testing::Test {
 protected:
  Rig rig_;
};
using Rigs = testing::Types<HeadlessNetworkRig, GtkNetworkRig>;
TYPED_TEST_SUITE(NetworkMonitorContract, Rigs);

TYPED_TEST(NetworkMonitorContract, TellsTheWayToEachTargetAndItsRealChanges) {
  constexpr auto local = reachabilityReachable | reachabilityIsLocalAddress | reachabilityIsDirect;
  using Case =
      std::tuple<ReachabilityTarget, std::optional<std::uint32_t>, std::optional<std::uint32_t>>;
  const std::vector<Case> cases{
      {{Kind::internet, ""}, 0U, reachabilityReachable},
      {{Kind::hostName, "ads.example.com"}, 0U, reachabilityReachable},
      {{Kind::hostName, "192.0.2.1"}, 0U, reachabilityReachable},
      {{Kind::hostName, "LocalHost"}, local, local},
      {{Kind::hostName, "a.localhost"}, local, local},
      {{Kind::hostName, ""}, std::nullopt, std::nullopt},
      {{Kind::address, "127.0.0.1"}, local, local},
      {{Kind::address, "::1"}, local, local},
      {{Kind::address, "0.0.0.0"}, 0U, reachabilityReachable},
      {{Kind::address, "2001:db8::1"}, 0U, reachabilityReachable},
      {{Kind::address, "192.0.2.1.5"}, std::nullopt, std::nullopt},
      {{Kind::address, "ads.example.com"}, std::nullopt, std::nullopt},
  };
  for (const auto& [target, offline, online] : cases) {
    SCOPED_TRACE(target.host);
    this->rig_.becomes(false);
    EXPECT_EQ(this->rig_.monitor.flagsFor(target), offline);
    int changes = 0;
    auto watch = this->rig_.monitor.watch(target, [&] { ++changes; });
    EXPECT_EQ(watch != nullptr, online.has_value());
    this->rig_.becomes(true);
    this->rig_.becomes(true);
    EXPECT_EQ(this->rig_.monitor.flagsFor(target), online);
    EXPECT_EQ(changes, offline == online ? 0 : 1);
    watch.reset();
    this->rig_.becomes(false);
    EXPECT_LE(changes, 1) << "a watch that is gone";
  }
}

TYPED_TEST(NetworkMonitorContract, LetsAWatchEndItselfAndOthers) {
  int changes = 0;
  std::unique_ptr<NetworkMonitor::Watch> first;
  std::unique_ptr<NetworkMonitor::Watch> second;
  const auto endBoth = [&] {
    ++changes;
    first.reset();
    second.reset();
  };
  this->rig_.becomes(true);
  first = this->rig_.monitor.watch({}, endBoth);
  second = this->rig_.monitor.watch({}, endBoth);
  this->rig_.becomes(false);
  this->rig_.becomes(true);
  EXPECT_EQ(changes, 1);
}

}  // namespace
}  // namespace tavo::test
