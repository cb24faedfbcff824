#include "UserInterface/NativeView/VideoQuartiles.h"

#include <algorithm>
#include <array>

namespace tavo {

std::span<const Quartile> quartilesBetween(double from, double to) {
  static constexpr std::array<Quartile, 3> all{{{0, 0.25, TrackingEventType::firstQuartile},
                                                {1, 0.5, TrackingEventType::midpoint},
                                                {2, 0.75, TrackingEventType::thirdQuartile}}};
  const auto beyond = [&](double place) {
    return std::find_if(all.begin(), all.end(), [&](const Quartile& q) { return q.part > place; });
  };
  const auto first = beyond(from);
  return {first, std::max(first, beyond(to))};
}

}  // namespace tavo
