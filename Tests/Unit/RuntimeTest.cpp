#include <thread>

#include <tavo/Observer.h>
#include <tavo/Runtime.h>

#include "Headless/HeadlessPlatform.h"
#include "Runtime/Environment.h"
#include "Runtime/NotificationCenter.h"
#include "Runtime/Relay.h"
#include "Support/Testing.h"

namespace tavo::test {
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
      threads.emplace_back([] { (void)Runtime::current().environment()->shared<Shared>(); });
    }
  }
  EXPECT_EQ(Shared::made, 1);
  first = &outer.environment()->shared<Shared>();
  {
    const headless::HeadlessPlatform other;
    const Runtime inner{other.platform()};
    EXPECT_EQ(&Runtime::current(), &inner);
    EXPECT_NE(&Runtime::current().environment()->shared<Shared>(), first);
  }
  EXPECT_EQ(&Runtime::current(), &outer);
  EXPECT_EQ(&Runtime::current().environment()->shared<Shared>(), first);
}

TEST(RuntimeTest, TheyEndInAnyOrderAndWhatWasMadeLivesOnWithItsHolder) {
  const headless::HeadlessPlatform platform;
  const headless::HeadlessPlatform other;
  auto outer = std::make_unique<Runtime>(platform.platform());
  auto inner = std::make_unique<Runtime>(other.platform());
  const auto held = outer->environment();
  Shared* const instance = &held->shared<Shared>();
  outer.reset();
  EXPECT_EQ(&Runtime::current(), inner.get());
  inner.reset();
  EXPECT_EQ(Runtime::currentEnvironment(), nullptr);
  EXPECT_EQ(&held->shared<Shared>(), instance);
}

TEST(RuntimeTest, AnApplicationThatIsActivatedAgainKeepsItsOne) {
  const headless::HeadlessPlatform platform;
  std::unique_ptr<Runtime> runtime;
  Shared* made = nullptr;
  for (int activation = 0; activation < 2; ++activation) {
    runtime = std::make_unique<Runtime>(platform.platform());
    auto& shared = runtime->environment()->shared<Shared>();
    EXPECT_TRUE(made == nullptr || made == &shared);
    made = &shared;
  }
  EXPECT_THAT(platform.log->messages(LogLevel::warning), ElementsAre(HasSubstr("Make it once")));
}

TEST(RuntimeDeathTest, AMissingServiceIsNamedAtOnce) {
  Platform platform = headless::HeadlessPlatform{}.platform();
  platform.telephony = nullptr;
  EXPECT_DEATH(const Runtime runtime{platform}, "no service \"telephony\"");
}

struct Part : std::enable_shared_from_this<Part> {
  struct Told {
    std::function<void(Part&, int)> heard{};
    std::function<bool(Part&)> allowed{};
  };
  struct Events {
    std::function<void(std::string)> began{};
    std::function<void(std::string, int)> counted{};
    std::function<bool(std::string)> mayGo{};
  };
  void begin() { began = true; }

  std::shared_ptr<const Events> wire() {
    const Relay relay{*this};
    return std::make_shared<Events>(Events{.began = relay.call(&Part::begin),
                                           .counted = relay.pass(&Told::heard),
                                           .mayGo = relay.pass(&Told::allowed, true)});
  }

  Observer<Told> delegate;
  bool began = false;
};

TEST(RelayTest, EntriesLeaveOutTheReporterAndAnswerForWhoIsGone) {
  auto part = std::make_shared<Part>();
  const auto events = part->wire();
  int sum = 0;
  const auto host = std::make_shared<Part::Told>(Part::Told{.heard = [&](Part& told, int value) {
    EXPECT_TRUE(told.began);
    part.reset();  // held for the length of the call
    sum += value + (told.began ? 1 : 0);
  }});
  part->delegate.set(host);
  events->began("reporter");
  EXPECT_TRUE(events->mayGo("reporter")) << "nobody answers";
  events->counted("reporter", 41);
  events->counted("reporter", 41);  // the part is gone
  events->began("reporter");
  EXPECT_TRUE(events->mayGo("reporter"));
  EXPECT_EQ(sum, 42);
}

}  // namespace
}  // namespace tavo::test
