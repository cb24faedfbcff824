#include <glib.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "PingBurst.h"
#include "PingServer.h"
#include "Report.h"
#include "TlsFront.h"

namespace tavo::benchmarks {
namespace {

void reportStall(Report& report, const std::string& what, const std::vector<Cost>& costs) {
  report.value(what + ", longest stall", 1e3 * median(Bursts::each(costs, &Cost::longestStall)),
               "ms", atMost(5));
  report.value(what + ", of it processor in one turn",
               1e3 * median(Bursts::each(costs, &Cost::longestTurn)), "ms", {});
}

void oneHost(Report& report, const PingServer& server) {
  const std::string what = "5,000 pings to one host";
  const auto urls = burst(server, 5'000, 1, "/");
  const Bursts bursts{urls, 0};
  report.faster(what, bursts.ofOurs(&Cost::seconds), bursts.ofBare(&Cost::seconds), "s",
                atLeast(9));
  report.ratio(what + ", processor", bursts.ofOurs(&Cost::cpu), bursts.ofBare(&Cost::cpu), "s",
               atMost(0.12));
  const Cost floor = byHand(urls, 6);
  report.value(what + ", floor by hand", floor.seconds, "s", {});
  report.value(what + ", processor, floor by hand", floor.cpu, "s", {});
  report.ratio(what + ", first turn", bursts.ofOurs(&Cost::turn), bursts.ofBare(&Cost::turn), "s",
               {});
  reportStall(report, what, bursts.ours);
}

void tenHosts(Report& report, const PingServer& server) {
  const std::string what = "1,000 pings to ten hosts";
  const Bursts bursts{burst(server, 1'000, 10, "/"), 0};
  report.faster(what, bursts.ofOurs(&Cost::seconds), bursts.ofBare(&Cost::seconds), "s",
                atLeast(1.5));
  reportStall(report, what, bursts.ours);
}

// No more connections than a browser opens to a host, each waiting for its answers.
void farHost(Report& report, const PingServer& server) {
  const std::string what = "500 pings, answers of 20 ms";
  constexpr double pings = 500;
  constexpr double connections = 6;
  constexpr double answer = 0.02;
  const auto urls = burst(server, static_cast<int>(pings), 1, "/slow/");
  const Bursts bursts{urls, 0};
  report.faster(what, bursts.ofOurs(&Cost::seconds), bursts.ofBare(&Cost::seconds), "s", {});
  report.value(what + ", of what six connections can",
               pings / connections * answer / median(bursts.ofOurs(&Cost::seconds)), "",
               atLeast(0.95));
  report.value(what + ", of what six can, floor by hand",
               pings / connections * answer / byHand(urls, 6).seconds, "", {});
  const Bursts wide{urls, 48};
  report.faster("the same, 48 connections", wide.ofOurs(&Cost::seconds),
                wide.ofBare(&Cost::seconds), "s", {});
}

// How long a load generator takes that does nothing with the answers, in seconds; 0 for none.
double floorOf(const std::string& url, std::size_t pings, const std::string& roads) {
  const std::string command =
      "h2load " + roads + " --requests=" + std::to_string(pings) + " " + url + "/slow/";
  gchar* said = nullptr;
  g_spawn_command_line_sync(command.c_str(), &said, nullptr, nullptr, nullptr);
  const std::string text = said == nullptr ? "" : said;
  g_free(said);
  const std::string before = "finished in ";
  const auto at = text.find(before);
  if (at == std::string::npos) return 0;
  char* unit = nullptr;
  const double number = std::strtod(text.c_str() + at + before.size(), &unit);
  return *unit == 'm' ? number / 1e3 : number;
}

// The same server over one connection that carries many requests, and over six that carry one each.
void httpTwo(Report& report, const PingServer& server) {
  const std::string what = "2,000 pings over HTTP/2, beside six of HTTP/1.1";
  constexpr int pings = 2'000;
  const TlsFront front{server};
  if (!front.isRunning()) return report.failed(what);
  const auto urls = [](const std::string& address) {
    std::vector<std::string> all;
    for (int i = 0; i < pings; ++i) all.push_back(address + "/slow/" + std::to_string(i));
    return all;
  };
  std::vector<Cost> one;
  std::vector<Cost> two;
  std::vector<double> floorTwo;
  constexpr int rounds = 3;
  for (int round = 0; round < rounds; ++round) {
    one.push_back(ours(urls(front.httpOne()), 0));
    two.push_back(ours(urls(front.httpTwo()), 0));
    floorTwo.push_back(
        floorOf(front.httpTwo(), pings,
                "--clients=1 --max-concurrent-streams=" + std::to_string(TlsFront::granted)));
  }
  report.faster(what, Bursts::each(two, &Cost::seconds), Bursts::each(one, &Cost::seconds), "s",
                atLeast(15));
  report.ratio("2,000 pings over HTTP/2, beside the floor h2load",
               Bursts::each(two, &Cost::seconds), floorTwo, "s", {});
  reportStall(report, "2,000 pings over HTTP/2", two);
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
  httpTwo(report, server);
  return report.finish();
}
