#include "AdPlayer/Scan/ScanReport.h"

#include <glib.h>

#include <algorithm>
#include <cstdio>
#include <map>

#include "AdServer/JsonText.h"
#include "Gtk/GPtr.h"
#include "Values/Text.h"

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

std::string junitCase(const Scanned& scan, const Check& check, bool& fails) {
  std::string lines;
  for (const auto& finding : scan.findings) {
    if (finding.check != check.name || finding.severity == Severity::note) continue;
    lines +=
        finding.message + (finding.place.empty() ? "" : " (" + placeText(finding) + ")") + "\n";
  }
  std::string text = "    <testcase classname=\"" + asMarkup(scan.name) + "\" name=\"" +
                     std::string{check.name} + "\"";
  fails = !lines.empty();
  if (!fails) return text + "/>\n";
  return text + "><failure type=\"" + std::string{nameOf(check.severity)} + "\" message=\"" +
         asMarkup(std::string{check.what}) + "\">" + asMarkup(lines) + "</failure></testcase>\n";
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
  std::string suites;
  for (const auto& scan : scans) {
    std::string cases;
    std::size_t failures = scan.refusal.empty() ? 0 : 1;
    if (failures > 0) {
      cases = "    <testcase classname=\"" + asMarkup(scan.name) +
              "\" name=\"no-ad\"><failure type=\"error\" message=\"" + asMarkup(scan.refusal) +
              "\"/></testcase>\n";
    }
    const bool wasPlayed = failures == 0;
    for (const auto& check : checks()) {
      bool fails = false;
      if (wasPlayed) cases += junitCase(scan, check, fails);
      failures += fails ? 1 : 0;
    }
    suites += "  <testsuite name=\"" + asMarkup(scan.name) + "\" tests=\"" +
              std::to_string(wasPlayed ? checks().size() : 1) + "\" failures=\"" +
              std::to_string(failures) + "\">\n" + cases + "  </testsuite>\n";
  }
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites>\n" + suites + "</testsuites>\n";
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
