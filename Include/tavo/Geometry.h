#pragma once

#include <tavo/Export.h>

namespace tavo {

// Places and lengths are in points: the toolkit's logical pixels, whatever the screen's scale. x
// grows to the right and y grows downwards, from the top left corner of whatever a rectangle
// stands in. Plain values: any thread. Nothing is checked: where geometry comes from a creative, it
// is bounded before it reaches the toolkit (Limits::widgetSide).

// A place.
struct Point {
  double x = 0;
  double y = 0;
  friend bool operator==(const Point&, const Point&) = default;
};

// An extent; both sides may be zero.
struct Size {
  double width = 0;
  double height = 0;
  friend bool operator==(const Size&, const Size&) = default;
};

// A place and an extent. One without an area is empty and contains nothing.
struct TAVO_EXPORT Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;

  [[nodiscard]] Point origin() const { return {x, y}; }
  [[nodiscard]] Size size() const { return {width, height}; }
  // The first place to the right of the rectangle, and the first below it.
  [[nodiscard]] double right() const { return x + width; }
  [[nodiscard]] double bottom() const { return y + height; }
  [[nodiscard]] bool empty() const { return width <= 0 || height <= 0; }

  // The left and top edges belong to the rectangle, the right and bottom edges do not.
  [[nodiscard]] bool contains(Point point) const;
  // True when every point of `other` lies inside; an empty rectangle is contained nowhere.
  [[nodiscard]] bool contains(const Rect& other) const;
  // True when both share an area; rectangles that only touch do not intersect.
  [[nodiscard]] bool intersects(const Rect& other) const;
  // The shared area, or an empty rectangle.
  [[nodiscard]] Rect intersection(const Rect& other) const;
  // The same extent at another place.
  [[nodiscard]] Rect movedBy(double dx, double dy) const { return {x + dx, y + dy, width, height}; }

  friend bool operator==(const Rect&, const Rect&) = default;
};

}  // namespace tavo
