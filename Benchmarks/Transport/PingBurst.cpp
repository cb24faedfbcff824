#include "PingBurst.h"

#include <glib.h>
#include <libsoup/soup.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>
#include <memory>

#include <tavo/Runtime.h>
#include <tavo/TrackingLedger.h>

#include "Gtk/Http/GtkCookieStore.h"
#include "Gtk/Http/GtkHttpClient.h"
#include "Gtk/Services/GtkRunLoop.h"
#include "Headless/HeadlessPlatform.h"
#include "OnlineRequest/XTrackingRequest.h"
#include "Utilities/XUserAgent.h"

namespace tavo::benchmarks {

namespace {

double now() { return static_cast<double>(g_get_monotonic_time()) / 1e6; }

// Of this thread, in seconds.
double threadTime() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

double cpuTime() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

// How long the loop did not come round, watched by a timer of one millisecond.
class StallWatch {
 public:
  StallWatch() : last_{now()}, source_{g_timeout_add(1, &tick, this)} {}
  ~StallWatch() { g_source_remove(source_); }
  StallWatch(const StallWatch&) = delete;
  StallWatch& operator=(const StallWatch&) = delete;

  [[nodiscard]] double longest() const { return std::max(longest_, now() - last_); }

 private:
  static gboolean tick(gpointer data) {
    auto& self = *static_cast<StallWatch*>(data);
    const double time = now();
    self.longest_ = std::max(self.longest_, time - self.last_);
    self.last_ = time;
    return G_SOURCE_CONTINUE;
  }

  double last_;
  double longest_ = 0;
  guint source_;
};

// Runs `start`, then the loop until `isDone`.
Cost measured(const std::function<void()>& start, const std::function<bool()>& isDone) {
  const double cpuBefore = cpuTime();
  const double before = now();
  const StallWatch watch;
  start();
  const double turn = cpuTime() - cpuBefore;
  double longestTurn = turn;
  while (!isDone()) {
    const double turnBefore = threadTime();
    g_main_context_iteration(nullptr, TRUE);
    longestTurn = std::max(longestTurn, threadTime() - turnBefore);
  }
  return {now() - before, watch.longest(), cpuTime() - cpuBefore, turn, longestTurn};
}

struct BareBurst {
  SoupSession* session;
  std::size_t answered = 0;

  // As many connections to a host as a session has of itself, or so many.
  explicit BareBurst(int connections)
      : session{connections == 0
                    ? soup_session_new()
                    : soup_session_new_with_options("max-conns-per-host", connections, nullptr)} {}

  void send(const std::string& url) {
    SoupMessage* message = soup_message_new("GET", url.c_str());
    soup_session_send_and_read_async(session, message, G_PRIORITY_DEFAULT, nullptr, &finished,
                                     this);
    g_object_unref(message);
  }
  static void finished(GObject* session, GAsyncResult* result, gpointer data) {
    GBytes* body = soup_session_send_and_read_finish(SOUP_SESSION(session), result, nullptr);
    if (body != nullptr) g_bytes_unref(body);
    ++static_cast<BareBurst*>(data)->answered;
  }
};

// So many under way at a time, each of which sends the next one.
struct HandBurst {
  SoupSession* session;
  const std::vector<std::string>& urls;
  std::size_t sent = 0;
  std::size_t answered = 0;

  void send() {
    if (sent == urls.size()) return;
    SoupMessage* message = soup_message_new("GET", urls[sent++].c_str());
    soup_session_send_async(session, message, G_PRIORITY_DEFAULT, nullptr, &finished, this);
    g_object_unref(message);
  }
  static void finished(GObject* session, GAsyncResult* result, gpointer data) {
    GInputStream* stream = soup_session_send_finish(SOUP_SESSION(session), result, nullptr);
    char bytes[64];
    if (stream != nullptr) {
      while (g_input_stream_read(stream, bytes, sizeof bytes, nullptr, nullptr) > 0) continue;
      g_object_unref(stream);
    }
    auto& self = *static_cast<HandBurst*>(data);
    ++self.answered;
    self.send();
  }
};

// The log's cost is the terminal's.
class NoLog : public Log {
 public:
  void write(LogLevel /*level*/, std::string_view /*message*/) override {}
};

}  // namespace

std::vector<std::string> burst(const PingServer& server, int count, int hosts,
                               const std::string& path) {
  std::vector<std::string> urls;
  for (int i = 0; i < count; ++i) {
    urls.push_back(server.address(i % hosts + 1) + path + std::to_string(i));
  }
  return urls;
}

Cost ours(const std::vector<std::string>& urls, int connections) {
  Limits limits;
  limits.queuedPings = limits.queuedPingsPerHost = urls.size();
  limits.pingConnectionsPerHost = std::max(connections, limits.pingConnectionsPerHost);
  limits.pingConnections = std::max(connections, limits.pingConnections);
  Platform platform = headless::HeadlessPlatform{limits}.platform();
  const auto runLoop = std::make_shared<gtk::GtkRunLoop>();
  platform.runLoop = runLoop;
  platform.cookies = std::make_shared<gtk::GtkCookieStore>(runLoop, ":memory:");
  platform.http = std::make_shared<gtk::GtkHttpClient>(runLoop, platform.cookies, limits);
  platform.log = std::make_shared<NoLog>();
  Runtime runtime{platform};
  static_cast<void>(XUserAgent::sharedProvider(*Runtime::current().environment()).userAgent());

  const auto& totals = TrackingLedger::sharedInstance().totals();
  const Cost cost = measured(
      [&] {
        for (const auto& url : urls) {
          XTrackingRequest::sendAsynchronousRequest(*Runtime::current().environment(),
                                                    Url::parse(url), "burst", nullptr);
        }
      },
      [&] { return totals.answered + totals.failed == urls.size(); });
  if (totals.answered != urls.size()) std::printf("%zu pings failed\n", std::size_t{totals.failed});
  return cost;
}

Cost bare(const std::vector<std::string>& urls, int connections) {
  BareBurst burst{connections};
  const Cost cost = measured(
      [&] {
        for (const auto& url : urls) burst.send(url);
      },
      [&] { return burst.answered == urls.size(); });
  g_object_unref(burst.session);
  return cost;
}

Cost byHand(const std::vector<std::string>& urls, int connections) {
  HandBurst burst{soup_session_new_with_options("max-conns-per-host", connections, nullptr), urls};
  const Cost cost = measured(
      [&] {
        for (int i = 0; i < connections; ++i) burst.send();
      },
      [&] { return burst.answered == urls.size(); });
  g_object_unref(burst.session);
  return cost;
}

Bursts::Bursts(const std::vector<std::string>& urls, int connections) {
  constexpr int rounds = 3;
  for (int round = 0; round < rounds; ++round) {
    bare.push_back(benchmarks::bare(urls));
    ours.push_back(benchmarks::ours(urls, connections));
  }
}

}  // namespace tavo::benchmarks
