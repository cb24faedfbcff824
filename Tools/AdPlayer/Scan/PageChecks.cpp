// What a page does, and what the library and the engine make of it.

#include <algorithm>
#include <array>
#include <charconv>
#include <set>
#include <utility>

#include "AdPlayer/Scan/Checks.h"
#include "Gtk/GPtr.h"
#include "Values/Text.h"

namespace tavo::adplayer {

namespace {

int number(std::string_view text) {
  int value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

// The creative itself is told by the name that it was given.
std::string placeOf(const Recording& recording, std::string_view url) {
  if (url.empty() || url == "about:blank") return recording.name;
  if (!isOwn(recording, url)) return std::string{url};
  const gtk::GText whole{g_uri_unescape_string(std::string{url}.c_str(), nullptr)};
  const std::string_view plain = whole ? std::string_view{whole.get()} : url;
  const auto file = plain.substr(plain.rfind('/') + 1);
  return file.empty() || contains(recording.name, file) ? recording.name : std::string{file};
}

Finding at(const Recording& recording, const InspectionEvent& event, std::string message) {
  return {.message = std::move(message),
          .place = placeOf(recording, event.field("url")),
          .line = number(event.field("line")),
          .column = number(event.field("column"))};
}

bool isNetworkUrl(std::string_view url) {
  return url.starts_with("http://") || url.starts_with("https://");
}

bool isStore(std::string_view url) {
  constexpr std::array<std::string_view, 8> signs{
      "market:",    "itms", "play.google.com/store", "apps.apple.com", "itunes.apple.com", "amzn:",
      "appstream:", "snap:"};
  return std::any_of(signs.begin(), signs.end(),
                     [url](std::string_view sign) { return contains(url, sign); });
}

// Of a scan nobody ever taps, so whatever leaves the page leaves it by itself.
struct Leaving {
  std::string url;
  const InspectionEvent* event;
};

std::vector<Leaving> leavings(const Recording& recording) {
  std::vector<Leaving> found;
  bool isFirst = true;
  for (const auto* navigation : eventsOf(recording, InspectionKind::navigation)) {
    // The creative's own page comes in as a navigation too, before any other.
    if (navigation->field("frame") == "main" && std::exchange(isFirst, false)) continue;
    const bool isPage = navigation->field("frame") != "inner";
    const bool leaves = contains(navigation->field("decision"), "opened outside") ||
                        contains(navigation->field("decision"), "no tap asked for") ||
                        (isPage && contains(navigation->field("decision"), "loads in the page"));
    if (leaves) found.push_back({std::string{navigation->field("url")}, navigation});
  }
  for (const auto* command : eventsOf(recording, InspectionKind::command)) {
    const auto name = command->field("name");
    if (name != "open" && name != "playVideo" && name != "createCalendarEvent" &&
        name != "storePicture") {
      continue;
    }
    std::string url{command->field("? url")};
    found.push_back({url.empty() ? std::string{name} : std::move(url), command});
  }
  return found;
}

// Those have a check of their own.
bool isWrapper(const Recording& recording, std::string_view url) {
  const auto wrappers = eventsOf(recording, InspectionKind::wrapper);
  return std::any_of(wrappers.begin(), wrappers.end(),
                     [url](const auto* wrapper) { return wrapper->field("url") == url; });
}

void addMissing(const Recording& recording, const InspectionEvent& event, Findings& findings) {
  const auto status = number(event.field("status"));
  const auto error = event.field("error");
  if (status < 400 && error.empty()) return;
  const std::string why = error.empty() ? "status " + std::to_string(status) : std::string{error};
  findings.push_back(
      at(recording, event, std::string{event.field("url")} + " does not load: " + why));
}

void addProbes(const Recording& recording, std::string_view what, const char* message,
               Findings& findings) {
  for (const auto* probe : eventsOf(recording, InspectionKind::probe)) {
    if (probe->field("what") != what) continue;
    findings.push_back(at(recording, *probe, message + probe->text));
  }
}

}  // namespace

void lookForNoAd(const Recording& recording, Findings& findings) {
  if (recording.loaded) return;
  std::string why = recording.failure.empty() ? "no outcome in time" : recording.failure;
  for (const auto* verdict : eventsOf(recording, InspectionKind::classified)) {
    why += "; the answer was taken for " + verdict->text;
  }
  // Both speak in whole sentences, and this is one of its own.
  for (auto at = why.find(".;"); at != why.npos; at = why.find(".;", at)) why.erase(at, 1);
  while (why.ends_with('.')) why.pop_back();
  findings.push_back({.message = "Nothing is shown: " + why});
}

void lookForMissingResources(const Recording& recording, Findings& findings) {
  bool isAd = true;
  for (const auto* answer : eventsOf(recording, InspectionKind::answer)) {
    if (std::exchange(isAd, false) || answer->field("traffic") == "tracking") continue;
    if (isWrapper(recording, answer->field("url"))) continue;
    addMissing(recording, *answer, findings);
  }
  for (const auto* resource : eventsOf(recording, InspectionKind::resource)) {
    addMissing(recording, *resource, findings);
  }
  for (const auto* error : eventsOf(recording, InspectionKind::scriptError)) {
    const bool isMedia = error->text.starts_with("video ") || error->text.starts_with("audio ") ||
                         error->text.starts_with("source ");
    const auto url = error->field("url");
    const auto isTold = std::any_of(findings.begin(), findings.end(), [&](const Finding& finding) {
      return finding.message.starts_with(url);
    });
    // The library names its own script by a file, and brings it another way.
    const bool isLibrarys = url.starts_with("file:");
    if (error->field("what") != "resource" || isMedia || isTold || isLibrarys) continue;
    findings.push_back(at(recording, *error, error->text));
  }
}

void lookForMedia(const Recording& recording, Findings& findings) {
  for (const auto* media : eventsOf(recording, InspectionKind::media)) {
    if (!media->field("url").empty()) continue;
    std::string message = "No media file can be played here: only progressive video/mp4 is";
    for (const auto& field : media->fields) {
      if (field.name == "dropped") message += "; " + field.value;
    }
    findings.push_back({.message = message});
  }
  for (const auto* error : eventsOf(recording, InspectionKind::scriptError)) {
    if (error->field("what") != "resource") continue;
    if (!error->text.starts_with("video ") && !error->text.starts_with("audio ") &&
        !error->text.starts_with("source ")) {
      continue;
    }
    findings.push_back(at(recording, *error, "The engine cannot play it: " + error->text));
  }
}

void lookForWrappers(const Recording& recording, Findings& findings) {
  for (const auto* wrapper : eventsOf(recording, InspectionKind::wrapper)) {
    if (wrapper->field("why") == "fetched") continue;
    findings.push_back({.message = wrapper->text, .place = std::string{wrapper->field("url")}});
  }
}

void lookForScriptErrors(const Recording& recording, Findings& findings) {
  for (const auto* error : eventsOf(recording, InspectionKind::scriptError)) {
    if (error->field("what") != "script") continue;
    findings.push_back(at(recording, *error, error->text));
  }
}

void lookForRefusals(const Recording& recording, Findings& findings) {
  for (const auto* navigation : eventsOf(recording, InspectionKind::navigation)) {
    if (!navigation->field("decision").starts_with("refused")) continue;
    findings.push_back(at(recording, *navigation, "A navigation was " + navigation->text));
  }
  for (const auto* command : eventsOf(recording, InspectionKind::command)) {
    const auto outcome = command->field("outcome");
    if (outcome == "carried out" || outcome.empty()) continue;
    findings.push_back(
        {.message = "The command " + command->text + " was " + std::string{outcome}});
  }
  for (const auto* error : eventsOf(recording, InspectionKind::scriptError)) {
    if (error->field("what") == "policy") findings.push_back(at(recording, *error, error->text));
  }
  for (const auto* statement : eventsOf(recording, InspectionKind::statement)) {
    if (!statement->field("outcome").starts_with("held back")) continue;
    findings.push_back(
        {.message = "An answer to the creative was " + std::string{statement->field("outcome")}});
  }
  addProbes(recording, "refused", "", findings);
}

void lookForLimits(const Recording& recording, Findings& findings) {
  for (const auto kind : {InspectionKind::pause, InspectionKind::process}) {
    for (const auto* event : eventsOf(recording, kind))
      findings.push_back({.message = event->text});
  }
}

void lookForNavigation(const Recording& recording, Findings& findings) {
  for (const auto& [url, event] : leavings(recording)) {
    if (isStore(url)) continue;
    findings.push_back(at(recording, *event, "Opens " + url + " though nobody tapped"));
    findings.back().place = recording.name;
  }
}

void lookForStores(const Recording& recording, Findings& findings) {
  for (const auto& [url, event] : leavings(recording)) {
    if (!isStore(url)) continue;
    findings.push_back(
        {.message = "Opens the store " + url + " though nobody tapped", .place = recording.name});
  }
}

void lookForHosts(const Recording& recording, Findings& findings) {
  std::set<std::string> hosts;
  for (const auto& event : recording.events) {
    const bool asks =
        event.kind == InspectionKind::resource || event.kind == InspectionKind::request;
    const auto url = event.field("url");
    if (asks && !isOwn(recording, url)) hosts.insert(hostOf(url));
  }
  for (const auto& ping : recording.pings) {
    if (!isOwn(recording, ping.url.text())) hosts.insert(hostOf(ping.url.text()));
  }
  hosts.erase("");
  for (const auto& host : hosts) {
    findings.push_back({.message = "Contacts " + host, .place = recording.name});
  }
}

void lookForStorage(const Recording& recording, Findings& findings) {
  addProbes(recording, "storage", "Uses ", findings);
}

void lookForFingerprinting(const Recording& recording, Findings& findings) {
  addProbes(recording, "fingerprint", "Asks for ", findings);
}

void lookForNamelessPictures(const Recording& recording, Findings& findings) {
  addProbes(recording, "nameless", "", findings);
}

void lookForMixedContent(const Recording& recording, Findings& findings) {
  std::set<std::string> urls;
  for (const auto* resource : eventsOf(recording, InspectionKind::resource)) {
    urls.insert(std::string{resource->field("url")});
  }
  for (const auto* probe : eventsOf(recording, InspectionKind::probe)) {
    if (probe->field("what") == "address") urls.insert(std::string{probe->field("url")});
  }
  for (const auto& url : urls) {
    if (!url.starts_with("http://") || isOwn(recording, url) || !isNetworkUrl(url)) continue;
    findings.push_back({.message = url + " is without encryption", .place = recording.name});
  }
}

void lookForDroppedKeys(const Recording& recording, Findings& findings) {
  for (const auto* verdict : eventsOf(recording, InspectionKind::classified)) {
    for (const auto& field : verdict->fields) {
      // Keys of the format that ads need not have an effect with are in every answer.
      if (field.name != "dropped" || field.value.ends_with("has no effect")) continue;
      findings.push_back({.message = "Of the answer, " + field.value, .place = recording.name});
    }
  }
}

}  // namespace tavo::adplayer
