#include "AdPlayer/Scan/Recording.h"

#include <algorithm>

namespace tavo::adplayer {

std::vector<const InspectionEvent*> eventsOf(const Recording& recording, InspectionKind kind) {
  std::vector<const InspectionEvent*> found;
  for (const auto& event : recording.events) {
    if (event.kind == kind) found.push_back(&event);
  }
  return found;
}

std::string hostOf(std::string_view url) {
  if (!url.starts_with("http://") && !url.starts_with("https://")) return {};
  url.remove_prefix(url.find("//") + 2);
  url = url.substr(0, url.find_first_of("/?#"));
  const auto user = url.rfind('@');
  return std::string{user == url.npos ? url : url.substr(user + 1)};
}

bool isOwn(const Recording& recording, std::string_view url) {
  return !recording.server.empty() && hostOf(url) == hostOf(recording.server);
}

}  // namespace tavo::adplayer
