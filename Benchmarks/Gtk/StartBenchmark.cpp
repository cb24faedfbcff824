// Starts a host of the library and a program linked with the web engine in turns, and compares how
// long each takes to its first own statement and what it occupies there, with a program of nothing
// but the toolkit and libsoup as the floor; and a host of one picture ad beside a program written
// by hand for just that.
#include <glib.h>
#include <time.h>

#include <cstdio>
#include <string>
#include <vector>

#include "Report.h"
#include "Support/AdServerThread.h"
#include "Support/TemporaryFolder.h"

namespace {

constexpr int rounds = 40;
constexpr int pictureRounds = 15;

struct Starts {
  std::vector<double> milliseconds;
  std::vector<double> megabytes;
};

void startOnce(const char* program, Starts& starts, std::vector<std::string> words = {}) {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  char* output = nullptr;
  std::vector<char*> arguments{const_cast<char*>(program)};
  for (auto& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  if (g_spawn_sync(nullptr, arguments.data(), nullptr, G_SPAWN_DEFAULT, nullptr, nullptr, &output,
                   nullptr, nullptr, nullptr) == FALSE) {
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

// From the start of the process to its first picture ad on the screen. The first start of each
// finds the engine's user agent out and is not counted.
void paintFirstPictures(Starts& ours, Starts& bare) {
  const tavo::test::AdServerThread server{TAVO_BENCHMARK_CAMPAIGNS};
  const tavo::test::TemporaryFolder folder;
  const std::string address = server.url("").substr(std::string_view{"http://"}.size());
  Starts cold;
  for (int round = 0; round < pictureRounds; ++round) {
    startOnce(TAVO_STARTED_PICTURE_HOST, round == 0 ? cold : ours, {address, folder.path("data")});
    startOnce(TAVO_STARTED_PICTURE_PROGRAM, round == 0 ? cold : bare, {address});
  }
}

}  // namespace

int main() {
  Starts ours;
  Starts web;
  Starts toolkit;
  Starts cold;
  startOnce(TAVO_STARTED_HOST, cold);
  startOnce(TAVO_STARTED_WEB_PROGRAM, cold);
  startOnce(TAVO_STARTED_PICTURE_PROGRAM, cold);
  for (int round = 0; round < rounds; ++round) {
    startOnce(TAVO_STARTED_HOST, ours);
    startOnce(TAVO_STARTED_WEB_PROGRAM, web);
    startOnce(TAVO_STARTED_PICTURE_PROGRAM, toolkit);
  }
  using tavo::benchmarks::atMost;
  tavo::benchmarks::Report report{"StartBenchmark"};
  report.ratio("start of an image host, time to main", ours.milliseconds, web.milliseconds, "ms",
               atMost(0.3));
  report.ratio("start of an image host, resident memory", ours.megabytes, web.megabytes, "MB",
               atMost(0.35));
  report.ratio("floor: with the toolkit and libsoup alone", toolkit.milliseconds, web.milliseconds,
               "ms", std::nullopt);
  report.ratio("floor: the same, resident memory", toolkit.megabytes, web.megabytes, "MB",
               std::nullopt);
  Starts ourPictures;
  Starts barePictures;
  paintFirstPictures(ourPictures, barePictures);
  report.ratio("start to the first picture ad painted", ourPictures.milliseconds,
               barePictures.milliseconds, "ms", atMost(1.1));
  report.ratio("the same, resident memory", ourPictures.megabytes, barePictures.megabytes, "MB",
               atMost(1.1));
  return report.finish();
}
