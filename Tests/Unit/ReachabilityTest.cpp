#include "Communicator/Network/XNetworkManager.h"
#include "Runtime/NotificationCenter.h"
#include "Unit/TransportFixture.h"

namespace tavo::test {
namespace {

constexpr std::uint32_t transient = reachabilityTransientConnection;
constexpr std::uint32_t reachable = reachabilityReachable;
constexpr std::uint32_t required = reachabilityConnectionRequired;
constexpr std::uint32_t onTraffic = reachabilityConnectionOnTraffic;
constexpr std::uint32_t intervention = reachabilityInterventionRequired;
constexpr std::uint32_t onDemand = reachabilityConnectionOnDemand;
constexpr std::uint32_t local = reachabilityIsLocalAddress;
constexpr std::uint32_t direct = reachabilityIsDirect;
constexpr std::uint32_t cellular = reachabilityIsWwan;

class Reachability : public test::TransportTest {};

TEST_F(Reachability, ReadsTheFlags) {
  struct Row {
    std::uint32_t flags;
    int internet;
    int localWiFi;
  };
  constexpr Row rows[] = {
      {0, 0, 0},
      {reachable, 1, 0},
      {reachable | direct, 1, 1},
      {direct | cellular | onDemand, 0, 0},
      {reachable | required, 0, 0},
      {reachable | required | cellular, 1, 0},
      {reachable | required | onDemand, 1, 0},
      {reachable | required | onTraffic, 1, 0},
      {reachable | required | onDemand | intervention, 0, 0},
      {reachable | required | onTraffic | intervention | cellular, 1, 0},
      {reachable | intervention, 1, 0},
      {reachable | transient | local, 1, 0},
  };
  const auto internet =
      XNetworkReachability::reachabilityForInternetConnection(*runtime_.environment());
  const auto localWiFi = XNetworkReachability::reachabilityForLocalWiFi(*runtime_.environment());
  EXPECT_FALSE(internet->localWiFiRef());
  EXPECT_TRUE(localWiFi->localWiFiRef());
  for (const auto& row : rows) {
    platform_.network->setFlags(row.flags);
    EXPECT_EQ(static_cast<int>(internet->currentReachabilityStatus()), row.internet) << row.flags;
    EXPECT_EQ(static_cast<int>(localWiFi->currentReachabilityStatus()), row.localWiFi) << row.flags;
    EXPECT_EQ(internet->connectionRequired(), (row.flags & required) != 0) << row.flags;
  }
  platform_.network->setFlags(std::nullopt);
  EXPECT_EQ(internet->currentReachabilityStatus(), NetworkStatus::notReachable);
  EXPECT_FALSE(internet->connectionRequired());
}

TEST_F(Reachability, PrintsTheFlags) {
  EXPECT_EQ(reachabilityFlagsLine(0, "a"), "\n\nReachability Flag Status: -- ------- a");
  EXPECT_EQ(reachabilityFlagsLine(~0U, "b"), "\n\nReachability Flag Status: WR tcCiDld b");
  EXPECT_EQ(reachabilityFlagsLine(reachable | onDemand, "c"),
            "\n\nReachability Flag Status: -R ----D-- c");
}

TEST_F(Reachability, NotifiesOnceAChangeUntilStopped) {
  const auto reach =
      XNetworkReachability::reachabilityWithHostName(*runtime_.environment(), "ads.test");
  std::vector<const void*> objects;
  const auto subscription = runtime_.notifications().subscribe(
      networkReachabilityChangedNotification,
      [&](const Notification& notification) { objects.push_back(notification.object); });
  platform_.network->setReachable(false);
  EXPECT_TRUE(reach->startNotifier());
  EXPECT_TRUE(reach->startNotifier());
  platform_.network->setReachable(true);
  platform_.network->setReachable(true);
  reach->stopNotifier();
  platform_.network->setReachable(false);
  EXPECT_THAT(objects, ElementsAre(reach.get()));
}

TEST_F(Reachability, ManagerTellsWhetherTheInternetCameOrWent) {
  std::vector<int> available;
  const auto subscription = runtime_.notifications().subscribe(
      internetAccessChangedNotification, [&](const Notification& notification) {
        available.push_back(notification.userInfo.at("Available"));
      });
  platform_.network->setReachable(false);
  auto& manager = XNetworkManager::shareInstance(*Runtime::current().environment());
  EXPECT_FALSE(manager.internetAvailable());
  platform_.network->setReachable(true);
  EXPECT_TRUE(manager.internetAvailable());
  platform_.network->setFlags(reachable | required);
  platform_.network->setFlags(std::nullopt);
  EXPECT_THAT(available, ElementsAre(1, 0, 0));
  EXPECT_EQ(&XNetworkManager::shareInstance(*Runtime::current().environment()), &manager);
  EXPECT_EQ(manager.hostReach, nullptr);
}

// Whoever watches another target posts under the same name; the news are about that target.
TEST_F(Reachability, ManagerReadsTheObjectThatTheNotificationIsAbout) {
  std::vector<int> available;
  const auto subscription = runtime_.notifications().subscribe(
      internetAccessChangedNotification, [&](const Notification& notification) {
        available.push_back(notification.userInfo.at("Available"));
      });
  static_cast<void>(XNetworkManager::shareInstance(*runtime_.environment()));
  const auto localWiFi = XNetworkReachability::reachabilityForLocalWiFi(*runtime_.environment());
  ReachabilityCallback(*localWiFi);  // reachable, but not directly
  platform_.network->setFlags(reachable | direct);
  available.clear();
  ReachabilityCallback(*localWiFi);
  EXPECT_THAT(available, ElementsAre(1));
}

TEST_F(Reachability, ManagerPassesAnExceptionOfASubscriberOn) {
  static_cast<void>(XNetworkManager::shareInstance(*Runtime::current().environment()));
  const auto subscription = runtime_.notifications().subscribe(
      internetAccessChangedNotification,
      [](const Notification&) { throw std::runtime_error{"host"}; });
  EXPECT_THROW(platform_.network->setReachable(false), std::runtime_error);
}

}  // namespace
}  // namespace tavo::test
