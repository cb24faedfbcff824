#include "FrameWork.h"

#include <time.h>

#include <algorithm>
#include <functional>

#include "SlotsHost.h"

namespace tavo::benchmark {

namespace {

// Seconds differ by a tenth on a quiet machine, so many short ones are compared, each with the
// next.
constexpr int rounds = 20;
constexpr double settling = 0.3;  // seconds, after others were shown
constexpr double watched = 1;     // of a film that takes four
constexpr int widgetsOfSlot = 4;

double mainThread() {
  timespec used{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
  return static_cast<double>(used.tv_sec) * 1e3 + static_cast<double>(used.tv_nsec) / 1e6;
}

// As many frames as a second has: the two may not come to draw equally often.
double workOfFrames(SlotsHost& host) {
  constexpr double framesOfSecond = 60;
  turnQuietlyFor(settling);
  const double before = mainThread();
  const auto drawn = host.frames();
  turnQuietlyFor(watched);
  const auto frames = std::max<gint64>(host.frames() - drawn, 1);
  return (mainThread() - before) * framesOfSecond / static_cast<double>(frames);
}

void addPages(SlotsHost& host, const std::function<void(const std::string& campaign)>& add) {
  host.beginGroup();
  for (int page = 0; page < 6; ++page) add("frame-banner");
  for (int page = 0; page < 3; ++page) add("html-banner");
}

// The mean of what the first group takes beyond the second; `measure` is told which it is.
double beyondInTurns(SlotsHost& host, const std::function<double(bool isFirst)>& measure) {
  double difference = 0;
  for (int round = 0; round < rounds; ++round) {
    host.showGroup(0);
    difference += measure(true);
    host.showGroup(1);
    difference -= measure(false);
  }
  return difference / rounds;
}

void addFilm(SlotsHost& host, bool isOurs, FilmInFrame film) {
  if (film == FilmInFrame::none) return;
  const bool isCounting = film == FilmInFrame::counting;
  if (isOurs) {
    host.addFilm(isCounting ? "frame-countdown" : "frame-film");
  } else {
    host.addClip(isCounting ? SlotsHost::Clip::withTime : SlotsHost::Clip::withBar);
  }
}

}  // namespace

double frameWorkOfSlots(FilmInFrame film) {
  SlotsHost host;
  addPages(host, [&](const std::string& campaign) { host.add(campaign); });
  addPages(host, [&](const std::string& campaign) { host.addView(campaign); });
  return beyondInTurns(host, [&](bool isOurs) {
    addFilm(host, isOurs, film);
    const double work = workOfFrames(host);
    host.removeFilms();
    return work;
  });
}

double frameWorkOfBoxes() {
  SlotsHost host;
  addPages(host, [&](const std::string& campaign) {
    host.addView(campaign, SlotsHost::Processes::shared, widgetsOfSlot);
  });
  addPages(host, [&](const std::string& campaign) { host.addView(campaign); });
  return beyondInTurns(host, [&](bool) { return workOfFrames(host); });
}

}  // namespace tavo::benchmark
