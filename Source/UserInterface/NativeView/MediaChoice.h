#pragma once

#include <vector>

#include <tavo/Url.h>

#include "Model/VASTDataModel/XVASTAd.h"

namespace tavo {

// The videos of an ad that can be played, the one to play first. `referenceWidth` is the width of
// the view that shows it, in points. Empty when the ad has no media file of the type "video/mp4",
// written exactly so.
//
// Quirk: the positions of media files are counted on from one creative to the next, so a later
// creative gives only the files behind as many as were counted before it.
// Quirk: the file that fits is sought among those of the last creative alone, in the order of their
// widths as texts ("1280" before "640"); servers have their lists in that order.
[[nodiscard]] std::vector<Url> videoURLFromVASTAd(const XVASTAd& ad, double referenceWidth);

}  // namespace tavo
