#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <tavo/Export.h>
#include <tavo/Geometry.h>
#include <tavo/Image.h>

namespace tavo {

// Settings of one ad view. The host and the view share one record, so a change is seen by whatever
// reads the field next; nothing is copied or checked on assignment. Main thread only.
struct TAVO_EXPORT XAdSlotConfiguration {
  // Creatives are treated as the public standards say (VAST 2.0 to 4.2, MRAID 2.0) where that
  // differs from what this library does otherwise. Not set: as XGlobalConfiguration says. Read when
  // an ad is asked for, and holds for that ad.
  std::optional<bool> standardsMode;

  // Refresh and drawing.

  // Seconds between two ads of a banner; 0 turns refresh off. Read when an ad has loaded.
  float bannerRefreshInterval = 120.0F;
  // Whether a video may bring a companion; kept for the host, nothing reads it.
  bool canShowCompanionAd = false;
  // An image may be scaled to the view, and keeps its proportions then. Read when the image shows.
  bool scalingAllowed = false;
  bool maintainAspectRatio = false;
  // Pattern painted behind a view without an ad; may be empty.
  Image backGroundImage;

  // Privacy and request. Read at each request, redirects and pings included.

  // Whether the host lets its location be used; kept for the host, nothing reads it.
  bool accessToGeoLocation = false;
  // Child-directed treatment: the geo override leaves the request, and only the ad server's own
  // cookies go along.
  bool COPPAPermissions = false;
  // A page acts for the address of its file, as the answer names it: with the cookies of that site.
  // True: only where the file is of the site that served the answer; a file of another site only
  // completes relative addresses, and the page acts for nobody. Turn it on where the ad server is
  // not trusted with the cookies of other sites.
  bool confinesPagesToServingSite = false;
  // Asks for bids in real time.
  bool RTBRequired = false;

  // Clicks. True: a page opens in a browser inside the application; false: outside of it.
  bool shouldOpenClickThroughURLInAppBrowser = false;

  // Mediation, handed to the external ad network. Negative numbers mean "not set".

  // 1 or more: on; 0: off. A value that is set here outweighs XGlobalConfiguration::canMediate,
  // save for one reader: after a failed request an attempt begins when either says so.
  std::int32_t canMediate = -1;
  std::optional<std::string> mediationPlacementId;
  float mediationBannerWidth = 0.0F;  // points
  float mediationBannerHeight = 0.0F;
  std::int32_t mediationTargetedAge = -1;  // years
  std::int32_t mediationTargetedGender = -1;
  std::map<std::string, std::string> mediationTargetedKeywords;

  // Video.

  // Where the countdown and the skip text stand: 0 top right, 1 top centre, 2 top left, 3 bottom
  // left, 4 bottom centre, 5 bottom right.
  unsigned countdownTimerPosition = 0;
  // When a video may be skipped; negative: as the ad says. Type 0: seconds; 1: percent of the
  // duration, where more than 100 counts as 100.
  std::int64_t skipOffsetTime = -1;
  std::int64_t skipOffsetType = 0;
  // The ad ends when its viewer comes back from a click; otherwise it goes on.
  bool dismissVideoOnClickThrough = true;

  // In the standards mode: the bitrate, in kilobits a second, beyond which no file of a film is
  // taken while there is another one; 0: the best there is.
  int preferredVideoBitrate = 0;
  // In the standards mode: the places, in points, that the host has for companions of a film.
  // Companions that fit into none are not offered; empty: all are.
  std::vector<Size> companionSizes;

  // Kept for hosts that note here what they have set; no operation reads or changes them.
  bool isBannerRefreshIntervalSet = false;
  bool isClickThroughValueSet = false;

  // Does nothing; real-time bidding is switched by the field.
  void setRTBRequired();
};

}  // namespace tavo
