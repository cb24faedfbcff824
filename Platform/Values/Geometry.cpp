#include <algorithm>

#include <tavo/Geometry.h>

namespace tavo {

bool Rect::contains(Point point) const {
  return point.x >= x && point.x < right() && point.y >= y && point.y < bottom();
}

bool Rect::contains(const Rect& other) const {
  return !other.empty() && other.x >= x && other.y >= y && other.right() <= right() &&
         other.bottom() <= bottom();
}

bool Rect::intersects(const Rect& other) const { return !intersection(other).empty(); }

Rect Rect::intersection(const Rect& other) const {
  const double left = std::max(x, other.x);
  const double top = std::max(y, other.y);
  const Rect shared{left, top, std::min(right(), other.right()) - left,
                    std::min(bottom(), other.bottom()) - top};
  return shared.empty() ? Rect{} : shared;
}

}  // namespace tavo
