#pragma once

#include <optional>
#include <string>
#include <vector>

#include "AdPlayer/Scan/Checks.h"

namespace tavo::adplayer {

// What a scan has found in one creative.
struct Scanned {
  std::string name{};     // as it was given
  std::string refusal{};  // why it could not be played at all; empty otherwise
  Recording recording{};
  Findings findings{};
};

// For a person: a creative with its findings, worst first; and a last line that sums all up.
[[nodiscard]] std::string textReport(const Scanned& scan);
[[nodiscard]] std::string summaryOf(const std::vector<Scanned>& scans);

// SARIF 2.1.0, for code hosts and editors.
[[nodiscard]] std::string sarifReport(const std::vector<Scanned>& scans);

// JUnit's XML: a suite for each creative, a case for each check. Notes do not fail a case.
[[nodiscard]] std::string junitReport(const std::vector<Scanned>& scans);

// The worst severity that any creative has; a refusal counts as an error. None: nothing was found.
[[nodiscard]] std::optional<Severity> worst(const std::vector<Scanned>& scans);

}  // namespace tavo::adplayer
