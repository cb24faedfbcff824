#include "UserInterface/CloseButton/ClosePicture.h"

#include "AdController/AdGenerator/XBundleManager.h"
#include "Runtime/Runtime.h"
#include "Services/Bundle.h"
#include "Services/ImageDecoder.h"

namespace tavo {

Image closePicture() {
  const auto path = XBundleManager::bundlePathForResource("closebutton30png", "png");
  auto& platform = Runtime::current().platform();
  const auto bytes = path ? platform.bundle->contents(*path) : std::nullopt;
  return bytes ? platform.images->decodeNow(*bytes) : Image{};
}

}  // namespace tavo
