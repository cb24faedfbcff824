#include "UserInterface/Pictures/Pictures.h"

#include <optional>
#include <string>

#include "Services/Bundle.h"
#include "Services/ImageDecoder.h"

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

Image closePicture(const Platform& platform) {
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
