#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <tavo/TrackingLedger.h>
#include <tavo/XGlobalConfiguration.h>

#include "ErrorHandler/ExtendNSLog.h"
#include "Headless/HeadlessPlatform.h"
#include "OnlineRequest/PingQueue.h"
#include "OnlineRequest/XTrackingRequest.h"
#include "Runtime/Environment.h"
#include "Tracker/XAdTracker.h"
#include "Unit/TransportFixture.h"

namespace tavo::test {
namespace {

Limits smallLimits() {
  Limits limits;
  limits.queuedPings = 20;
  limits.queuedPingsPerHost = 20;
  limits.pingConnectionsPerHost = 6;
  limits.pingConnections = 8;
  return limits;
}

class Tracking : public test::TransportTest {
 protected:
  explicit Tracking(const Limits& limits = smallLimits()) : TransportTest{limits} {}

  static void track(const std::string& url, const std::string& context = "context") {
    XTrackingRequest::sendAsynchronousRequest(*Runtime::current().environment(), Url::parse(url),
                                              context, nullptr);
  }

  static TrackingLedger& ledger() { return TrackingLedger::sharedInstance(); }

  // The most that was under way at once, in all, over the last `run`.
  int run() {
    int most = 0;
    for (int step = 0; step < 20'000 && (queue().waiting() > 0 || queue().underWay() > 0); ++step) {
      most = std::max(most, queue().underWay());
      platform_.runLoop->advance(Seconds{0.001});
    }
    return most;
  }

