// Pings: those that never come due, those that fail, and those that come twice.

#include <re2/re2.h>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "AdPlayer/Scan/Checks.h"
#include "Values/Text.h"

namespace tavo::adplayer {

namespace {

struct Wanted {
  std::string event;  // of the document, such as "start"
  std::string url;
};

// What only a person brings about, and a play without one therefore does not send.
bool needsAPerson(std::string_view event) {
  static const std::set<std::string_view> events{"pause",
                                                 "resume",
                                                 "mute",
                                                 "unmute",
                                                 "rewind",
                                                 "skip",
                                                 "fullscreen",
                                                 "exitFullscreen",
                                                 "expand",
                                                 "collapse",
                                                 "close",
                                                 "acceptInvitation",
                                                 "playerExpand",
                                                 "playerCollapse",
                                                 "acceptInvitationLinear",
                                                 "closeLinear",
                                                 "timeSpentViewing",
                                                 "adExpand",
                                                 "adCollapse",
                                                 "minimize",
                                                 "overlayViewDuration",
                                                 "otherAdInteraction"};
  return events.contains(event);
}

std::string textIn(std::string_view element) {
  std::string text{trimmed(element)};
  constexpr std::string_view opening = "<![CDATA[";
  if (text.starts_with(opening)) {
    text.erase(0, opening.size());
    text.erase(std::min(text.find("]]>"), text.size()));
  }
  std::string plain{trimmed(text)};
  for (auto at = plain.find("&amp;"); at != plain.npos; at = plain.find("&amp;", at + 1)) {
    plain.erase(at + 1, 4);
  }
  return plain;
}

// The documents are read by pattern and not by the library's reader: what that reader drops is what
// is looked for.
void addWanted(const std::string& document, std::vector<Wanted>& wanted) {
  static const RE2 tracking{
      R"re(<Tracking\s[^>]*event\s*=\s*\\?["']([^"'\\]+)\\?["'][^>]*>([^<]*(?:<!\[CDATA\[.*?\]\]>)?)[^<]*</Tracking>)re"};
  static const RE2 impression{
      R"re(<Impression[^>]*>([^<]*(?:<!\[CDATA\[.*?\]\]>)?)[^<]*</Impression>)re"};
  std::string event;
  std::string url;
  re2::StringPiece rest{document};
  while (RE2::FindAndConsume(&rest, tracking, &event, &url)) wanted.push_back({event, textIn(url)});
  rest = document;
  while (RE2::FindAndConsume(&rest, impression, &url))
    wanted.push_back({"impression", textIn(url)});
}

// An address whose macros may have been filled, as a pattern.
bool wasSent(const std::string& url, const Recording& recording) {
  std::string pattern = RE2::QuoteMeta(url);
  RE2::GlobalReplace(&pattern, R"(\\\[[A-Za-z_]+\\\])", ".*");
  const RE2 matcher{pattern};
  return std::any_of(recording.pings.begin(), recording.pings.end(), [&](const PingRecord& ping) {
    return ping.url.text() == url || RE2::FullMatch(ping.url.text(), matcher);
  });
}

std::vector<Wanted> wantedBy(const Recording& recording) {
  std::vector<Wanted> wanted;
  for (const auto* answer : eventsOf(recording, InspectionKind::answer)) {
    std::string body{answer->field("body")};
    if (!contains(body, "<VAST")) continue;
    // In a recorded answer the document stands inside a JSON text.
    RE2::GlobalReplace(&body, R"(\\/)", "/");
    RE2::GlobalReplace(&body, R"(\\n|\\t|\\r)", " ");
    addWanted(body, wanted);
  }
  return wanted;
}

}  // namespace

void lookForTrackingNeverDue(const Recording& recording, Findings& findings) {
  if (!recording.loaded) return;
  for (const auto& [event, url] : wantedBy(recording)) {
    if (needsAPerson(event) || url.empty() || wasSent(url, recording)) continue;
    std::string message = "The event ";
    message.append(event).append(" was never sent: ").append(url);
    findings.push_back({.message = std::move(message), .place = recording.name});
  }
}

void lookForFailedTracking(const Recording& recording, Findings& findings) {
  for (const auto& ping : recording.pings) {
    const bool isRefused = ping.state == PingState::answered && ping.status >= 400;
    const bool isLost = ping.state == PingState::failed || ping.state == PingState::dropped;
    if (!isRefused && !isLost) continue;
    std::string why = "dropped: too many were waiting";
    if (isRefused) why = "answered with status " + std::to_string(ping.status);
    if (ping.state == PingState::failed) {
      why = "not answered: " + (ping.error ? ping.error->description : std::string{"no reason"});
    }
    findings.push_back({.message = ping.url.text() + " was " + why, .place = recording.name});
  }
}

void lookForDoubledTracking(const Recording& recording, Findings& findings) {
  std::map<std::string, int> counts;
  for (const auto& ping : recording.pings) ++counts[ping.url.text()];
  for (const auto& [url, count] : counts) {
    if (count < 2) continue;
    findings.push_back({.message = url + " was sent " + std::to_string(count) + " times",
                        .place = recording.name});
  }
}

}  // namespace tavo::adplayer
