// Starts a host of the library and a program linked with the web engine in turns, and compares how
// long each takes to its first own statement and what it occupies there.
#include <glib.h>
#include <time.h>

#include <cstdio>
#include <string>
#include <vector>

#include "Report.h"

namespace {

constexpr int rounds = 40;

struct Starts {
  std::vector<double> milliseconds;
  std::vector<double> megabytes;
};

void startOnce(const char* program, Starts& starts) {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  char* output = nullptr;
  char* arguments[] = {const_cast<char*>(program), nullptr};
  if (g_spawn_sync(nullptr, arguments, nullptr, G_SPAWN_DEFAULT, nullptr, nullptr, &output, nullptr,
                   nullptr, nullptr) == FALSE) {
    return;
  }
  long long reached = 0;
  long pages = 0;
  if (std::sscanf(output, "%lld %ld", &reached, &pages) == 2) {
    const long long begun = static_cast<long long>(now.tv_sec) * 1'000'000'000 + now.tv_nsec;
    starts.milliseconds.push_back(static_cast<double>(reached - begun) / 1e6);
    starts.megabytes.push_back(static_cast<double>(pages) * 4096 / 1e6);
  }
  g_free(output);
}

}  // namespace

int main() {
  Starts ours;
  Starts web;
  Starts cold;
  startOnce(TAVO_STARTED_HOST, cold);
  startOnce(TAVO_STARTED_WEB_PROGRAM, cold);
  for (int round = 0; round < rounds; ++round) {
    startOnce(TAVO_STARTED_HOST, ours);
    startOnce(TAVO_STARTED_WEB_PROGRAM, web);
  }
  using tavo::benchmarks::atMost;
  tavo::benchmarks::Report report{"StartBenchmark"};
  report.ratio("start of an image host, time to main", ours.milliseconds, web.milliseconds, "ms",
               atMost(0.3));
  report.ratio("start of an image host, resident memory", ours.megabytes, web.megabytes, "MB",
               atMost(0.35));
  return report.finish();
}