  PingQueue& queue() { return runtime_.environment()->shared<PingQueue>(); }
};

TEST_F(Tracking, QuirkSendsAPlainRequestAndStoresTheCookies) {
  platform_.http->answer("http://t.test/i", {.headers = {{"Set-Cookie", "a=1"}}});
  platform_.cookies->storeFromHeaders({{"Set-Cookie", "old=1"}}, Url::parse("http://t.test/"));
  track("http://t.test/i", "Impression");
  EXPECT_THAT(platform_.log->messages(), Not(Contains(HasSubstr("sent successfully"))));
  platform_.runLoop->runPending();

  const auto& request = platform_.http->requests().at(0);
  EXPECT_EQ(request.header("User-Agent"), nullptr);
  EXPECT_EQ(*request.header("Cookie"), "old=1");  // the store's own, and no description
  EXPECT_EQ(request.cachePolicy, CachePolicy::useProtocolCachePolicy);
  EXPECT_EQ(request.traffic, TrafficClass::tracking);
  EXPECT_EQ(request.deadline, runtime_.limits().pingTimeout);
  EXPECT_THAT(platform_.log->messages(), Contains("Impression sent successfully"));
  EXPECT_THAT(platform_.log->messages(), Contains("\n\nDaprops cookies attached").Times(1))
      << "on the request that is prepared and not sent";
  EXPECT_EQ(cookieHeader(platform_.cookies->cookiesFor(Url::parse("http://t.test/"))),
            "old=1; a=1");
}

TEST_F(Tracking, SendsNothingOffline) {
  platform_.network->setReachable(false);
  track("http://t.test/i", "Impression");
  platform_.network->setReachable(true);
  platform_.runLoop->runPending();
  EXPECT_THAT(platform_.http->urls(), IsEmpty());
  EXPECT_THAT(platform_.log->messages(), IsEmpty());
  ASSERT_EQ(ledger().records().size(), 1U);
  EXPECT_EQ(ledger().records()[0].state, PingState::suppressed);
  EXPECT_EQ(ledger().totals(), (PingTotals{.due = 1, .suppressed = 1}));
}

TEST_F(Tracking, FiresNothingWithoutAUrl) {
  XGlobalConfiguration::sharedInstance().enableDebugLogs = true;
  testing::internal::CaptureStderr();
  track("");
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("\n\nURL: (null)\n"));
  XGlobalConfiguration::sharedInstance().enableDebugLogs = false;
  track("(null)");
  track("(NULL)");
  platform_.runLoop->runPending();
  EXPECT_THAT(platform_.http->urls(), IsEmpty());
  EXPECT_EQ(ledger().totals(), PingTotals{});
}

TEST_F(Tracking, QuirkLogsAFailedPingAsSentButTheLedgerDoesNot) {
  track("http://nobody.test/i", "Click");
  track("tel:123", "Call");
  platform_.runLoop->runPending();
  EXPECT_THAT(platform_.log->messages(), Contains("Click sent successfully"));
  const auto& records = ledger().records();
  ASSERT_EQ(records.size(), 2U);
  EXPECT_EQ(records[0].state, PingState::failed);
  EXPECT_EQ(records[0].error->code, static_cast<int>(TransportError::cannotConnect));
  EXPECT_EQ(records[1].error->code, static_cast<int>(TransportError::unsupportedUrl));
  EXPECT_EQ(ledger().totals(), (PingTotals{.due = 2, .sent = 2, .failed = 2}));
}

TEST_F(Tracking, LedgerTellsEachStep) {
  std::vector<std::string> steps;
  const auto observer = std::make_shared<TrackingLedgerObserver>(
      TrackingLedgerObserver{.pingDidChange = [&](const PingRecord& record) {
        steps.push_back(record.context + " " + std::to_string(static_cast<int>(record.state)) +
                        " " + std::to_string(record.status));
      }});
  ledger().observer.set(observer);
  platform_.http->answer("http://t.test/i", {.status = 404, .delay = Seconds{1.5}});
  track("http://t.test/i", "Event");
  platform_.runLoop->advance(Seconds{2});
  EXPECT_THAT(steps, ElementsAre("Event 0 0", "Event 1 0", "Event 2 404"));
  EXPECT_EQ(ledger().records()[0].took, Seconds{1.5});
  EXPECT_EQ(ledger().records()[0].url.text(), "http://t.test/i");
}

TEST_F(Tracking, LedgerKeepsTheNewestAndCountsAll) {
  platform_.http->answer("", {});
  for (std::size_t i = 0; i < TrackingLedger::mostRecords + 10; ++i) {
    track("http://t.test/" + std::to_string(i));
    platform_.runLoop->runPending();
  }
  EXPECT_EQ(ledger().records().size(), TrackingLedger::mostRecords);
  EXPECT_EQ(ledger().records().front().url.text(), "http://t.test/10");
  EXPECT_EQ(ledger().totals().answered, TrackingLedger::mostRecords + 10);
}

TEST(PingWindow, GrowsWithTheRoundTrip) {
  struct Row {
    double roundTrip;
    int most;
    int size;
  };
  constexpr Row rows[] = {{0.0002, 6, 2}, {0.0049, 6, 2},   {0.005, 6, 6}, {0.005, 48, 10},
                          {0.02, 48, 40}, {0.5, 48, 48},    {0.02, 1, 1},  {0.02, 0, 1},
                          {1e9, 24, 24},  {INFINITY, 6, 6}, {0.001, 1, 1}};
  for (const auto& row : rows) {
    PingWindow window;
    EXPECT_EQ(window.size(48, 0), 2);
    window.answered(Seconds{row.roundTrip});
    for (int i = 0; i < 2; ++i) window.answered(Seconds{row.roundTrip + 1});
    EXPECT_EQ(window.size(48, 0), 2) << row.roundTrip;  // too early to tell
    window.answered(Seconds{row.roundTrip + 1});        // a slow one says nothing about the road
    EXPECT_EQ(window.size(row.most, 0), row.size) << row.roundTrip;
  }
}

TEST(PingWindow, GrowsWithTheQueueBeforeTheFirstAnswer) {
  struct Row {
    std::size_t waiting;
    int most;
    int size;
  };
  constexpr Row rows[] = {{31, 6, 2}, {32, 6, 3}, {128, 6, 6}, {5'000, 6, 6}, {5'000, 2, 2}};
  for (const auto& row : rows) {
    EXPECT_EQ(PingWindow{}.size(row.most, row.waiting), row.size) << row.waiting;
  }
}

TEST(PingStreams, FollowWhatComesBackInTime) {
  struct Row {
    double first;
    double others;
    int size;
  };
  constexpr Row rows[] = {{0.02, 0.02, 64},  {0.02, 0.029, 64},  {0.02, 0.04, 32},
                          {0.02, 0.06, 16},  {0.001, 0.005, 64}, {0.001, 0.009, 32},
                          {0.001, 0.02, 16}, {1, 10, 16}};
  for (const auto& row : rows) {
    PingStreams streams;
    EXPECT_EQ(streams.size(), 32);
    streams.answered(Seconds{row.first});
    for (int i = 1; i < 32; ++i) streams.answered(Seconds{row.others});
    EXPECT_EQ(streams.size(), row.size) << row.first << " " << row.others;
  }
}

TEST(PingStreams, StayBetweenSixAndTwoHundredAndFiftySix) {
  PingStreams fast;
  PingStreams slow;
  slow.answered(Seconds{0.001});
  for (int i = 0; i < 2'000; ++i) {
    fast.answered(Seconds{0.02});
    slow.answered(Seconds{1});
  }
  EXPECT_EQ(fast.size(), 256);
  EXPECT_EQ(slow.size(), 6);
}

// Counts what is under way to each URL, and what leaves in one turn of the loop.
class CountingHttp : public HttpClient {
 public:
  CountingHttp(std::shared_ptr<HttpClient> carrier, std::shared_ptr<RunLoop> runLoop)
      : carrier_{std::move(carrier)}, runLoop_{std::move(runLoop)} {}
  std::shared_ptr<Exchange> send(HttpRequest request, HttpCompletion completion) override {
    const std::string url = request.url.text();
    most[url] = std::max(most[url], ++underWay_[url]);
    if (inTurn_ == 0) runLoop_->post([this] { inTurn_ = 0; });
    mostInTurn = std::max(mostInTurn, ++inTurn_);
    return carrier_->send(std::move(request),
                          [this, url, completion = std::move(completion)](const auto& result) {
                            --underWay_[url];
                            completion(result);
                          });
  }
  std::map<std::string, int> most;
  int mostInTurn = 0;

