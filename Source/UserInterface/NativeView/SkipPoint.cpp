#include "UserInterface/NativeView/SkipPoint.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "UserInterface/NativeView/VideoTime.h"
#include "Utilities/NumberText.h"
#include "Values/Text.h"

namespace tavo {

namespace {

enum SkipOffsetType : std::int64_t { inSeconds = 0, inPercent = 1 };

std::string clockText(std::int64_t seconds) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.2d:%.2d:%.2d", static_cast<int>(seconds / 3600),
                static_cast<int>(seconds % 3600 / 60), static_cast<int>(seconds % 60));
  return text.data();
}

std::string durationText(double duration) {
  std::array<char, 400> text{};  // the longest double has 309 digits before the point
  std::snprintf(text.data(), text.size(), "%f", duration);
  return text.data();
}

float delayOf(const std::string& offset, double duration) {
  if (contains(offset, "%")) return static_cast<float>(skipOffset(offset, durationText(duration)));
  if (contains(offset, ":")) return static_cast<float>(secondsWithString(offset));
  return 0;
}

}  // namespace

std::string skipOffsetOf(const XAdSlotConfiguration& slot, int duration) {
  const std::int64_t time = std::max<std::int64_t>(slot.skipOffsetTime, 0);
  if (slot.skipOffsetType == inSeconds) return clockText(std::min<std::int64_t>(time, duration));
  if (slot.skipOffsetType == inPercent) {
    const double fraction = time < 101 ? static_cast<double>(time) / 100 : 1;
    return clockText(integerPart(duration * fraction));
  }
  return {};
}

SkipPoint skipPoint(const std::string& documentOffset, double duration,
                    const XAdSlotConfiguration* slot) {
  SkipPoint point{.skipOffset = documentOffset};
  if (point.skipOffset.empty() && slot != nullptr) {
    point.skipOffset = skipOffsetOf(*slot, integerPart(duration));
  }
  point.wholeVideo = point.skipOffset.empty();
  point.skipDelay =
      point.wholeVideo ? static_cast<float>(duration) : delayOf(point.skipOffset, duration);
  return point;
}

std::string countdown(float skipDelay, double currentTime) {
  const auto left = static_cast<std::int64_t>(integerPart(skipDelay)) - integerPart(currentTime);
  return convertIntToHHSS(integerPart(static_cast<double>(left)));
}

std::string firstCountdown(const SkipPoint& point, double currentTime, VideoUse use) {
  const bool fromStart = point.wholeVideo && use == VideoUse::preroll;
  return countdown(point.skipDelay, fromStart ? 0 : currentTime);
}

}  // namespace tavo
