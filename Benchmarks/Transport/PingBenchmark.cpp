#include <glib.h>
#include <libsoup/soup.h>
#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <tavo/Runtime.h>
#include <tavo/TrackingLedger.h>

#include "Gtk/Http/GtkCookieStore.h"
#include "Gtk/Http/GtkHttpClient.h"
#include "Gtk/Services/GtkRunLoop.h"
#include "Headless/HeadlessPlatform.h"
#include "OnlineRequest/XTrackingRequest.h"
#include "PingServer.h"
#include "Utilities/XUserAgent.h"

namespace tavo::benchmarks {
namespace {

// What a burst of pings cost.
struct Cost {
  double seconds = 0;
  double longestStall = 0;  // of the main loop, in seconds
  double cpu = 0;           // of this process, in seconds
  double turn = 0;          // CPU time of the turn that handed all of them over, in seconds
  double sockets = 0;       // of the busiest host
};

double now() { return static_cast<double>(g_get_monotonic_time()) / 1e6; }

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

std::string fetched(const std::string& url) {
  SoupSession* session = soup_session_new();
  SoupMessage* message = soup_message_new("GET", url.c_str());
  GBytes* body = soup_session_send_and_read(session, message, nullptr, nullptr);
  gsize size = 0;
  const auto* bytes = static_cast<const char*>(g_bytes_get_data(body, &size));
  const std::string text{bytes, size};
  g_bytes_unref(body);
  g_object_unref(message);
  g_object_unref(session);
  return text;
}

// Runs `start`, then the loop until `isDone`.
Cost measured(const PingServer& server, const std::function<void()>& start,
              const std::function<bool()>& isDone) {
  fetched(server.address(1) + "/sockets");
  const double cpuBefore = cpuTime();
  const double before = now();
  const StallWatch watch;
  start();
  const double turn = cpuTime() - cpuBefore;
  while (!isDone()) g_main_context_iteration(nullptr, TRUE);
  Cost cost{now() - before, watch.longest(), cpuTime() - cpuBefore, turn, 0};
  cost.sockets = std::atof(fetched(server.address(1) + "/sockets").c_str());
  return cost;
}

struct BareBurst {
  SoupSession* session = soup_session_new();
  std::size_t answered = 0;

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

Cost bare(const PingServer& server, const std::vector<std::string>& urls) {
  BareBurst burst;
  const Cost cost = measured(
      server,
      [&] {
        for (const auto& url : urls) burst.send(url);
      },
      [&] { return burst.answered == urls.size(); });
  g_object_unref(burst.session);
  return cost;
}

// The log's cost is the terminal's.
class NoLog : public Log {
 public:
  void write(LogLevel /*level*/, std::string_view /*message*/) override {}
};

Cost ours(const PingServer& server, const std::vector<std::string>& urls, int connections) {
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
      server,
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

void compare(const char* what, const PingServer& server, const std::vector<std::string>& urls,
             int connections) {
  const Cost without = bare(server, urls);
  const Cost with = ours(server, urls, connections);
  std::printf("%-30s %8.3f s %8.3f s %6.1f x", what, without.seconds, with.seconds,
              without.seconds / with.seconds);
  std::printf("   stall %7.2f / %5.2f ms   first turn %6.2f / %5.2f ms", without.longestStall * 1e3,
              with.longestStall * 1e3, without.turn * 1e3, with.turn * 1e3);
  std::printf("   cpu %5.3f   sockets %2.0f / %2.0f\n", with.cpu / without.cpu, without.sockets,
              with.sockets);
}

std::vector<std::string> burst(const PingServer& server, int count, int hosts,
                               const std::string& path) {
  std::vector<std::string> urls;
  for (int i = 0; i < count; ++i) {
    urls.push_back(server.address(i % hosts + 1) + path + std::to_string(i));
  }
  return urls;
}

}  // namespace
}  // namespace tavo::benchmarks

int main() {
  using namespace tavo::benchmarks;
  const PingServer server;
  std::printf("%-30s %10s %10s %8s   (then: bare / ours)\n", "", "bare", "ours", "faster");
  compare("5,000 pings, one host", server, burst(server, 5'000, 1, "/"), 0);
  compare("1,000 pings, ten hosts", server, burst(server, 1'000, 10, "/"), 0);
  compare("500 pings, answers of 20 ms", server, burst(server, 500, 1, "/slow/"), 0);
  compare("the same, window up to 48", server, burst(server, 500, 1, "/slow/"), 48);
  return 0;
}
