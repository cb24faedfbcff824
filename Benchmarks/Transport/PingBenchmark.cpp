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
#include "Report.h"
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

Cost bare(const PingServer& server, const std::vector<std::string>& urls, int connections = 0) {
  BareBurst burst{connections};
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

std::vector<std::string> burst(const PingServer& server, int count, int hosts,
                               const std::string& path) {
  std::vector<std::string> urls;
  for (int i = 0; i < count; ++i) {
    urls.push_back(server.address(i % hosts + 1) + path + std::to_string(i));
  }
  return urls;
}

// Rounds of one burst, ours and bare in turns.
struct Bursts {
  std::vector<Cost> ours;
  std::vector<Cost> bare;

  Bursts(const PingServer& server, const std::vector<std::string>& urls, int connections) {
    constexpr int rounds = 3;
    for (int round = 0; round < rounds; ++round) {
      bare.push_back(benchmarks::bare(server, urls));
      ours.push_back(benchmarks::ours(server, urls, connections));
    }
  }
  static std::vector<double> each(const std::vector<Cost>& costs, double Cost::*part) {
    std::vector<double> values;
    for (const auto& cost : costs) values.push_back(cost.*part);
    return values;
  }
  [[nodiscard]] std::vector<double> ofOurs(double Cost::*part) const { return each(ours, part); }
  [[nodiscard]] std::vector<double> ofBare(double Cost::*part) const { return each(bare, part); }
};

void reportStall(Report& report, const std::string& what, const Bursts& bursts) {
  report.value(what + ", longest stall", 1e3 * median(bursts.ofOurs(&Cost::longestStall)), "ms",
               atMost(5));
}

void oneHost(Report& report, const PingServer& server) {
  const std::string what = "5,000 pings to one host";
  const Bursts bursts{server, burst(server, 5'000, 1, "/"), 0};
  report.faster(what, bursts.ofOurs(&Cost::seconds), bursts.ofBare(&Cost::seconds), "s",
                atLeast(9));
  report.ratio(what + ", processor", bursts.ofOurs(&Cost::cpu), bursts.ofBare(&Cost::cpu), "s",
               atMost(0.12));
  report.ratio(what + ", first turn", bursts.ofOurs(&Cost::turn), bursts.ofBare(&Cost::turn), "s",
               {});
  reportStall(report, what, bursts);
}

void tenHosts(Report& report, const PingServer& server) {
  const std::string what = "1,000 pings to ten hosts";
  const Bursts bursts{server, burst(server, 1'000, 10, "/"), 0};
  report.faster(what, bursts.ofOurs(&Cost::seconds), bursts.ofBare(&Cost::seconds), "s",
                atLeast(1.5));
  reportStall(report, what, bursts);
}

// No more connections than a browser opens to a host, each waiting for its answers.
void farHost(Report& report, const PingServer& server) {
  const std::string what = "500 pings, answers of 20 ms";
  constexpr double pings = 500;
  constexpr double connections = 6;
  constexpr double answer = 0.02;
  const auto urls = burst(server, static_cast<int>(pings), 1, "/slow/");
  const Bursts bursts{server, urls, 0};
  report.faster(what, bursts.ofOurs(&Cost::seconds), bursts.ofBare(&Cost::seconds), "s", {});
  report.value(what + ", of what six connections can",
               pings / connections * answer / median(bursts.ofOurs(&Cost::seconds)), "",
               atLeast(0.95));
  report.value(what + ", of what six can, bare",
               pings / connections * answer / bare(server, urls, 6).seconds, "", {});
  const Bursts wide{server, urls, 48};
  report.faster("the same, 48 connections", wide.ofOurs(&Cost::seconds),
                wide.ofBare(&Cost::seconds), "s", {});
}

}  // namespace
}  // namespace tavo::benchmarks

int main() {
  using namespace tavo::benchmarks;
  const PingServer server;
  Report report{"PingBenchmark"};
  oneHost(report, server);
  tenHosts(report, server);
  farHost(report, server);
  return report.finish();
}
