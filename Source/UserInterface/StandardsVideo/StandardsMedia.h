#pragma once

#include <optional>
#include <string>
#include <vector>

#include <tavo/Geometry.h>
#include <tavo/Url.h>
#include <tavo/VastCreative.h>

#include "AdController/ResponseParser/StandardsVast/VastErrorCode.h"
#include "UserInterface/NativeView/SkipPoint.h"

namespace tavo {

// The MIME types of films that a machine may be able to decode.
[[nodiscard]] const std::vector<std::string>& filmTypes();

// What decides between the files of a film.
struct MediaWish {
  std::vector<std::string> types;  // that can be decoded here
  Size player;                     // pixels; empty: not known
  int bitrate = 0;                 // kilobits a second, see preferredVideoBitrate
};

// The files that can be played, the best first: the smallest that fills the player, else the
// largest; of one size, the highest bitrate within the wished one, else the lowest.
struct MediaRanking {
  std::vector<VastMediaFile> files;
  VastErrorCode failure = VastErrorCode::noSupportedMedia;  // where there are none
};
[[nodiscard]] MediaRanking rankedMedia(const VastLinear& film, const MediaWish& wish);

// When a film may be skipped: as its document says, else as the host has set it, else never. A
// place behind the film's end counts as never.
[[nodiscard]] SkipPoint standardsSkipPoint(const std::optional<VastOffset>& documentOffset,
                                           double duration, const XAdSlotConfiguration* slot);

}  // namespace tavo
