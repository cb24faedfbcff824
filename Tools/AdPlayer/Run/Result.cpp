#include "AdPlayer/Run/Result.h"

#include <simdjson.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <utility>

#include "AdServer/JsonText.h"

namespace tavo::adplayer {

namespace {

constexpr std::array<std::string_view, 5> verdicts{"passed", "failed", "refused", "hung",
                                                   "crashed"};

std::string textAt(const simdjson::dom::element& object, const char* key) {
  std::string_view text;
  return object[key].get_string().get(text) == simdjson::SUCCESS ? std::string{text}
                                                                 : std::string{};
}

void readExpectations(const simdjson::dom::element& document, Result& result) {
  simdjson::dom::array array;
  if (document["expectations"].get_array().get(array) != simdjson::SUCCESS) return;
  for (const auto one : array) {
    bool isMet = false;
    if (one["met"].get_bool().get(isMet) != simdjson::SUCCESS) continue;
    result.expectations.push_back({textAt(one, "text"), isMet});
  }
}

PlayEvent eventFrom(const simdjson::dom::element& line) {
  PlayEvent event;
  double time = 0;
  if (line["time"].get_double().get(time) != simdjson::SUCCESS) time = 0;
  event.time = Seconds{time};
  event.kind = textAt(line, "kind");
  event.text = textAt(line, "text");
  simdjson::dom::array fields;
  if (line["fields"].get_array().get(fields) != simdjson::SUCCESS) return event;
  for (const auto field : fields) {
    std::string_view name;
    std::string_view value;
    if (field.at(0).get_string().get(name) == simdjson::SUCCESS &&
        field.at(1).get_string().get(value) == simdjson::SUCCESS) {
      event.fields.push_back({std::string{name}, std::string{value}});
    }
  }
  return event;
}

}  // namespace

std::string_view nameOf(Verdict verdict) { return verdicts.at(static_cast<std::size_t>(verdict)); }

std::string Result::toJson() const {
  using adserver::jsonString;
  char duration[32];
  std::snprintf(duration, sizeof duration, "%.3f", seconds);
  std::string json = "{\n";
  for (const auto& [key, value] : std::initializer_list<std::pair<const char*, std::string>>{
           {"name", name},
           {"source", source},
           {"title", title},
           {"placement", placement},
           {"outcome", outcome},
           {"classification", classification},
           {"why", why},
           {"verdict", std::string{nameOf(verdict)}}}) {
    json += "  \"" + std::string{key} + "\": " + jsonString(value) + ",\n";
  }
  json += "  \"seconds\": " + std::string{duration} + ",\n  \"expectations\": [";
  const char* gap = "";
  for (const auto& one : expectations) {
    json += gap + std::string{"{\"text\": "} + jsonString(one.text) +
            ", \"met\": " + (one.isMet ? "true}" : "false}");
    gap = ", ";
  }
  json += "],\n  \"pictures\": [";
  gap = "";
  for (const auto& picture : pictures) {
    json += gap + jsonString(picture);
    gap = ", ";
  }
  return json + "]\n}\n";
}

std::optional<Result> Result::read(const std::filesystem::path& folder) {
  simdjson::dom::parser parser;
  simdjson::dom::element document;
  if (parser.load((folder / "result.json").string()).get(document) != simdjson::SUCCESS) {
    return std::nullopt;
  }
  Result result;
  result.folder = folder;
  result.name = textAt(document, "name");
  result.source = textAt(document, "source");
  result.title = textAt(document, "title");
  result.placement = textAt(document, "placement");
  result.outcome = textAt(document, "outcome");
  result.classification = textAt(document, "classification");
  result.why = textAt(document, "why");
  const auto* const verdict =
      std::find(verdicts.begin(), verdicts.end(), textAt(document, "verdict"));
  if (verdict == verdicts.end()) return std::nullopt;
  result.verdict = static_cast<Verdict>(verdict - verdicts.begin());
  if (document["seconds"].get_double().get(result.seconds) != simdjson::SUCCESS) result.seconds = 0;
  readExpectations(document, result);
  simdjson::dom::array pictures;
  if (document["pictures"].get_array().get(pictures) == simdjson::SUCCESS) {
    for (const auto picture : pictures) {
      std::string_view name;
      if (picture.get_string().get(name) != simdjson::SUCCESS) continue;
      result.pictures.push_back(std::filesystem::path{name}.filename().string());
    }
  }
  result.events = readEvents(folder);
  return result;
}

std::vector<PlayEvent> Result::readEvents(const std::filesystem::path& folder) {
  std::vector<PlayEvent> events;
  std::ifstream file{folder / "events.jsonl"};
  simdjson::dom::parser parser;
  for (std::string line; std::getline(file, line);) {
    simdjson::dom::element read;
    // The last line of a process that died may be cut.
    if (parser.parse(line).get(read) == simdjson::SUCCESS) events.push_back(eventFrom(read));
  }
  return events;
}

std::string tableOf(const std::vector<Result>& results) {
  std::string table;
  char line[512];
  for (const auto& result : results) {
    const std::string told = result.verdict == Verdict::passed ? result.classification : result.why;
    std::snprintf(line, sizeof line, "%-8s %-28.28s %-12s %-8s %6.1f s  %.200s\n",
                  std::string{nameOf(result.verdict)}.c_str(), result.name.c_str(),
                  result.placement.c_str(), result.outcome.c_str(), result.seconds, told.c_str());
    table += line;
  }
  const auto passed = std::count_if(results.begin(), results.end(),
                                    [](const auto& one) { return one.verdict == Verdict::passed; });
  return table + std::to_string(passed) + " of " + std::to_string(results.size()) + " passed.\n";
}

std::string writeReports(const std::vector<Result>& results, const std::filesystem::path& out,
                         double seconds) {
  std::error_code failure;
  std::filesystem::create_directories(out, failure);
  std::string problem;
  const auto write = [&](const char* name, const std::string& text) {
    std::ofstream file{out / name, std::ios::binary};
    file << text;
    file.close();
    if (!file) problem = "Cannot write " + (out / name).string() + ".";
  };
  std::string lines;
  for (const auto& result : results) {
    for (const auto& event : result.events) {
      lines += "{\"creative\": " + adserver::jsonString(result.name) + ", " +
               event.toJson().substr(1) + "\n";
    }
  }
  write("events.jsonl", lines);
  write("junit.xml", junitReport(results, seconds));
  write("report.html", htmlReport(results, seconds));
  return problem;
}

}  // namespace tavo::adplayer