 private:
  std::shared_ptr<HttpClient> carrier_;
  std::shared_ptr<RunLoop> runLoop_;
  int inTurn_ = 0;
  std::map<std::string, int> underWay_;
};

TEST(PingQueue, SharedConnectionsAreNotCountedOneByOne) {
  Limits limits = smallLimits();
  limits.queuedPings = limits.queuedPingsPerHost = 400;
  headless::HeadlessPlatform headless{limits};
  headless.http->answer("", {.delay = Seconds{0.1}});
  headless.http->answer("https://shared.test/", {.delay = Seconds{0.1}, .sharedConnection = true});
  Platform platform = headless.platform();
  const auto http = std::make_shared<CountingHttp>(headless.http, headless.runLoop);
  platform.http = http;
  const Runtime runtime{platform};
  const auto track = [&](const std::string& url, int count) {
    for (int i = 0; i < count; ++i) {
      XTrackingRequest::sendAsynchronousRequest(*runtime.environment(), Url::parse(url), "ping",
                                                nullptr);
    }
  };
  track("https://shared.test/", 100);
  track("https://SHARED.test:443/", 100);  // the same server
  track("https://shared.test:8443/", 40);  // others of the same host
  track("http://shared.test/", 40);
  track("https://own.test/", 40);
  const auto& totals = TrackingLedger::sharedInstance().totals();
  for (int step = 0; step < 10'000 && totals.answered < totals.due; ++step) {
    headless.runLoop->advance(Seconds{0.01});
  }
  EXPECT_EQ(totals.answered, 320U);
  EXPECT_GT(http->most["https://shared.test/"], 32);
  EXPECT_GT(http->most["https://SHARED.test:443/"], 6);
  EXPECT_LE(http->most["https://shared.test:8443/"], 6);
  EXPECT_LE(http->most["http://shared.test/"], 6);
  EXPECT_LE(http->most["https://own.test/"], 6);
  EXPECT_LE(http->mostInTurn, 20) << "the loop has a turn between";
}

TEST_F(Tracking, TellsABurstTogetherWithinAMoment) {
  const auto answeredAfter = [&](double seconds) {
    platform_.runLoop->advance(Seconds{seconds});
    return ledger().totals().answered;
  };
  platform_.http->answer("", {.delay = Seconds{0.001}});
  for (int i = 0; i < 6; ++i) track("http://t.test/" + std::to_string(i));
  EXPECT_EQ(answeredAfter(0.0015), 0U) << "others wait";
  EXPECT_EQ(platform_.http->urls().size(), 4U) << "the next leave with the answers";
  EXPECT_EQ(answeredAfter(0.001), 4U) << "none waits any more";
  EXPECT_EQ(answeredAfter(0.001), 6U);

  platform_.http->forget("");
  for (const bool isSilent : {false, false, true}) {
    platform_.http->answer("", {.delay = Seconds{0.001}, .neverAnswers = isSilent});
  }
  for (int i = 0; i < 6; ++i) track("http://t.test/" + std::to_string(i));
  EXPECT_EQ(answeredAfter(0.0015), 6U);
  EXPECT_EQ(answeredAfter(0.005), 8U) << "the others may never come";
}

// Where the answers of pings are dealt with.
class ThreadLog : public Log {
 public:
  explicit ThreadLog(std::shared_ptr<RunLoop> runLoop) : runLoop_{std::move(runLoop)} {}
  void write(LogLevel /*level*/, std::string_view message) override {
    if (message == "ping sent successfully") onMain.push_back(runLoop_->isMainThread());
  }
  std::vector<bool> onMain;

