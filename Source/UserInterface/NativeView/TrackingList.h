#pragma once

#include <memory>
#include <optional>
#include <vector>

#include <tavo/Url.h>

#include "Model/VASTDataModel/XVASTAd.h"

namespace tavo {

// The events of an ad. It is the inline ad's own list, kept alive together with its document.
using TrackingList = std::shared_ptr<std::vector<XTrackingEvent>>;

// The events of the first creative of the inline ad, with those of all wrappers put behind them.
// Quirk: the wrappers' events are put into the inline ad's own list, so that whoever reads the
// document sees them too; a second call for the same document adds nothing. Null when the first
// creative has no media file or no events: the wrappers' events are lost then.
[[nodiscard]] TrackingList mergedTracking(const std::shared_ptr<XVASTAd>& ad);

// The URLs to call for an event, in the order of the list; none without a list or with an empty
// one.
[[nodiscard]] std::optional<std::vector<Url>> eventUrls(const TrackingList& list,
                                                        TrackingEventType type);

// The pages behind a click on the video: the last one that any creative names. Empty: none.
[[nodiscard]] Url clickThroughOf(const XVASTAd& ad);

// Where to tell that the ad is shown: the wrappers in the order in which they were found, then the
// inline ad.
[[nodiscard]] std::vector<Url> chainImpressions(const XVASTAd& ad);

// The skip offset and the duration of the first creative's video; none when it has none.
[[nodiscard]] OptionalText skipOffSetFromVASTAd(const XVASTAd& ad);
[[nodiscard]] OptionalText durationFromVASTAd(const XVASTAd& ad);

}  // namespace tavo
