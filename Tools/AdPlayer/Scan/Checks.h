#pragma once

#include <string_view>
#include <vector>

#include "AdPlayer/Scan/Finding.h"
#include "AdPlayer/Scan/Recording.h"

namespace tavo::adplayer {

using Findings = std::vector<Finding>;

// One thing to look for. Pure: it reads a recording and adds what it finds; name and severity of a
// finding are the check's unless it says otherwise.
struct Check {
  std::string_view name;
  Severity severity;
  std::string_view what;  // one sentence, for people and for SARIF
  void (*look)(const Recording& recording, Findings& findings);
};

// All of them, in the order in which reports show them.
[[nodiscard]] const std::vector<Check>& checks();

// What they find, each thing once.
[[nodiscard]] Findings scanned(const Recording& recording);

// The looks of the table, by what they look at.
void lookForNoAd(const Recording& recording, Findings& findings);
void lookForMedia(const Recording& recording, Findings& findings);
void lookForWrappers(const Recording& recording, Findings& findings);
void lookForMissingResources(const Recording& recording, Findings& findings);
void lookForScriptErrors(const Recording& recording, Findings& findings);
void lookForRefusals(const Recording& recording, Findings& findings);
void lookForLimits(const Recording& recording, Findings& findings);
void lookForNavigation(const Recording& recording, Findings& findings);
void lookForStores(const Recording& recording, Findings& findings);
void lookForHosts(const Recording& recording, Findings& findings);
void lookForStorage(const Recording& recording, Findings& findings);
void lookForFingerprinting(const Recording& recording, Findings& findings);
void lookForMixedContent(const Recording& recording, Findings& findings);
void lookForNamelessPictures(const Recording& recording, Findings& findings);
void lookForDroppedKeys(const Recording& recording, Findings& findings);
void lookForManyRequests(const Recording& recording, Findings& findings);
void lookForFirstBytes(const Recording& recording, Findings& findings);
void lookForLaterBytes(const Recording& recording, Findings& findings);
void lookForProcessorTime(const Recording& recording, Findings& findings);
void lookForFlashing(const Recording& recording, Findings& findings);
void lookForTrackingNeverDue(const Recording& recording, Findings& findings);
void lookForFailedTracking(const Recording& recording, Findings& findings);
void lookForDoubledTracking(const Recording& recording, Findings& findings);
void lookForDifferences(const Recording& recording, Findings& findings);

// The most flashes that a quarter of the slot shows within one second: pairs of opposing changes of
// relative luminance by a tenth or more, the darker below 0.8.
[[nodiscard]] double flashesPerSecond(const std::vector<Light>& lights);

// Of a creative of this size, bytes before its load and after it.
struct Budget {
  double first = 0;
  double later = 0;
};
[[nodiscard]] Budget budgetFor(const Size& size);

}  // namespace tavo::adplayer
