#include "UserInterface/Pictures/Pictures.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>

#include "Services/Bundle.h"
#include "Services/ImageDecoder.h"
#include "Services/Screen.h"

namespace tavo {

namespace {

std::optional<Image> pictureIn(const std::optional<std::string>& path, const Platform& platform) {
  const auto bytes = path ? platform.bundle->contents(*path) : std::nullopt;
  return bytes ? std::optional{platform.images->decodeNow(*bytes)} : std::nullopt;
}

}  // namespace

Image bundlePicture(std::string_view name, std::string_view type, const Platform& platform) {
  return pictureIn(platform.bundle->pathForResource({}, name, type), platform).value_or(Image{});
}

// In the sharpness of the screen, as far as there is a picture of that.
Image closePicture(const Platform& platform) {
  constexpr int sharpest = 3;
  const double screen = std::ceil(platform.screen->scale().value_or(1));
  for (int scale = std::min(sharpest, static_cast<int>(screen)); scale > 1; --scale) {
    const auto name = "closebutton30png@" + std::to_string(scale) + "x";
    const auto path = platform.bundle->pathForResource({}, name, "png");
    if (const auto picture = pictureIn(path, platform)) return picture->withScale(scale);
  }
  return bundlePicture("closebutton30png", "png", platform);
}

Image namedPicture(std::string_view name, const Platform& platform) {
  for (const std::string_view type : {"png", ""}) {
    const auto path = platform.bundle->pathForResource({}, name, type);
    if (auto picture = pictureIn(path, platform)) return *std::move(picture);
  }
  return {};
}

}  // namespace tavo
