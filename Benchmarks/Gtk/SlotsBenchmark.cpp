// A host with many slots: what they cost while nothing happens, while nobody sees them, in each
// frame, and how the cost grows with their number. Bare web views and media files beside them.
#include <cstdio>
#include <functional>
#include <numeric>

#include "FrameWork.h"
#include "OwnProcess.h"
#include "ProcessUse.h"
#include "SlotsHost.h"

namespace tavo::benchmark {
namespace {

using benchmarks::atMost;
using benchmarks::Report;

enum class Side { ours, bare };

constexpr double restingTime = 40;  // until what loading has left behind is over
constexpr double idleTime = 20;
constexpr double playingTime = 3;

void show(SlotsHost& host, Side side, const std::string& campaign) {
  if (side == Side::ours) {
    host.add(campaign);
  } else {
    host.addView(campaign);
  }
}

// A minute, with three still pages on the screen.
double idleWakeUps(Side side, bool withProcesses) {
  SlotsHost host;
  for (int slot = 0; slot < 3; ++slot) show(host, side, "frame-banner");
  turnQuietlyFor(restingTime);
  const auto count = [&] { return withProcesses ? ofFamily(wakeUps) : wakeUps(getpid()); };
  const double before = count();
  turnQuietlyFor(idleTime);
  return (count() - before) * 60 / idleTime;
}

// Milliseconds of the processor in a second, of a page that moves, with all processes.
double movingPage(Side side, bool isSeen) {
  SlotsHost host{SlotsHost::Place::scroller};
  show(host, side, "html-banner");
  turnQuietlyFor(2);
  if (!isSeen) host.scrollAway();
  turnQuietlyFor(2);
  const double before = ofFamily(processorTime);
  turnQuietlyFor(playingTime);
  return (ofFamily(processorTime) - before) / playingTime;
}

// Milliseconds to the first ad of the five slots that end with a number.
double firstAdAround(Side side, int number) {
  SlotsHost host;
  std::vector<double> times;
  for (int slot = 1; slot <= number; ++slot) {
    const double time = side == Side::ours
                            ? host.add("frame-banner")
                            : host.addView("frame-banner", SlotsHost::Processes::shared);
    if (slot > number - 5) times.push_back(time);
    turnQuietlyFor(0.5);
  }
  return benchmarks::median(times);
}

// Megabytes of all processes for each slot, after a few refreshes of each.
double memoryOfEach(int number) {
  SlotsHost host;
  for (int slot = 0; slot < number; ++slot) host.add("frame-banner");
  for (int load = 0; load < 3 * number; ++load) {
    host.refresh(static_cast<std::size_t>(load % number));
  }
  turnQuietlyFor(3);
  return familyMegabytes() / number;
}

double refreshWith(int number) {
  SlotsHost host;
  for (int slot = 0; slot < number; ++slot) host.add("frame-banner");
  turnQuietlyFor(1);
  std::vector<double> times;
  for (int load = 0; load < 150; ++load) {
    times.push_back(host.refresh(static_cast<std::size_t>(load % number)));
  }
  return benchmarks::median(times);
}

double wakeUpsOfEach(int number) {
  SlotsHost host;
  for (int slot = 0; slot < number; ++slot) host.add("frame-banner");
  turnQuietlyFor(restingTime);
  const double before = ofFamily(wakeUps);
  turnQuietlyFor(idleTime);
  return (ofFamily(wakeUps) - before) * 60 / idleTime / number;
}

const std::vector<Measurement>& measurements() {
  static const std::vector<Measurement> all{
      {"idle-host", [] { return idleWakeUps(Side::ours, false); }},
      {"idle-host-bare", [] { return idleWakeUps(Side::bare, false); }},
      {"idle-all", [] { return idleWakeUps(Side::ours, true); }},
      {"idle-all-bare", [] { return idleWakeUps(Side::bare, true); }},
      {"moving-seen", [] { return movingPage(Side::ours, true); }},
      {"moving-seen-bare", [] { return movingPage(Side::bare, true); }},
      {"moving-away", [] { return movingPage(Side::ours, false); }},
      {"moving-away-bare", [] { return movingPage(Side::bare, false); }},
      {"frames", [] { return frameWorkOfSlots(FilmInFrame::none); }},
      {"frames-of-countdown", [] { return frameWorkOfSlots(FilmInFrame::counting); }},
      {"frames-of-bar", [] { return frameWorkOfSlots(FilmInFrame::withBar); }},
      {"frames-of-boxes", frameWorkOfBoxes},
      {"first-ad-of-10", [] { return firstAdAround(Side::ours, 10); }},
      {"first-ad-of-10-bare", [] { return firstAdAround(Side::bare, 10); }},
      {"first-ad-of-50", [] { return firstAdAround(Side::ours, 50); }},
      {"first-ad-of-50-bare", [] { return firstAdAround(Side::bare, 50); }},
      {"memory-of-10", [] { return memoryOfEach(10); }},
      {"memory-of-50", [] { return memoryOfEach(50); }},
      {"refresh-of-10", [] { return refreshWith(10); }},
      {"refresh-of-50", [] { return refreshWith(50); }},
      {"wake-ups-of-10", [] { return wakeUpsOfEach(10); }},
      {"wake-ups-of-50", [] { return wakeUpsOfEach(50); }},
  };
  return all;
}

void median(Report& report, const char* what, const std::function<double()>& measure,
            const char* unit, std::optional<benchmarks::Bound> bound) {
  std::vector<double> values;
  for (int round = 0; round < 3; ++round) values.push_back(measure());
  report.value(what, benchmarks::median(values), unit, bound);
}

int reportAll() {
  Report report{"SlotsBenchmark"};
  const auto alone = [](const char* name) { return [name] { return measuredAlone(name); }; };
  median(
      report, "wake-ups of an idle host beyond bare views",
      [] { return measuredAlone("idle-host") - measuredAlone("idle-host-bare"); }, "/min",
      atMost(0));
  compareAlone(report, "the same with all processes, by bare views", "idle-all", "idle-all-bare",
               "/min", std::nullopt, 2);
  compareAlone(report, "moving page scrolled away, by seen", "moving-away", "moving-seen", "ms/s",
               atMost(0.05), 3);
  compareAlone(report, "bare moving view scrolled away, by seen", "moving-away-bare",
               "moving-seen-bare", "ms/s", std::nullopt, 3);
  median(report, "main thread in 60 frames of ten slots, beyond bare widgets",
         alone("frames-of-countdown"), "ms", atMost(1));
  median(report, "the same with a bar on the film", alone("frames-of-bar"), "ms", atMost(1));
  median(report, "the same without the film", alone("frames"), "ms", atMost(1));
  median(report, "floor: bare pages of one process, in as many widgets", alone("frames-of-boxes"),
         "ms", std::nullopt);
  compareAlone(report, "first ad of the 50th slot, by the tenth's", "first-ad-of-50",
               "first-ad-of-10", "ms", atMost(1.5), 2);
  compareAlone(report, "floor: the same of bare views, ten a process", "first-ad-of-50-bare",
               "first-ad-of-10-bare", "ms", std::nullopt, 2);
  compareAlone(report, "refresh among 50 slots, by among ten", "refresh-of-50", "refresh-of-10",
               "ms", atMost(1.5), 2);
  compareAlone(report, "memory of each of 50 slots, by of ten", "memory-of-50", "memory-of-10",
               "MB", atMost(1.0), 2);
  compareAlone(report, "wake-ups of each of 50 slots, by of ten", "wake-ups-of-50",
               "wake-ups-of-10", "/min", atMost(1.0), 2);
  return report.finish();
}

}  // namespace
}  // namespace tavo::benchmark

int main(int argc, char** argv) {
  using namespace tavo::benchmark;
  return measureOrReport(argc, argv, measurements(), reportAll);
}
