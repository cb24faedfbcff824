#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <tavo/VastTracking.h>

namespace tavo {

// One creative of a VAST ad as its document has it. Lengths are pixels, 0 where the document names
// none; times are seconds; texts are empty where the document is silent.

struct VastMediaFile {
  std::string url;
  std::string id;
  std::string delivery;  // "progressive" or "streaming"
  std::string type;      // as "video/mp4"
  std::string codec;
  std::string apiFramework;  // not empty: a program that wants to be run, not a film
  int width = 0;
  int height = 0;
  int bitrate = 0;  // kilobits a second; minimum and maximum for streams
  int minBitrate = 0;
  int maxBitrate = 0;
  std::int64_t fileSize = 0;  // bytes
};

struct VastCaptions {
  std::string url;
  std::string type;  // as "text/vtt"
  std::string language;
};

// A picture that takes the place of an icon's page where that cannot be opened.
struct VastFallbackImage {
  std::string url;
  std::string altText;
  int width = 0;
  int height = 0;
};

struct VastIcon {
  std::string program;  // of several icons of one program, the one nearest to the film counts
  std::string apiFramework;
  std::string altText;
  std::string hoverText;
  int width = 0;
  int height = 0;
  std::string x;                   // "left", "right" or pixels from the left
  std::string y;                   // "top", "bottom" or pixels from the top
  double offset = 0;               // into the film
  std::optional<double> duration;  // none: to the film's end
  double pixelRatio = 1;           // of its pictures
  std::vector<VastResource> resources;
  VastClick click;
  std::vector<VastFallbackImage> fallbackImages;
  std::vector<std::string> viewTracking;
};

struct VastCompanion {
  std::string id;
  std::string adSlotId;
  std::string apiFramework;
  std::string altText;
  std::string parameters;     // AdParameters
  std::string renderingMode;  // "default", "concurrent" or "end-card"
  int width = 0;
  int height = 0;
  int assetWidth = 0;
  int assetHeight = 0;
  int expandedWidth = 0;
  int expandedHeight = 0;
  double pixelRatio = 1;
  std::vector<VastResource> resources;
  VastClick click;
  std::vector<VastTracking> tracking;  // "creativeView"
};

struct VastLinear {
  std::optional<VastOffset> skipOffset;  // none: the film may not be skipped
  double duration = 0;
  std::string parameters;  // AdParameters
  std::vector<VastMediaFile> mediaFiles;
  std::vector<VastMediaFile> mezzanines;  // for whoever encodes; never played
  std::vector<VastMediaFile> interactiveFiles;
  std::vector<VastCaptions> captions;
  std::vector<VastTracking> tracking;
  VastClick click;
  std::vector<std::string> customClicks;
  std::vector<VastIcon> icons;
};

struct VastUniversalAdId {
  std::string registry;
  std::string value;
};

struct VastCreative {
  std::string id;
  std::string adId;
  std::string apiFramework;
  std::optional<int> sequence;
  std::vector<VastUniversalAdId> universalAdIds;
  std::optional<VastLinear> linear;
  std::string companionsRequired;  // "all", "any" or "none"
  std::vector<VastCompanion> companions;
  bool hasNonLinear = false;
};

}  // namespace tavo
