#include "UserInterface/WebView/InAppBrowser/NamedImage.h"

#include "Runtime/Runtime.h"
#include "Services/Bundle.h"
#include "Services/ImageDecoder.h"

namespace tavo {

Image namedImage(std::string_view name) {
  const auto& platform = Runtime::current().platform();
  for (const std::string_view type : {"png", ""}) {
    const auto path = platform.bundle->pathForResource({}, name, type);
    const auto bytes = path ? platform.bundle->contents(*path) : std::nullopt;
    if (bytes) return platform.images->decodeNow(*bytes);
  }
  return {};
}

}  // namespace tavo
