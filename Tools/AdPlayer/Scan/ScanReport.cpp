#include "AdPlayer/Scan/ScanReport.h"

#include <glib.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <utility>

#include "AdPlayer/JUnit.h"
#include "AdServer/JsonText.h"
#include "Gtk/GPtr.h"

namespace tavo::adplayer {

namespace {

using adserver::jsonString;

std::string seconds(Seconds time) {
  char text[32];
  std::snprintf(text, sizeof text, "%.2f s", time.count());
  return text;
}

std::string placeText(const Finding& finding) {
  if (finding.place.empty() || finding.line <= 0) return finding.place;
  return finding.place + ":" + std::to_string(finding.line) +
         (finding.column > 0 ? ":" + std::to_string(finding.column) : "");
}

std::string headOf(const Scanned& scan) {
  if (!scan.refusal.empty()) return scan.name + "\n  error    " + scan.refusal + "\n";
  const auto& recording = scan.recording;
  char size[64];
  std::snprintf(size, sizeof size, " %.0f x %.0f", recording.size.width, recording.size.height);
  return scan.name + "\n  " + nameOf(recording.placement) + size +
         (recording.loaded ? ", loaded after " + seconds(*recording.loaded) : ", not loaded") +
         ", watched for " + seconds(recording.length) + ", " + seconds(recording.processorTime) +
         " of processor time\n";
}

Findings worstFirst(Findings findings) {
  std::stable_sort(findings.begin(), findings.end(), [](const Finding& one, const Finding& other) {
    return one.severity > other.severity;
  });
  return findings;
}

std::string count(std::size_t number, const char* word) {
  return std::to_string(number) + " " + word + (number == 1 ? "" : "s");
}

// An address stays, a path becomes a relative one that code hosts understand.
std::string uriOf(const std::string& place) {
  if (place.find("://") != place.npos) return place;
  const gtk::GText escaped{g_uri_escape_string(place.c_str(), "/", FALSE)};
  return escaped.get();
}

std::string locationOf(const Finding& finding, const std::string& name) {
  std::string location = "{\"physicalLocation\":{\"artifactLocation\":{\"uri\":" +
                         jsonString(uriOf(finding.place.empty() ? name : finding.place)) + "}";
  if (finding.line > 0) {
    location += ",\"region\":{\"startLine\":" + std::to_string(finding.line);
    if (finding.column > 0) location += ",\"startColumn\":" + std::to_string(finding.column);
    location += "}";
  }
  return location + "}}";
}

std::string resultOf(const std::string& check, Severity severity, const std::string& message,
                     const std::string& location) {
  return "{\"ruleId\":" + jsonString(check) + ",\"level\":" + jsonString(nameOf(severity)) +
         ",\"message\":{\"text\":" + jsonString(message) + "},\"locations\":[" + location + "]}";
}

std::string joined(const std::vector<std::string>& parts) {
  std::string text;
  for (const auto& part : parts) text += (text.empty() ? "\n" : ",\n") + part;
  return text;
}

std::optional<JUnitTrouble> troubleOf(const Scanned& scan, const Check& check) {
  std::string lines;
  for (const auto& finding : scan.findings) {
    if (finding.check != check.name || finding.severity == Severity::note) continue;
    lines +=
        finding.message + (finding.place.empty() ? "" : " (" + placeText(finding) + ")") + "\n";
  }
  if (lines.empty()) return std::nullopt;
  return JUnitTrouble{.type = std::string{nameOf(check.severity)},
                      .message = std::string{check.what},
                      .text = std::move(lines)};
}

JUnitSuite suiteOf(const Scanned& scan) {
  JUnitSuite suite{.name = scan.name};
  if (!scan.refusal.empty()) {
    suite.cases.push_back(
        {.classname = scan.name,
         .name = "no-ad",
         .trouble = JUnitTrouble{.isError = true, .type = "error", .message = scan.refusal}});
    return suite;
  }
  for (const auto& check : checks()) {
    suite.cases.push_back({.classname = scan.name,
                           .name = std::string{check.name},
                           .trouble = troubleOf(scan, check)});
  }
  return suite;
}

}  // namespace

std::string textReport(const Scanned& scan) {
  std::string text = headOf(scan);
  for (const auto& finding : worstFirst(scan.findings)) {
    char start[64];
    std::snprintf(start, sizeof start, "  %-8s %-23s ",
                  std::string{nameOf(finding.severity)}.c_str(), finding.check.c_str());
    text += start + finding.message + "\n";
    const bool isElsewhere =
        !finding.place.empty() && (finding.place != scan.name || finding.line > 0);
    if (isElsewhere) text += std::string(35, ' ') + "at " + placeText(finding) + "\n";
  }
  if (scan.findings.empty() && scan.refusal.empty()) text += "  nothing found\n";
  return text + "\n";
}

std::string summaryOf(const std::vector<Scanned>& scans) {
  std::map<Severity, std::size_t> counts;
  for (const auto& scan : scans) {
    counts[Severity::error] += scan.refusal.empty() ? 0 : 1;
    for (const auto& finding : scan.findings) ++counts[finding.severity];
  }
  return count(scans.size(), "creative") + ": " + count(counts[Severity::error], "error") + ", " +
         count(counts[Severity::warning], "warning") + ", " +
         count(counts[Severity::note], "note") + ".\n";
}

std::string sarifReport(const std::vector<Scanned>& scans) {
  std::vector<std::string> rules;
  for (const auto& check : checks()) {
    rules.push_back("{\"id\":" + jsonString(check.name) +
                    ",\"shortDescription\":{\"text\":" + jsonString(check.what) +
                    "},\"defaultConfiguration\":{\"level\":" + jsonString(nameOf(check.severity)) +
                    "}}");
  }
  std::vector<std::string> results;
  for (const auto& scan : scans) {
    if (!scan.refusal.empty()) {
      results.push_back(
          resultOf("no-ad", Severity::error, scan.refusal, locationOf({}, scan.name)));
    }
    for (const auto& finding : scan.findings) {
      results.push_back(resultOf(finding.check, finding.severity, finding.message,
                                 locationOf(finding, scan.name)));
    }
  }
  return "{\"$schema\":\"https://json.schemastore.org/sarif-2.1.0.json\",\"version\":\"2.1.0\","
         "\"runs\":[{\"tool\":{\"driver\":{\"name\":\"adplayer scan\",\"rules\":[" +
         joined(rules) + "\n]}},\"results\":[" + joined(results) + "\n]}]}\n";
}

std::string junitReport(const std::vector<Scanned>& scans) {
  std::vector<JUnitSuite> suites;
  suites.reserve(scans.size());
  for (const auto& scan : scans) suites.push_back(suiteOf(scan));
  return junitDocument(suites);
}

std::optional<Severity> worst(const std::vector<Scanned>& scans) {
  std::optional<Severity> most;
  for (const auto& scan : scans) {
    if (!scan.refusal.empty()) return Severity::error;
    for (const auto& finding : scan.findings) {
      if (!most || finding.severity > *most) most = finding.severity;
    }
  }
  return most;
}

}  // namespace tavo::adplayer
