// The refreshes of a banner, in memory: whether ten thousand of them leave anything behind, and
// what one costs beside the work that it cannot do without.
#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>

#include <tavo/Runtime.h>
#include <tavo/ViewController.h>
#include <tavo/XAdView.h>
#include <tavo/XURLBuilder.h>

#include "AdController/ResponseParser/XJSONResponseParser.h"
#include "AdInfo/XAdInfo.h"
#include "AdManager/AdVerdict.h"
#include "Headless/HeadlessPlatform.h"
#include "Report.h"
#include "Scene/Window.h"
#include "Services/Log.h"

namespace tavo::benchmark {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int refreshes = 10'000;
constexpr int settlingRounds = 1'000;
constexpr int timedRounds = 2'000;
constexpr const char* adUrl = "http://ads.example/x/sdk/page/@Bottom1";
constexpr const char* pictureUrl = "http://cdn.example/a.png";
const std::string noAd = R"({"Ad":[]})";
const std::string picture =
    R"({"Ad":[{"AdType":"image/png","FileUrl":"http://cdn.example/a.png",)"
    R"("ImpUrl":"http://track.example/i","ClkUrl":"http://click.example/"}]})";

// The in-memory log keeps every line for tests.
class NoLog : public Log {
 public:
  void write(LogLevel /*level*/, std::string_view /*message*/) override {}
};

Platform withoutLog(Platform platform) {
  platform.log = std::make_shared<NoLog>();
  return platform;
}

class Host {
 public:
  Host() {
    window_->setRootViewController(root_);
    platform_.application->allWindows = {window_};
    platform_.http->answerWith(pictureUrl, "image/png", "image 640x100");
    platform_.http->answerWith("http://track.example/i", "image/gif", "image 1x1");
    settings_->bannerRefreshInterval = 30;
    banner_->setSlotConfiguration(settings_);
    root_->view()->addSubview(banner_);
  }
  ~Host() { platform_.application->allWindows.clear(); }
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  void answerWith(const std::string& body) {
    platform_.http->forget(adUrl);
    platform_.http->answerWith(adUrl, "application/json", body);
  }
  void load() {
    banner_->loadWithDomainName("ads.example/x", "page", "Bottom1");
    platform_.runLoop->runPending();
    forget();
  }
  void refresh() {
    platform_.runLoop->advance(Seconds{30});
    forget();
  }
  // What the request needs at least: its URL, the exchange, the answer's record, the verdict.
  void parts() {
    const Url url = XURLBuilder::URLWithDomainName("ads.example/x", "sdk", "page", "Bottom1", "",
                                                   "", settings_.get());
    bool empty = false;
    HttpRequest request;
    request.url = url;
    platform_.http->send(request, [&](const HttpResult& result) {
      const auto document = XJSONResponseParser::parseJSONResponseWithData(result.response->body);
      const XAdInfo info{&*document};
      empty = std::holds_alternative<NoAd>(classify(info, {}));
    });
    platform_.runLoop->runPending();
    if (!empty) std::printf("The parts came to another verdict.\n");
    forget();
  }

 private:
  void forget() { platform_.http->clearRequests(); }

  headless::HeadlessPlatform platform_;
  Runtime runtime_{withoutLog(platform_.platform())};
  std::shared_ptr<Window> window_ = std::make_shared<Window>(Rect{0, 0, 320, 480});
  std::shared_ptr<ViewController> root_ = std::make_shared<ViewController>();
  std::shared_ptr<XAdSlotConfiguration> settings_ = std::make_shared<XAdSlotConfiguration>();
  std::shared_ptr<XAdView> banner_ = XAdView::create({0, 0, 320, 50});
};

std::size_t bytesInUse() { return mallinfo2().uordblks; }

// Best of five: the rest is other people's load.
template <typename Work>
double microsecondsOf(Work work) {
  double best = 1e9;
  for (int repetition = 0; repetition < 5; ++repetition) {
    const auto start = Clock::now();
    for (int round = 0; round < timedRounds; ++round) work();
    const std::chrono::duration<double, std::micro> took = Clock::now() - start;
    best = std::min(best, took.count() / timedRounds);
  }
  return best;
}

void memory(benchmarks::Report& report) {
  Host host;
  host.answerWith(picture);
  host.load();
  for (int round = 0; round < settlingRounds; ++round) host.refresh();
  const std::size_t before = bytesInUse();
  for (int round = 0; round < refreshes; ++round) host.refresh();
  const auto grown = static_cast<double>(bytesInUse()) - static_cast<double>(before);
  report.value("10,000 refreshes of a picture, bytes grown", grown, "B", benchmarks::atMost(4096));
}

void time(benchmarks::Report& report) {
  Host host;
  host.answerWith(noAd);
  host.load();
  const double whole = microsecondsOf([&] { host.load(); });
  const double parts = microsecondsOf([&] { host.parts(); });
  report.ratio("request to verdict, beside its parts", {whole}, {parts}, "us", {});
}

}  // namespace
}  // namespace tavo::benchmark

int main() {
  tavo::benchmarks::Report report{"RefreshBenchmark"};
  tavo::benchmark::memory(report);
  tavo::benchmark::time(report);
  return report.finish();
}
