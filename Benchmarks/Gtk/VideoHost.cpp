#include "VideoHost.h"

#include <tavo/MoviePlayerFactory.h>

#include "Services/HttpClient.h"
#include "Services/RunLoop.h"
#include "Services/WebViewFactory.h"

namespace tavo::benchmark {

namespace {

// Notes when an ad server's answer is there.
class NotingHttpClient : public HttpClient {
 public:
  NotingHttpClient(std::shared_ptr<HttpClient> client, std::shared_ptr<VideoTimes> times)
      : client_{std::move(client)}, times_{std::move(times)} {}

  std::shared_ptr<Exchange> send(HttpRequest request, HttpCompletion completion) override {
    if (request.url.path().find("/sdk/") == std::string_view::npos) {
      return client_->send(std::move(request), std::move(completion));
    }
    return client_->send(std::move(request),
                         [times = times_, completion](const HttpResult& result) {
                           times->answers.push_back(Clock::now());
                           completion(result);
                         });
  }

 private:
  std::shared_ptr<HttpClient> client_;
  std::shared_ptr<VideoTimes> times_;
};

// Notes how long each look at the progress takes; nothing else repeats each half second.
class NotingRunLoop : public RunLoop {
 public:
  NotingRunLoop(std::shared_ptr<RunLoop> loop, std::shared_ptr<VideoTimes> times)
      : loop_{std::move(loop)}, times_{std::move(times)} {}

  void post(std::function<void()> task) override { loop_->post(std::move(task)); }
  Timer after(Seconds delay, std::function<void()> task) override {
    return loop_->after(delay, std::move(task));
  }
  Timer every(Seconds period, std::function<void()> tick) override {
    if (period != Seconds{0.5}) return loop_->every(period, std::move(tick));
    return loop_->every(period, [times = times_, tick = std::move(tick)] {
      const auto start = Clock::now();
      auto& noted = *times;  // the host's; a tick may end its own timer, and this with it
      tick();
      noted.ticks.push_back(millisecondsSince(start));
    });
  }
  void background(std::function<void()> task) override { loop_->background(std::move(task)); }
  Seconds now() const override { return loop_->now(); }
  Date today() const override { return loop_->today(); }
  bool isMainThread() const override { return loop_->isMainThread(); }

 private:
  std::shared_ptr<RunLoop> loop_;
  std::shared_ptr<VideoTimes> times_;
};

}  // namespace

VideoHost::VideoHost()
    : host_{TAVO_CAMPAIGNS, [times = times_](Platform& platform) {
              platform.http = std::make_shared<NotingHttpClient>(platform.http, times);
              platform.runLoop = std::make_shared<NotingRunLoop>(platform.runLoop, times);
            }} {
  // An application asks for it once in its life, on the day it is installed.
  static_cast<void>(Runtime::current().platform().webViews->userAgent());
}

VideoHost::~VideoHost() {
  if (slot_) host_.column().remove(*slot_);
}

void VideoHost::makePlayer() {
  player_ = Runtime::current().platform().moviePlayers->create({0, 0, 320, 180});
  slot_ = std::make_unique<gtk::MovieSlot>(player_);
  host_.column().prepend(*slot_);
}

double VideoHost::prepare() {
  host_.banner()->setMoviePlayerInstance(player_);
  return sinceAnswer([this] { return player_->isPreparedToPlay(); });
}

double VideoHost::playInterstitial() {
  host_.banner()->setMobileAdTypes(MobileAdTypes::interstitial);
  const auto calls = host_.calls().size();
  return sinceAnswer([this, calls] { return host_.calls().size() > calls; });
}

double VideoHost::sinceAnswer(const std::function<bool()>& done) {
  host_.load("vast-preroll");
  turnUntil(done);
  return millisecondsSince(times_->answers.back());
}

void VideoHost::turnUntil(const std::function<bool()>& done) {
  const auto deadline = Clock::now() + std::chrono::seconds{30};
  const Timer waker = Runtime::current().platform().runLoop->every(Seconds{1}, [] {});
  while (!done() && Clock::now() < deadline) g_main_context_iteration(nullptr, TRUE);
}

void VideoHost::turnFor(std::chrono::milliseconds time) {
  bool over = false;
  const Timer end =
      Runtime::current().platform().runLoop->after(Seconds{time}, [&] { over = true; });
  turnUntil([&] { return over; });
}

std::string VideoHost::clipUrl() {
  return host_.server().baseUrl() + "/assets/vast-preroll/clip.mp4";
}

}  // namespace tavo::benchmark
