#include "SampleArt.h"

#include <array>
#include <cmath>
#include <vector>

namespace sample {

namespace {

using Pixel = std::array<std::uint8_t, 4>;

Pixel pixelAt(double x, double y) {
  constexpr double horizon = 0.65;
  if (y > horizon) return {0x00, 0x5B, 0x8A, 0xFF};
  if (std::hypot(x - 0.5, y - horizon) < 0.35) return {0xFF, 0xC1, 0x07, 0xFF};
  return {0xFF, 0x70, 0x43, 0xFF};
}

}  // namespace

tavo::Image sunset(int side) {
  const auto bytes = std::make_shared<std::vector<std::uint8_t>>();
  for (int row = 0; row < side; ++row) {
    for (int column = 0; column < side; ++column) {
      const Pixel pixel = pixelAt((column + 0.5) / side, (row + 0.5) / side);
      bytes->insert(bytes->end(), pixel.begin(), pixel.end());
    }
  }
  return {side, side, static_cast<std::size_t>(side) * 4, {bytes, bytes->data()}};
}

}  // namespace sample
