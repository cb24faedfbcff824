// What a creative does under other conditions and did not do at first: reviews see one of the two.

#include <re2/re2.h>

#include <map>
#include <utility>

#include "AdPlayer/Scan/Checks.h"

namespace tavo::adplayer {

namespace {

// An address without what changes from play to play: query, port of our own server, long numbers.
std::string lasting(const Recording& recording, std::string_view url) {
  std::string text{url.substr(0, url.find_first_of("?#"))};
  if (isOwn(recording, text)) text.replace(0, recording.server.size(), "");
  static const RE2 number{"[0-9a-fA-F-]{8,}"};
  RE2::GlobalReplace(&text, number, "*");
  return text;
}

// What was done, and how a person would say it.
std::map<std::string, std::string> deedsOf(const Recording& recording) {
  std::map<std::string, std::string> deeds;
  for (const auto& event : recording.events) {
    const auto url = lasting(recording, event.field("url"));
    switch (event.kind) {
      case InspectionKind::resource:
        deeds["fetches " + url] = "fetches " + std::string{event.field("url")};
        break;
      case InspectionKind::navigation:
        deeds["goes to " + url] = "goes to " + std::string{event.field("url")};
        break;
      case InspectionKind::command:
        deeds["command " + std::string{event.field("name")}] = "asks for " + event.text;
        break;
      case InspectionKind::scriptError:
        if (event.field("what") == "script") deeds["error " + event.text] = "fails: " + event.text;
        break;
      default:
        break;
    }
  }
  deeds[recording.loaded ? "loads" : "does not load"] =
      recording.loaded ? "loads" : "does not load";
  return deeds;
}

void addDeeds(const Recording& one, const Recording& other, const std::string& when,
              Findings& findings) {
  const auto known = deedsOf(other);
  for (const auto& [deed, told] : deedsOf(one)) {
    if (known.contains(deed)) continue;
    std::string message = when;
    message.append(" it ").append(told);
    findings.push_back({.message = std::move(message), .place = other.name});
  }
}

}  // namespace

void lookForDifferences(const Recording& recording, Findings& findings) {
  for (const auto& again : recording.again) {
    addDeeds(again, recording, "With " + again.variation, findings);
    addDeeds(recording, again, "Without " + again.variation + ", and not with it,", findings);
  }
}

}  // namespace tavo::adplayer
