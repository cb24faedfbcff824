#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "AdPlayer/Events/PlayEvent.h"

namespace tavo::adplayer {

enum class Verdict {
  passed,   // every expectation was met
  failed,   // one was not
  refused,  // what was given cannot be played
  hung,     // no end in time; it was ended from outside
  crashed,  // its process died
};
[[nodiscard]] std::string_view nameOf(Verdict verdict);

struct Expectation {
  std::string text;
  bool isMet = false;
};

// What came of playing one creative. It stands in a folder of its own: "result.json",
// "events.jsonl" with a line for each event, and the pictures.
struct Result {
  std::string name{};    // of its folder
  std::string source{};  // what was asked for
  std::string title{};
  std::string placement{};
  std::string outcome{};
  std::string classification{};
  std::string why{};  // of every verdict but passed
  Verdict verdict = Verdict::crashed;
  double seconds = 0;
  std::vector<Expectation> expectations{};
  std::vector<std::string> pictures{};  // file names
  std::vector<PlayEvent> events{};      // not in result.json
  std::filesystem::path folder{};       // likewise

  [[nodiscard]] std::string toJson() const;
  // Reads a result back, events included; none where there is no result.json that can be read.
  [[nodiscard]] static std::optional<Result> read(const std::filesystem::path& folder);
  // The events that a folder holds, also when nothing else does.
  [[nodiscard]] static std::vector<PlayEvent> readEvents(const std::filesystem::path& folder);
};

// The reports of many: "report.html" with everything in one file, "junit.xml" and "events.jsonl" in
// `out`. Returns what could not be written; empty when all could.
[[nodiscard]] std::string writeReports(const std::vector<Result>& results,
                                       const std::filesystem::path& out, double seconds);
// One line for each and the sum, for a terminal.
[[nodiscard]] std::string tableOf(const std::vector<Result>& results);

[[nodiscard]] std::string htmlReport(const std::vector<Result>& results, double seconds);
[[nodiscard]] std::string junitReport(const std::vector<Result>& results, double seconds);

}  // namespace tavo::adplayer
