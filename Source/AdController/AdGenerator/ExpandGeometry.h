#pragma once

#include <optional>

#include <tavo/Geometry.h>

#include "AdController/AdGenerator/XMRAIDExpandProperties.h"

namespace tavo {

// The rectangle that an expanding creative asks for: as large as its record says but no larger than
// `application`, centred there on whole points. Without a record it has no size.
[[nodiscard]] Rect expandedFrame(const Rect& application,
                                 const std::optional<XMRAIDExpandProperties>& properties);

}  // namespace tavo
