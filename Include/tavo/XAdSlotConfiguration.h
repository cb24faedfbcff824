#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include <tavo/Image.h>

namespace tavo {

// Settings of one ad view. The host and the view share one record; nothing is copied or checked on
// assignment, each reader applies its own rule.
struct XAdSlotConfiguration {
  // Refresh and drawing.
  float bannerRefreshInterval = 120.0F;  // seconds; 0 turns refresh off
  bool canShowCompanionAd = false;       // kept for the host
  bool maintainAspectRatio = false;      // an image that may be scaled keeps its proportions
  bool scalingAllowed = false;           // an image may be scaled to the view
  Image backGroundImage;                 // pattern behind a view without an ad; may be empty

  // Privacy and request.
  bool accessToGeoLocation = false;  // kept for the host
  bool COPPAPermissions = false;     // child-directed treatment
  bool RTBRequired = false;          // real-time bidding

  // Clicks.
  bool shouldOpenClickThroughURLInAppBrowser = false;  // false: outside the application

  // Mediation; negative numbers mean "not set".
  std::int32_t canMediate = -1;
  std::optional<std::string> mediationPlacementId;
  float mediationBannerWidth = 0.0F;   // points
  float mediationBannerHeight = 0.0F;  // points
  std::int32_t mediationTargetedAge = -1;
  std::int32_t mediationTargetedGender = -1;
  std::map<std::string, std::string> mediationTargetedKeywords;

  // Video.
  unsigned countdownTimerPosition = 0;
  std::int64_t skipOffsetTime = -1;  // negative: not set
  std::int64_t skipOffsetType = 0;   // 0: seconds; 1: percent of the duration
  bool dismissVideoOnClickThrough = true;

  // Does nothing; real-time bidding is switched by the field.
  void setRTBRequired();
};

}  // namespace tavo
