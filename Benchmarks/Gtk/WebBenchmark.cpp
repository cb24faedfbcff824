// What HTML ads cost a host as a whole: memory, the first ad, stalls of its loop, statements to a
// page, the user agent. Measures in processes of its own: it starts itself with the name of what to
// measure.
#include <glib.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "OwnProcess.h"
#include "Report.h"
#include "StateChanges.h"
#include "UserAgents.h"
#include "WebMeasurements.h"

namespace tavo::benchmark {
namespace {

using benchmarks::atMost;
using benchmarks::Report;

// The worse of the two.
double worse(const char* what, const Growth& growth) {
  std::fprintf(stderr, "%s: host %.3f, with its processes %.3f\n", what, growth.host,
               growth.family);
  return std::max(growth.host, growth.family);
}

const std::vector<Measurement>& measurements() {
  static const std::vector<Measurement> all{
      {"memory-of-3-slots", [] { return memoryOfSlots(3); }},
      {"memory-of-3-views", [] { return memoryOfBareViews(3); }},
      {"memory-of-10-slots", [] { return memoryOfSlots(10); }},
      {"memory-of-10-views", [] { return memoryOfBareViews(10); }},
      {"growth-of-pages", [] { return worse("pages", growthOverRefreshes("html-banner")); }},
      {"growth-of-bare-view", [] { return worse("bare view", growthOfBareView()); }},
      {"growth-of-pictures", [] { return worse("pictures", growthOverRefreshes("image-banner")); }},
      {"growth-of-bare-pictures", [] { return worse("bare pictures", growthOfBarePictures()); }},
      {"growth-of-bare-films", [] { return worse("bare films", growthOfBareFilms()); }},
      {"growth-of-films", [] { return worse("films", growthOverRefreshes("vast-preroll")); }},
      {"first-ad", [] { return firstAd(Slot::hasShownHtml); }},
      {"first-ad-of-unknown-slot", [] { return firstAd(Slot::unknown); }},
      {"first-view", firstBareView},
      {"first-loaded-view",
       [] {
         return numberOf(TAVO_LOADED_WEB_PROGRAM,
                         TAVO_BENCHMARK_CAMPAIGNS "/frame-banner/creative.html");
       }},
      {"stall", longestStall},
      {"state-changes-together", [] { return stateChanges(Evaluation::together); }},
      {"state-changes-one-by-one", [] { return stateChanges(Evaluation::oneByOne); }},
      {"state-changes-bare", bareEvaluation},
      {"user-agent", [] { return userAgentTime(Engine::known); }},
      {"user-agent-of-unknown-engine", [] { return userAgentTime(Engine::unknown); }},
      {"user-agent-after-window", [] { return userAgentTime(Engine::unknownAtStart); }},
      {"user-agent-of-view", userAgentTimeOfView},
      {"user-agent-of-program", userAgentTimeOfProgram},
  };
  return all;
}

void check(Report& report, const char* what, const std::string& name, const char* unit,
           std::optional<benchmarks::Bound> bound) {
  const double number = measuredAlone(name);
  if (number <= 0) return report.failed(what);
  report.value(what, number, unit, bound);
}

int reportAll() {
  Report report{"WebBenchmark"};
  compareAlone(report, "memory of three HTML slots", "memory-of-3-slots", "memory-of-3-views", "MB",
               atMost(0.80), 3);
  compareAlone(report, "memory of ten HTML slots", "memory-of-10-slots", "memory-of-10-views", "MB",
               atMost(0.55), 3);
  check(report, "memory after 2,000 more refreshes, pages", "growth-of-pages", "", atMost(1.02));
  check(report, "floor: the same of one bare view", "growth-of-bare-view", "", std::nullopt);
  check(report, "memory after 2,000 more refreshes, pictures", "growth-of-pictures", "",
        atMost(1.02));
  check(report, "floor: the same of bare pictures", "growth-of-bare-pictures", "", std::nullopt);
  check(report, "memory after 2,000 more refreshes, films", "growth-of-films", "", atMost(1.02));
  check(report, "floor: the same of bare films", "growth-of-bare-films", "", std::nullopt);
  compareAlone(report, "first ad, known slot, answer to finished", "first-ad", "first-view", "ms",
               atMost(0.15), 7);
  compareAlone(report, "first ad, new slot, answer to finished", "first-ad-of-unknown-slot",
               "first-view", "ms", atMost(1.0), 7);
  compareAlone(report, "floor: bare view whose library is mapped then", "first-loaded-view",
               "first-view", "ms", std::nullopt, 7);
  compareAlone(report, "state changes together, by one by one", "state-changes-together",
               "state-changes-one-by-one", "us", atMost(0.25), 5);
  compareAlone(report, "floor: one bare evaluation, by one by one", "state-changes-bare",
               "state-changes-one-by-one", "us", std::nullopt, 3);
  compareAlone(report, "user agent of the engine as remembered", "user-agent", "user-agent-of-view",
               "ms", atMost(0.1), 7);
  compareAlone(report, "user agent of a new engine", "user-agent-of-unknown-engine",
               "user-agent-of-view", "ms", atMost(0.1), 7);
  compareAlone(report, "the same, asked once the window stands", "user-agent-after-window",
               "user-agent-of-view", "ms", atMost(0.1), 7);
  compareAlone(report, "floor: a program that only asks the engine", "user-agent-of-program",
               "user-agent-of-view", "ms", std::nullopt, 7);
  check(report, "longest stall, 60 loads and 20 expansions", "stall", "ms", atMost(50));
  return report.finish();
}

}  // namespace
}  // namespace tavo::benchmark

int main(int argc, char** argv) {
  using namespace tavo::benchmark;
  return measureOrReport(argc, argv, measurements(), reportAll);
}