 private:
  std::shared_ptr<RunLoop> runLoop_;
};

TEST(PingQueue, AnswersAreDealtWithOnAnotherThread) {
  const headless::HeadlessPlatform headless{smallLimits()};
  headless.http->answer("", {});
  Platform platform = headless.platform();
  const auto log = std::make_shared<ThreadLog>(headless.runLoop);
  platform.log = log;
  const Runtime runtime{platform};
  for (int i = 0; i < 4; ++i) {
    XTrackingRequest::sendAsynchronousRequest(*runtime.environment(), Url::parse("http://t.test/"),
                                              "ping", nullptr);
  }
  headless.runLoop->advance(Seconds{1});
  EXPECT_EQ(log->onMain, std::vector<bool>(4, false));
}

TEST_F(Tracking, KeepsToAWindowPerHostAndInAll) {
  platform_.http->answer("", {.delay = Seconds{0.001}});
  for (int i = 0; i < 20; ++i) track("http://near.test/" + std::to_string(i));
  EXPECT_EQ(run(), 2);

  platform_.http->answer("", {.delay = Seconds{0.1}});
  track("http://near.test/last");  // takes the last quick answer
  run();
  for (int i = 0; i < 20; ++i) track("http://far.test/" + std::to_string(i));
  EXPECT_EQ(run(), 6);
  for (int i = 0; i < 20; ++i) {
    track("http://far" + std::string(i % 2 == 0 ? "" : "ther") + ".test/" + std::to_string(i));
  }
  for (int i = 0; i < 8; ++i) track("http://farthest.test/" + std::to_string(i));
  EXPECT_EQ(run(), 8);
  EXPECT_EQ(ledger().totals().answered, 69U);
}

TEST_F(Tracking, LetsHostsTakeTurns) {
  platform_.http->answer("", {.delay = Seconds{0.001}});
  for (int i = 0; i < 10; ++i) track("http://many.test/" + std::to_string(i));
  track("http://one.test/");
  platform_.runLoop->runPending();
  EXPECT_THAT(platform_.http->urls(),
              ElementsAre("http://many.test/0", "http://many.test/1", "http://one.test/"));
  run();
  EXPECT_EQ(ledger().totals().answered, 11U);
}

TEST_F(Tracking, DropsWhatTheQueueCannotHold) {
  platform_.http->answer("", {});
  for (int i = 0; i < 30; ++i) track("http://t.test/" + std::to_string(i));
  EXPECT_EQ(ledger().totals().dropped, 8U);  // 2 on their way, 20 wait
  EXPECT_EQ(ledger().records().back().state, PingState::dropped);
  run();
  EXPECT_EQ(platform_.http->urls().size(), 22U);
}

Limits boundsPerHost() {
  Limits limits = smallLimits();
  limits.queuedPingsPerHost = 6;
  limits.queuedPings = 8;
  return limits;
}

class TrackingBounds : public Tracking {
 protected:
  TrackingBounds() : Tracking{boundsPerHost()} {}
  void trackMany(const std::string& host, int count) {
    for (int i = 1; i <= count; ++i) track("http://" + host + ".test/" + std::to_string(i));
  }
  std::vector<std::string> dropped() {
    std::vector<std::string> urls;
    for (const auto& record : ledger().records()) {
      if (record.state == PingState::dropped) urls.push_back(record.url.text());
    }
    return urls;
  }
};

TEST_F(TrackingBounds, ASilentHostTakesNoRoomFromTheOthers) {
  for (int i = 0; i < 2; ++i)
    platform_.http->answer("http://silent.test/1", {.neverAnswers = true});
  platform_.http->answer("", {});
  trackMany("silent", 10);  // 2 on their way, 6 wait
  trackMany("healthy", 4);
  EXPECT_THAT(dropped(), ElementsAre("http://silent.test/9", "http://silent.test/10"));
  EXPECT_THAT(platform_.log->messages(), Contains(HasSubstr("dropped")).Times(2));
}

TEST_F(TrackingBounds, TheLongestQueueMakesRoom) {
  platform_.http->answer("", {.neverAnswers = true});
  trackMany("long", 8);   // 2 on their way, 6 wait
  trackMany("short", 5);  // 2 on their way, 3 wait
  EXPECT_THAT(dropped(), ElementsAre("http://long.test/8"));
  trackMany("another", 20);
  EXPECT_EQ(queue().waiting(), 8U);
}

TEST_F(Tracking, LooksAtTheNetworkAgainBeforeAPingLeaves) {
  platform_.http->answer("", {.delay = Seconds{0.01}});
  for (int i = 0; i < 5; ++i) track("http://t.test/" + std::to_string(i), "Event");
  platform_.network->setReachable(false);
  run();
  EXPECT_EQ(ledger().totals(), (PingTotals{.due = 5, .sent = 2, .answered = 2, .suppressed = 3}));
  EXPECT_EQ(platform_.http->urls().size(), 2U);
  EXPECT_THAT(platform_.log->messages(), Contains("Event sent successfully").Times(2));
}

TEST_F(Tracking, AnswersThatComeAfterTheEndAreHarmless) {
  {
    const Runtime inner{platform_.another()};
    platform_.http->answer("", {.delay = Seconds{1}});
    track("http://t.test/late");
    EXPECT_EQ(ledger().totals().sent, 1U);
  }
  platform_.runLoop->advance(Seconds{2});
  EXPECT_THAT(platform_.log->messages(), Not(Contains(HasSubstr("sent successfully"))));
  EXPECT_EQ(ledger().totals(), PingTotals{});
}

TEST_F(Tracking, TrackerSendsImpressionsEveryTimeAndTheUrlsOfAnEvent) {
  platform_.http->answer("", {});
  XAdTracker tracker{Runtime::current().environment()};
  tracker.trackImpressions();
  tracker.impressionURLs = {Url::parse("http://t.test/1"), Url::parse("http://t.test/2")};
  tracker.trackingEvents["start"] = std::map<std::string, Url>{
      {"b", Url::parse("http://t.test/b")}, {"a", Url::parse("http://t.test/a")}};
  tracker.trackingEvents["list"] = std::vector<Url>{Url::parse("http://t.test/c")};
  for (int time = 0; time < 2; ++time) tracker.trackImpressions();
  for (const char* event : {"start", "list", "unknown"}) tracker.trackEvent(event);
  run();
  EXPECT_THAT(platform_.http->urls(),
              ElementsAre("http://t.test/1", "http://t.test/2", "http://t.test/1",
                          "http://t.test/2", "http://t.test/a", "http://t.test/b"));
  EXPECT_EQ(ledger().records()[4].context, "trackEvent: start (a)");
  const auto& log = platform_.log->messages();
  EXPECT_THAT(log, Contains("trackImpressions sent successfully"));
  EXPECT_THAT(log, Contains(HasSubstr("[XAdTracker trackEvent:] [Line 48] <0x")));
  EXPECT_THAT(log, Contains(HasSubstr("> url: http://t.test/b")));
}

}  // namespace
}  // namespace tavo::test
