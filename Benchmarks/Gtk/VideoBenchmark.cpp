// A video ad beside the same clip in the toolkit's own media file: how long from the answer to the
// first picture, for the first video of a process and for later ones; what the main thread does
// while it plays (ours draws a countdown besides); how long the host's loop was ever kept.
#include <glib.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "BareVideo.h"
#include "Elapsed.h"
#include "LoopWatch.h"
#include "Report.h"
#include "VideoHost.h"

namespace tavo::benchmark {
namespace {

using namespace std::chrono_literals;
using benchmarks::atMost;
using benchmarks::Report;

constexpr int firstRounds = 7;
constexpr int laterRounds = 15;
constexpr int playedRounds = 4;
constexpr auto played = 1500ms;
constexpr double halfSeconds = 3;  // in what is played

double bareOnce(VideoHost& host, std::chrono::milliseconds playsFor = 0ms) {
  const auto start = Clock::now();
  const BareVideo video{host.column(), host.clipUrl()};
  host.turnUntil([&] { return video.isPrepared() || video.error() != nullptr; });
  const double time = millisecondsSince(start);
  if (video.error() != nullptr) {
    std::printf("no media file: %s\n", video.error()->message);
    std::exit(1);
  }
  host.turnFor(playsFor);
  return time;
}

double oursOnce(VideoHost& host) {
  const double time = host.prepare();
  host.endAd();
  host.turnFor(50ms);  // what has ended is let go of
  return time;
}

// The first video of this process, in the way that `way` names: prints the milliseconds that it
// took and the longest turn of the loop.
int playFirst(const std::string& way) {
  VideoHost host;
  if (way == "ahead") host.makePlayer();
  host.turnFor(1s);  // the host's life before its first ad
  const LoopWatch watch;
  const double time = way == "bare"    ? bareOnce(host)
                      : way == "ahead" ? host.prepare()
                                       : host.playInterstitial();
  std::printf("%f %f\n", time, watch.longestTurn());
  return 0;
}

struct Firsts {
  std::vector<double> times;
  std::vector<double> turns;
};

void playFirstIn(const char* program, const char* way, Firsts& firsts) {
  char* output = nullptr;
  std::string first{way};
  char* arguments[] = {const_cast<char*>(program), first.data(), nullptr};
  if (g_spawn_sync(nullptr, arguments, nullptr, G_SPAWN_STDERR_TO_DEV_NULL, nullptr, nullptr,
                   &output, nullptr, nullptr, nullptr) == FALSE) {
    return;
  }
  double time = 0;
  double turn = 0;
  if (std::sscanf(output, "%lf %lf", &time, &turn) == 2) {
    firsts.times.push_back(time);
    firsts.turns.push_back(turn);
  }
  g_free(output);
}

void reportTurns(Report& report, const char* what, const std::vector<double>& turns, double bound) {
  const double most = turns.empty() ? 1e9 : *std::max_element(turns.begin(), turns.end());
  report.value(what, most, "ms", atMost(bound));
}

void compareFirsts(Report& report, const char* program) {
  Firsts ahead;
  Firsts late;
  Firsts bare;
  for (int round = 0; round < firstRounds; ++round) {
    playFirstIn(program, "ahead", ahead);
    playFirstIn(program, "bare", bare);
    playFirstIn(program, "late", late);
  }
  report.ratio("first video, player made ahead", ahead.times, bare.times, "ms", atMost(0.35));
  report.ratio("first video, nothing made ahead, to playing", late.times, bare.times, "ms",
               atMost(1.05));
  reportTurns(report, "first video, longest turn of the loop", ahead.turns, 50);
  reportTurns(report, "first video, nothing made ahead, longest turn", late.turns, 50);
}

void compareLater(Report& report, VideoHost& host) {
  std::vector<double> ours;
  std::vector<double> bare;
  const LoopWatch watch;
  for (int round = 0; round < laterRounds; ++round) {
    ours.push_back(oursOnce(host));
    bare.push_back(bareOnce(host));
    host.turnFor(50ms);
  }
  report.ratio("later video", ours, bare, "ms", atMost(1.05));
}

void comparePlaying(Report& report, VideoHost& host) {
  std::vector<double> ours;
  std::vector<double> bare;
  std::vector<double> turns;
  for (int round = 0; round < playedRounds; ++round) {
    host.prepare();
    {
      const LoopWatch watch;
      host.turnFor(played);
      ours.push_back(watch.processorTime() / halfSeconds);
      turns.push_back(watch.longestTurn());
    }
    host.endAd();
    host.turnFor(50ms);
    const BareVideo video{host.column(), host.clipUrl()};
    host.turnUntil([&] { return video.isPrepared(); });
    const LoopWatch watch;
    host.turnFor(played);
    bare.push_back(watch.processorTime() / halfSeconds);
  }
  report.ratio("main thread in half a second of playing", ours, bare, "ms", atMost(1.25));
  report.value("of it: one look at the progress", benchmarks::median(host.times().ticks), "ms", {});
  reportTurns(report, "playing, longest turn of the loop", turns, 50);
}

int run(const char* program) {
  Report report{"VideoBenchmark"};
  compareFirsts(report, program);
  VideoHost host;
  host.makePlayer();
  oursOnce(host);
  bareOnce(host);
  compareLater(report, host);
  comparePlaying(report, host);
  return report.finish();
}

}  // namespace
}  // namespace tavo::benchmark

int main(int argc, char** argv) {
  return argc > 1 ? tavo::benchmark::playFirst(argv[1]) : tavo::benchmark::run(argv[0]);
}
