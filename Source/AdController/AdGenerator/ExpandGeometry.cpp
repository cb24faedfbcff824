#include "AdController/AdGenerator/ExpandGeometry.h"

#include <algorithm>
#include <cmath>

namespace tavo {

Rect expandedFrame(const Rect& application,
                   const std::optional<XMRAIDExpandProperties>& properties) {
  const XMRAIDExpandProperties asked = properties.value_or(XMRAIDExpandProperties{});
  const double width = std::min(static_cast<double>(asked.width), application.width);
  const double height = std::min(static_cast<double>(asked.height), application.height);
  return {application.x + std::floor((application.width - width) / 2),
          application.y + std::floor((application.height - height) / 2), width, height};
}

}  // namespace tavo
