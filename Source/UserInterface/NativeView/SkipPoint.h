#pragma once

#include <string>

#include <tavo/XAdSlotConfiguration.h>

namespace tavo {

// When a video may be skipped or closed.
struct SkipPoint {
  std::string skipOffset;   // what it was found from; empty: nothing says when
  float skipDelay = 0;      // seconds; negative or beyond the video's end when a document says so
  bool wholeVideo = false;  // nothing says when, so the video has to be seen to its end
};

// The skip offset that the slot's settings ask for, as "hh:mm:ss"; empty for an unknown type.
// `duration` in whole seconds. Quirk: a time that is not set (negative) counts as zero, so by
// default a video whose document is silent may be skipped at once.
[[nodiscard]] std::string skipOffsetOf(const XAdSlotConfiguration& slot, int duration);

// The skip point of a video of `duration` seconds: by the document's own offset, else by the
// slot's settings (null: none), else the whole video.
[[nodiscard]] SkipPoint skipPoint(const std::string& documentOffset, double duration,
                                  const XAdSlotConfiguration* slot);

// The countdown as it first shows. Quirk: in a pre-roll that has to be seen to its end the time
// that has passed is not taken off; the next tick corrects it.
enum class VideoUse { preroll, interstitial };
[[nodiscard]] std::string firstCountdown(const SkipPoint& point, double currentTime, VideoUse use);

// The countdown `currentTime` seconds into the video.
[[nodiscard]] std::string countdown(float skipDelay, double currentTime);

}  // namespace tavo
