#include "AdServer/Route.h"

#include <optional>
#include <vector>

#include "AdServer/CampaignFolder.h"
#include "Gtk/GPtr.h"

namespace tavo::adserver {

namespace {

using Segments = std::vector<std::string>;

// None for a broken escape and for one that smuggles a separator or a zero byte into a name.
std::optional<std::string> decoded(std::string_view segment) {
  const gtk::GText text{
      g_uri_unescape_segment(segment.data(), segment.data() + segment.size(), "/")};
  return text ? std::optional<std::string>{text.get()} : std::nullopt;
}

// The decoded parts between the slashes, or none when one of them is unfit.
std::optional<Segments> segmentsOf(std::string_view path) {
  Segments segments;
  while (!path.empty()) {
    path.remove_prefix(path.front() == '/' ? 1 : 0);
    const auto segment = path.substr(0, path.find('/'));
    path.remove_prefix(segment.size());
    auto name = decoded(segment);
    if (!name || *name == "." || *name == "..") {
      return std::nullopt;
    }
    segments.push_back(std::move(*name));
  }
  return segments;
}

bool isDataFormat(const std::string& segment) { return segment == "sdk" || segment == "sdkl"; }

// The data format stands anywhere before the page, which has one part at least.
bool hasDataFormatBeforePage(const Segments& segments) {
  for (std::size_t index = 0; index + 2 < segments.size(); ++index) {
    if (isDataFormat(segments[index])) {
      return true;
    }
  }
  return false;
}

std::optional<Route> adRouteOf(const Segments& segments) {
  if (segments.empty() || !segments.back().starts_with('@') || !hasDataFormatBeforePage(segments)) {
    return std::nullopt;
  }
  const auto& campaign = segments[segments.size() - 2];
  if (!isPlainName(campaign)) {
    return RefusedPath{};
  }
  return AdRequest{campaign, segments.back().substr(1)};
}

Route campaignRouteOf(const std::string& area, const std::string& campaign,
                      const std::string& name) {
  const bool known = area == "assets" || area == "track";
  if (!known) {
    return UnknownPath{};
  }
  if (!isPlainName(campaign) || !isPlainName(name)) {
    return RefusedPath{};
  }
  if (area == "assets") {
    return AssetRequest{campaign, name};
  }
  return TrackingPing{campaign, name};
}

Route ownPageOf(const Segments& segments) {
  if (segments.size() == 1 && segments[0].empty()) return LivePage{};
  if (segments.size() == 1 && segments[0] == "events") return EventStream{};
  if (segments.size() == 1 && segments[0] == "record") return RecordPage{};
  if (segments.size() == 1 && segments[0] == "campaigns") return CampaignList{};
  if (segments.size() == 2 && segments[0] == "clicked" && isPlainName(segments[1])) {
    return LandingPage{segments[1]};
  }
  if (segments.size() == 3) return campaignRouteOf(segments[0], segments[1], segments[2]);
  return UnknownPath{};
}

}  // namespace

bool isOwnPage(const Route& route) {
  return std::holds_alternative<LivePage>(route) || std::holds_alternative<EventStream>(route) ||
         std::holds_alternative<RecordPage>(route) || std::holds_alternative<CampaignList>(route);
}

Route routeOf(std::string_view path) {
  const auto segments = segmentsOf(path);
  if (!segments) {
    return RefusedPath{};
  }
  if (path.ends_with("/default/empty.gif")) {
    return EmptyPicture{};
  }
  return adRouteOf(*segments).value_or(ownPageOf(*segments));
}

}  // namespace tavo::adserver
