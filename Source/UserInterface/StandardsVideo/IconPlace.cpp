#include "UserInterface/StandardsVideo/IconPlace.h"

#include <algorithm>

#include "Utilities/NumberText.h"
#include "Values/Text.h"

namespace tavo {

namespace {

// `room`: how far the icon's edge may stand from the start.
double edgeOf(const std::string& position, std::string_view end, double room) {
  if (equalsIgnoringCase(position, end)) return room;
  return std::clamp(leadingNumber(position), 0.0, room);  // words count as zero, the start
}

}  // namespace

Rect iconPlace(const VastIcon& icon, Size film) {
  const double width = icon.width;
  const double height = icon.height;
  if (width <= 0 || height <= 0 || width > film.width || height > film.height) return {};
  return {edgeOf(icon.x, "right", film.width - width),
          edgeOf(icon.y, "bottom", film.height - height), width, height};
}

bool isIconDue(const VastIcon& icon, double time) {
  return time >= icon.offset && (!icon.duration || time < icon.offset + *icon.duration);
}

}  // namespace tavo
