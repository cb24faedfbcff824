#include "AdPlayer/MraidChecklist/MraidResult.h"

#include <algorithm>
#include <fstream>

namespace tavo::adplayer {

namespace {

std::string modeText(const MraidChecklistOptions& options) {
  return options.standards ? "in the standards mode" : "by default";
}

// What is not met without the mode, and is not meant to be, stands among the events.
void takePoint(const MraidResult& point, Result& result) {
  const std::string text =
      point.sentence + (point.isMet || point.found.empty() ? "" : " Found: " + point.found);
  if (point.isDue) result.expectations.push_back({point.name + ": " + text, point.isMet});
  const char* const state = point.isMet ? "met: " : point.isDue ? "not met: " : "not due: ";
  result.events.push_back({{},
                           "point",
                           state + point.name + ": " + text,
                           {{"name", point.name}, {"found", point.found}}});
}

}  // namespace

std::string mraidResultName(const MraidChecklistOptions& options) {
  return "checklist-" + (options.only.empty() ? "all" : options.only) +
         (options.standards ? "-standards" : "");
}

Result resultOf(const MraidChecklist::Results& played, const MraidChecklistOptions& options,
                Seconds took) {
  Result result;
  result.name = mraidResultName(options);
  result.source = "mraid";
  result.title = "MRAID checklist: " + (options.only.empty() ? "all" : options.only) + ", " +
                 modeText(options);
  result.placement = options.only == "interstitial" ? "interstitial" : "banner";
  result.outcome = "loaded";
  result.seconds = took.count();
  for (const auto& point : played) takePoint(point, result);
  const auto met = std::count_if(result.expectations.begin(), result.expectations.end(),
                                 [](const auto& one) { return one.isMet; });
  const auto due = static_cast<std::ptrdiff_t>(result.expectations.size());
  result.verdict = met == due ? Verdict::passed : Verdict::failed;
  result.classification = std::to_string(met) + " of " + std::to_string(due) + " points met";
  if (due == 0) result.classification = "nothing of this is done without the standards mode";
  if (met < due) result.why = result.classification;
  std::error_code failure;
  for (const auto& entry : std::filesystem::directory_iterator{options.resultFolder, failure}) {
    if (entry.path().extension() == ".png")
      result.pictures.push_back(entry.path().filename().string());
  }
  return result;
}

bool write(const Result& result, const std::filesystem::path& folder) {
  std::ofstream events{folder / "events.jsonl"};
  for (const auto& event : result.events) events << event.toJson() << '\n';
  std::ofstream file{folder / "result.json"};
  file << result.toJson();
  return file.flush().good() && events.flush().good();
}

}  // namespace tavo::adplayer
