#pragma once

namespace tavo {

// A colour in sRGB; every component runs from 0 to 1 and alpha is not premultiplied.
struct Color {
  float red = 0;
  float green = 0;
  float blue = 0;
  float alpha = 1;
  friend bool operator==(const Color&, const Color&) = default;
};

namespace colors {
inline constexpr Color clear{0, 0, 0, 0};
inline constexpr Color black{0, 0, 0, 1};
inline constexpr Color white{1, 1, 1, 1};
inline constexpr Color darkGray{1.0F / 3, 1.0F / 3, 1.0F / 3, 1};
}  // namespace colors

}  // namespace tavo
