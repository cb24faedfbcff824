#include "UserInterface/Pictures/Pictures.h"

#include <tavo/Runtime.h>

#include "AdController/AdGenerator/XBundleManager.h"
#include "Services/Bundle.h"
#include "Services/ImageDecoder.h"

namespace tavo {

namespace {

std::optional<Image> pictureIn(const std::optional<std::string>& path) {
  const auto& platform = Runtime::current().platform();
  const auto bytes = path ? platform.bundle->contents(*path) : std::nullopt;
  return bytes ? std::optional{platform.images->decodeNow(*bytes)} : std::nullopt;
}

}  // namespace

Image bundlePicture(std::string_view name, std::string_view type) {
  return pictureIn(XBundleManager::bundlePathForResource(name, type)).value_or(Image{});
}

Image closePicture() { return bundlePicture("closebutton30png", "png"); }

Image namedPicture(std::string_view name) {
  for (const std::string_view type : {"png", ""}) {
    const auto path = Runtime::current().platform().bundle->pathForResource({}, name, type);
    if (auto picture = pictureIn(path)) return *std::move(picture);
  }
  return {};
}

}  // namespace tavo
