#pragma once

namespace tavo {

// A colour in sRGB. Every component runs from 0 to 1, alpha from transparent to opaque and not
// premultiplied. Values outside are taken as they are and cut off where the colour is painted. A
// plain value: any thread.
struct Color {
  float red = 0;
  float green = 0;
  float blue = 0;
  float alpha = 1;
  friend bool operator==(const Color&, const Color&) = default;
};

// The ones that the library itself paints with.
namespace colors {
inline constexpr Color clear{0, 0, 0, 0};
inline constexpr Color black{0, 0, 0, 1};
inline constexpr Color white{1, 1, 1, 1};
inline constexpr Color darkGray{1.0F / 3, 1.0F / 3, 1.0F / 3, 1};
}  // namespace colors

}  // namespace tavo
