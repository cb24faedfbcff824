#include <cmath>
#include <map>

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
  EXPECT_EQ(request.completionThread, CompletionThread::background);
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
    EXPECT_EQ(window.size(48), 2);
    window.answered(Seconds{row.roundTrip});
    for (int i = 0; i < 2; ++i) window.answered(Seconds{row.roundTrip + 1});
    EXPECT_EQ(window.size(48), 2) << row.roundTrip;  // too early to tell
    window.answered(Seconds{row.roundTrip + 1});     // a slow one says nothing about the road
    EXPECT_EQ(window.size(row.most), row.size) << row.roundTrip;
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

// A client whose servers carry many requests over one connection.
class SharingHttp : public HttpClient, public SharedConnections {
 public:
  explicit SharingHttp(std::shared_ptr<HttpClient> carrier) : carrier_{std::move(carrier)} {}
  std::shared_ptr<Exchange> send(HttpRequest request, HttpCompletion completion) override {
    return carrier_->send(std::move(request), std::move(completion));
  }
  bool sharesConnection(const Url& url) const override { return url.host() == "shared.test"; }

 private:
  std::shared_ptr<HttpClient> carrier_;
};

TEST(PingQueue, SharedConnectionsAreNotCountedOneByOne) {
  Limits limits = smallLimits();
  limits.queuedPings = limits.queuedPingsPerHost = 400;
  headless::HeadlessPlatform headless{limits};
  headless.http->answer("", {.delay = Seconds{0.1}});
  Platform platform = headless.platform();
  platform.http = std::make_shared<SharingHttp>(headless.http);
  const Runtime runtime{platform};
  auto& queue = runtime.environment()->shared<PingQueue>();
  std::map<std::string, int> most;
  std::map<std::string, int> underWay;
  const auto add = [&](const std::string& host, int count) {
    for (int i = 0; i < count; ++i) {
      queue.add({.url = Url::parse("https://" + host + "/" + std::to_string(i)),
                 .prepare = [&, host]() -> std::optional<HttpRequest> {
                   most[host] = std::max(most[host], ++underWay[host]);
                   HttpRequest request;
                   request.url = Url::parse("https://" + host + "/");
                   return request;
                 },
                 .dropped = [] { FAIL(); },
                 .answered = [](const HttpResult&) {},
                 .settled = [&, host](const HttpResult&, Seconds) { --underWay[host]; }});
    }
  };
  add("shared.test", 300);
  add("own.test", 40);
  add("another.test", 40);
  for (int step = 0; step < 10'000 && (queue.waiting() > 0 || queue.underWay() > 0); ++step) {
    headless.runLoop->advance(Seconds{0.01});
  }
  EXPECT_GT(most["shared.test"], 32);
  EXPECT_LE(most["own.test"], 6);
  EXPECT_LE(most["another.test"], 6);
  EXPECT_EQ(queue.waiting(), 0U);
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
