#include "AdPlayer/MraidChecklist/MraidChecklist.h"

#include <glibmm.h>

#include <array>
#include <sstream>
#include <string_view>

#include <tavo/Runtime.h>

#include "AdPlayer/MraidChecklist/MraidPoints.h"

namespace tavo::adplayer {

namespace {

constexpr auto creatives = std::to_array<std::string_view>(
    {"basics", "resize", "expand", "two-part", "two-part-orientation", "orientation", "exposure",
     "actions", "close", "interstitial"});
constexpr Seconds longestCreative{150};  // each of its waits ends much earlier

MraidStage::Fields fieldsOf(const std::string& query) {
  MraidStage::Fields fields;
  std::istringstream stream{query};
  for (std::string pair; std::getline(stream, pair, '&');) {
    const auto mark = pair.find('=');
    if (mark == std::string::npos) continue;
    fields[pair.substr(0, mark)] = Glib::uri_unescape_string(pair.substr(mark + 1));
  }
  return fields;
}

// What is not due needs no long wait.
MraidStage::Settings withPointsNotDue(MraidStage::Settings settings) {
  if (settings.standards) return settings;
  for (const auto& point : mraidPoints()) {
    if (point.isMet == PointIsMet::inTheMode) settings.pointsNotDue.emplace_back(point.name);
  }
  return settings;
}

RunLoop& checklistLoop() { return *Runtime::current().platform().runLoop; }

}  // namespace

std::span<const std::string_view> mraidCreatives() { return creatives; }

MraidChecklist::MraidChecklist(Settings settings)
    : settings_{std::move(settings)},
      server_{std::make_shared<adserver::AdServer>(settings_.creatives)},
      stage_{withPointsNotDue(settings_.stage)} {
  server_->record().setListener([this](const auto& request) { heard(request); });
}

MraidChecklist::~MraidChecklist() { server_->record().setListener({}); }

void MraidChecklist::start(std::function<void(const Results&)> finished) {
  finished_ = std::move(finished);
  following_ = checklistLoop().after(Seconds{0}, [this] { next(); });
}

void MraidChecklist::next() {
  if (current_ == creatives.size()) {
    stage_.clear();
    return finished_(results());
  }
  const std::string creative{creatives.at(current_)};
  if (!settings_.only.empty() && settings_.only != creative) return ended();
  if (onNote) onNote("playing " + creative);
  patience_ = checklistLoop().after(longestCreative, [this, creative] {
    if (onNote) onNote(creative + " has not come to its end");
    ended();
  });
  stage_.play(server_->baseUrl(), creative, [this] { ended(); });
}

// In a turn of its own: the word may come from inside the slot that goes.
void MraidChecklist::ended() {
  patience_.invalidate();
  if (following_.isValid()) return;
  ++current_;
  following_ = checklistLoop().after(Seconds{0}, [this] { next(); });
}

void MraidChecklist::heard(const adserver::RecordedRequest& request) {
  if (request.kind != adserver::RequestKind::Tracking || request.campaign != "checklist") return;
  MraidStage::Fields words = fieldsOf(request.query);
  if (request.detail == "point") return notePoint(words);
  if (request.detail == "ask") {
    checklistLoop().post([this, words] { stage_.carryOut(words); });
  } else if (request.detail == "trouble" && onNote) {
    onNote(std::string{creatives.at(current_)} + ": " + words["text"]);
  } else if (request.detail == "end") {
    ended();
  }
}

void MraidChecklist::notePoint(const MraidStage::Fields& fields) {
  MraidResult result;
  for (const auto& [name, value] : fields) {
    if (name == "name") result.name = value;
    if (name == "met") result.isMet = value == "1";
    if (name == "found") result.found = value;
  }
  found_[result.name] = result;
}

MraidChecklist::Results MraidChecklist::results() const {
  Results all;
  for (const auto& point : mraidPoints()) {
    if (!settings_.only.empty() && settings_.only != point.creative) continue;
    const auto found = found_.find(std::string{point.name});
    MraidResult result = found == found_.end() ? MraidResult{} : found->second;
    result.name = point.name;
    result.sentence = point.sentence;
    result.isDue = settings_.stage.standards || point.isMet == PointIsMet::always;
    all.push_back(std::move(result));
  }
  return all;
}

}  // namespace tavo::adplayer
