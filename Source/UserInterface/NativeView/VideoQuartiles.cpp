#include "UserInterface/NativeView/VideoQuartiles.h"

#include <algorithm>

namespace tavo {

std::span<const Quartile> quartilesBetween(double from, double to) {
  const auto beyond = [](double place) {
    return std::find_if(quartiles.begin(), quartiles.end(),
                        [place](const Quartile& quartile) { return quartile.part > place; });
  };
  const auto first = beyond(from);
  return {first, std::max(first, beyond(to))};
}

}  // namespace tavo
