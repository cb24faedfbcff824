// What a creative costs: requests, bytes, processor, and the eyes of whoever sees it.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "AdPlayer/Scan/Checks.h"

namespace tavo::adplayer {

namespace {

constexpr int usualRequests = 10;
constexpr double kilobyte = 1'000;
constexpr double largestProcessorShare = 0.5;
constexpr double mostFlashes = 3;
constexpr Seconds shortestPlay{2};  // before that, the load itself is most of the work

struct Weight {
  int requests = 0;
  double bytes = 0;
};

double bytesOf(const InspectionEvent& event) {
  const auto text = event.field("bytes");
  double bytes = 0;
  std::from_chars(text.data(), text.data() + text.size(), bytes);
  constexpr double possible = 1e12;  // a length that the engine does not know is told as all ones
  return bytes < possible ? bytes : 0;
}

// The creative's own text came in the answer and counts as bytes, not as a request of its own.
Weight weight(const Recording& recording, Seconds from, Seconds to) {
  Weight sum;
  bool isFirstAnswer = true;
  for (const auto& event : recording.events) {
    const bool answers =
        event.kind == InspectionKind::answer && event.field("traffic") != "tracking";
    if (!answers && event.kind != InspectionKind::resource) continue;
    const bool isAd = answers && std::exchange(isFirstAnswer, false);
    if (event.time < from || event.time >= to) continue;
    sum.bytes += bytesOf(event);
    sum.requests += isAd ? 0 : 1;
  }
  return sum;
}

// A film is a film, and has no budget of a banner.
bool hasBudget(const Recording& recording) {
  return recording.loaded && eventsOf(recording, InspectionKind::media).empty();
}

std::string kilobytes(double bytes) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f kB", bytes / kilobyte);
  return text;
}

void addBytes(double bytes, double budget, const char* when, const Recording& recording,
              Findings& findings) {
  if (bytes <= budget) return;
  findings.push_back({.message = kilobytes(bytes) + " " + when + " the load; usual is at most " +
                                 kilobytes(budget),
                      .place = recording.name});
}

// Times at which a cell changes direction by enough to count.
std::vector<Seconds> turns(const std::vector<Light>& lights, std::size_t cell) {
  constexpr float leastChange = 0.1F;
  constexpr float darkEnough = 0.8F;
  std::vector<Seconds> times;
  float extreme = lights.front().luminance[cell];
  int direction = 0;
  for (const auto& light : lights) {
    const float now = light.luminance[cell];
    const float change = now - extreme;
    const int toward = change > 0 ? 1 : -1;
    const bool goesOn = direction != 0 && toward == direction;
    const bool counts = std::abs(change) >= leastChange && std::min(now, extreme) < darkEnough;
    if (counts && !goesOn) {
      times.push_back(light.time);
      direction = toward;
    }
    if (goesOn || counts) extreme = now;
  }
  return times;
}

// The most turns that fall into one second, and where that second begins.
int turnsWithin(const std::vector<Seconds>& times, Seconds from) {
  const auto end = from + Seconds{1};
  return static_cast<int>(std::count_if(times.begin(), times.end(),
                                        [&](Seconds time) { return time >= from && time < end; }));
}

}  // namespace

Budget budgetFor(const Size& size) {
  constexpr double largestStrip = 728.0 * 90.0;
  const bool isStrip = size.width * size.height <= largestStrip;
  return isStrip ? Budget{50 * kilobyte, 100 * kilobyte} : Budget{150 * kilobyte, 300 * kilobyte};
}

void lookForManyRequests(const Recording& recording, Findings& findings) {
  if (!hasBudget(recording)) return;
  const int requests = weight(recording, Seconds{0}, *recording.loaded).requests;
  if (requests <= usualRequests) return;
  findings.push_back(
      {.message = std::to_string(requests) + " requests before the load; usual is at most 10",
       .place = recording.name});
}

void lookForFirstBytes(const Recording& recording, Findings& findings) {
  if (!hasBudget(recording)) return;
  addBytes(weight(recording, Seconds{0}, *recording.loaded).bytes, budgetFor(recording.size).first,
           "before", recording, findings);
}

void lookForLaterBytes(const Recording& recording, Findings& findings) {
  if (!hasBudget(recording)) return;
  const auto end = recording.length + Seconds{1};
  addBytes(weight(recording, *recording.loaded, end).bytes, budgetFor(recording.size).later,
           "after", recording, findings);
}

void lookForProcessorTime(const Recording& recording, Findings& findings) {
  if (recording.length < shortestPlay) return;
  const double share = recording.processorTime / recording.length;
  if (share <= largestProcessorShare) return;
  char text[96];
  std::snprintf(text, sizeof text, "%.1f s of processor time in %.1f s, %.0f %% of one processor",
                recording.processorTime.count(), recording.length.count(), share * 100);
  findings.push_back({.message = text, .place = recording.name});
}

double flashesPerSecond(const std::vector<Light>& lights) {
  if (lights.empty()) return 0;
  const std::size_t cells = lights.front().luminance.size();
  std::vector<std::vector<Seconds>> all;
  all.reserve(cells);
  for (std::size_t cell = 0; cell < cells; ++cell) all.push_back(turns(lights, cell));
  int most = 0;
  for (const auto& light : lights) {
    std::vector<int> counts;
    counts.reserve(all.size());
    for (const auto& times : all) counts.push_back(turnsWithin(times, light.time));
    // What a quarter of the places reach, the lightest flickering of them included.
    const auto quarter = counts.begin() + static_cast<std::ptrdiff_t>(counts.size() / 4);
    if (quarter == counts.end()) continue;
    std::nth_element(counts.begin(), quarter, counts.end(), std::greater<>{});
    most = std::max(most, *quarter);
  }
  return most / 2.0;
}

void lookForFlashing(const Recording& recording, Findings& findings) {
  const double flashes = flashesPerSecond(recording.lights);
  if (flashes <= mostFlashes) return;
  char text[64];
  std::snprintf(text, sizeof text, "%.1f flashes within one second", flashes);
  findings.push_back({.message = text, .place = recording.name});
}

}  // namespace tavo::adplayer
