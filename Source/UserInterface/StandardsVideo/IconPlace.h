#pragma once

#include <tavo/Geometry.h>
#include <tavo/VastCreative.h>

namespace tavo {

// Where an icon stands on a film of this size, wholly inside it; empty for one without a size or
// larger than the film.
[[nodiscard]] Rect iconPlace(const VastIcon& icon, Size film);

// Whether an icon is to be seen so many seconds into the film.
[[nodiscard]] bool isIconDue(const VastIcon& icon, double time);

}  // namespace tavo
