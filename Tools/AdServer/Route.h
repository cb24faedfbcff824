#pragma once

#include <string>
#include <string_view>
#include <variant>

namespace tavo::adserver {

// What the path of a request asks for. Campaign and file names in here are plain names.

// <delivery path>/sdk|sdkl/<page>/@<position>. The delivery path may be anything; the last part of
// the page names the campaign, so "news.example/front" asks for "front".
struct AdRequest {
  std::string campaign;
  std::string position;  // without its leading "@"
  bool operator==(const AdRequest&) const = default;
};

struct AssetRequest {  // /assets/<campaign>/<file>
  std::string campaign;
  std::string file;
  bool operator==(const AssetRequest&) const = default;
};

struct TrackingPing {  // /track/<campaign>/<event>
  std::string campaign;
  std::string event;
  bool operator==(const TrackingPing&) const = default;
};

struct LandingPage {  // /clicked/<campaign>
  std::string campaign;
  bool operator==(const LandingPage&) const = default;
};

struct EmptyPicture {  // any path that ends in /default/empty.gif
  bool operator==(const EmptyPicture&) const = default;
};

struct LivePage {  // the page at "/", for people
  bool operator==(const LivePage&) const = default;
};

struct EventStream {  // /events
  bool operator==(const EventStream&) const = default;
};

struct RecordPage {  // /record
  bool operator==(const RecordPage&) const = default;
};

struct CampaignList {  // /campaigns
  bool operator==(const CampaignList&) const = default;
};

// A path with a name in it that leads out of where it belongs, such as "..", also when escaped.
struct RefusedPath {
  bool operator==(const RefusedPath&) const = default;
};

struct UnknownPath {
  bool operator==(const UnknownPath&) const = default;
};

using Route =
    std::variant<AdRequest, AssetRequest, TrackingPing, LandingPage, EmptyPicture, LivePage,
                 EventStream, RecordPage, CampaignList, RefusedPath, UnknownPath>;

// The server's own pages, which show what it was asked: not recorded, and for this machine only.
[[nodiscard]] bool isOwnPage(const Route& route);

// The route of a path without the query, its percent-escapes still in it.
[[nodiscard]] Route routeOf(std::string_view path);

}  // namespace tavo::adserver
