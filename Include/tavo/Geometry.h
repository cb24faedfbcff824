#pragma once

namespace tavo {

// Lengths are in points (logical pixels); x grows to the right and y grows downwards.

struct Point {
  double x = 0;
  double y = 0;
  friend bool operator==(const Point&, const Point&) = default;
};

struct Size {
  double width = 0;
  double height = 0;
  friend bool operator==(const Size&, const Size&) = default;
};

struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;

  [[nodiscard]] Point origin() const { return {x, y}; }
  [[nodiscard]] Size size() const { return {width, height}; }
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
  [[nodiscard]] Rect movedBy(double dx, double dy) const { return {x + dx, y + dy, width, height}; }

  friend bool operator==(const Rect&, const Rect&) = default;
};

}  // namespace tavo
