#include "AdPlayer/Scan/Checks.h"

#include <algorithm>

namespace tavo::adplayer {

std::string_view nameOf(Severity severity) {
  if (severity == Severity::error) return "error";
  return severity == Severity::warning ? "warning" : "note";
}

const std::vector<Check>& checks() {
  using enum Severity;
  static const std::vector<Check> table{
      {"no-ad", error, "Nothing is shown.", &lookForNoAd},
      {"media-unplayable", error, "A film or sound that this machine cannot play.", &lookForMedia},
      {"wrapper-failed", error, "A chain of VAST documents that breaks.", &lookForWrappers},
      {"resource-missing", warning, "Something that the creative wants and does not get.",
       &lookForMissingResources},
      {"script-error", error, "A script of the creative fails.", &lookForScriptErrors},
      {"refused", warning, "The container refuses what the creative asks for.", &lookForRefusals},
      {"limit-passed", error, "The creative uses more than the container lets it.", &lookForLimits},
      {"navigation-without-tap", error, "The creative opens something that nobody tapped for.",
       &lookForNavigation},
      {"store-without-tap", error, "The creative opens a store that nobody tapped for.",
       &lookForStores},
      {"host-contacted", note, "Another computer that hears of each impression.", &lookForHosts},
      {"storage", note, "The creative keeps or reads data on the device.", &lookForStorage},
      {"fingerprinting", warning, "The creative asks for what tells devices apart.",
       &lookForFingerprinting},
      {"mixed-content", warning, "Addresses without encryption, which pages of https refuse.",
       &lookForMixedContent},
      {"requests-before-load", warning, "More requests before the load than the usual 10.",
       &lookForManyRequests},
      {"bytes-before-load", warning, "More bytes before the load than usual for the size.",
       &lookForFirstBytes},
      {"bytes-after-load", warning, "More bytes after the load than usual for the size.",
       &lookForLaterBytes},
      {"processor-time", warning, "More than half of a processor over the whole play.",
       &lookForProcessorTime},
      {"flashing", error, "More than three flashes a second, which can cause seizures.",
       &lookForFlashing},
      {"picture-without-text", warning,
       "Something to see or press without a text for those who cannot see.",
       &lookForNamelessPictures},
      {"tracking-never-due", warning, "Tracking that a whole play does not send.",
       &lookForTrackingNeverDue},
      {"tracking-failed", warning, "Tracking that was not answered well.", &lookForFailedTracking},
      {"tracking-doubled", warning, "Tracking that was sent twice.", &lookForDoubledTracking},
      {"answer-dropped", note, "A part of the answer that has no effect.", &lookForDroppedKeys},
      {"differs", warning, "The creative does something else under other conditions.",
       &lookForDifferences},
  };
  return table;
}

Findings scanned(const Recording& recording) {
  Findings all;
  for (const auto& check : checks()) {
    Findings found;
    check.look(recording, found);
    for (auto& finding : found) {
      if (finding.check.empty()) finding.check = check.name;
      finding.severity = check.severity;
      if (std::find(all.begin(), all.end(), finding) == all.end())
        all.push_back(std::move(finding));
    }
  }
  return all;
}

}  // namespace tavo::adplayer
