#include <gtest/gtest.h>

#include <thread>

#include "Headless/HeadlessPlatform.h"
#include "Runtime/Observer.h"
#include "Runtime/Runtime.h"

namespace tavo {
namespace {

struct Table {
  std::function<void(int)> heard{};
  std::function<bool()> allowed{};
};

TEST(ObserverTest, OptionalOperationsAreCalledOnlyWhenTheyAreThere) {
  int sum = 0;
  const auto table = std::make_shared<Table>(Table{.heard = [&](int value) { sum += value; }});
  Observer<Table> observer;
  observer.tell(&Table::heard, 1);  // nobody listens
  observer.set(table);
  observer.tell(&Table::heard, 2);
  EXPECT_EQ(sum, 2);
  EXPECT_TRUE(observer.implements(&Table::heard));
  EXPECT_FALSE(observer.implements(&Table::allowed));
  EXPECT_EQ(observer.ask(&Table::allowed), std::nullopt);
}

TEST(ObserverTest, ADeadHostIsNeverCalledAndMayDieInsideACall) {
  Observer<Table> observer;
  auto table = std::make_shared<Table>();
  int calls = 0;
  table->heard = [&](int) {
    ++calls;
    table.reset();  // the host ends itself; the call goes on
  };
  observer.set(table);
  observer.tell(&Table::heard, 1);
  observer.tell(&Table::heard, 1);
  EXPECT_EQ(calls, 1);
  EXPECT_FALSE(observer.isSet());
}

TEST(NotificationCenterTest, HandlersRunInOrderAndMayEndTheirSubscription) {
  NotificationCenter center;
  std::vector<int> heard;
  Subscription second;
  Subscription third;
  const Subscription first = center.subscribe("news", [&](const Notification& news) {
    heard.push_back(news.userInfo.at("value"));
    second.reset();
    third = center.subscribe("news", [&](const Notification&) { heard.push_back(-3); });
  });
  second = center.subscribe("news", [&](const Notification&) { heard.push_back(-2); });
  center.post({.name = "other", .userInfo = {}});
  center.post({.name = "news", .userInfo = {{"value", 7}}});
  EXPECT_EQ(heard, (std::vector<int>{7}));
  third.reset();
}

struct Shared {
  static inline std::atomic<int> made{0};
  Shared() { ++made; }
};

TEST(RuntimeTest, SharedInstancesAreMadeOncePerRuntime) {
  Shared::made = 0;
  const headless::HeadlessPlatform platform;
  Runtime outer{platform.platform()};
  Shared* first = nullptr;
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < 8; ++i) {
      threads.emplace_back([] { (void)Runtime::current().shared<Shared>(); });
    }
  }
  EXPECT_EQ(Shared::made, 1);
  first = &outer.shared<Shared>();
  {
    const Runtime inner{platform.platform()};
    EXPECT_EQ(&Runtime::current(), &inner);
    EXPECT_NE(&Runtime::current().shared<Shared>(), first);
  }
  EXPECT_EQ(&Runtime::current(), &outer);
  EXPECT_EQ(&Runtime::current().shared<Shared>(), first);
}

}  // namespace
}  // namespace tavo
