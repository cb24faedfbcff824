#include "UserInterface/WebView/InAppBrowser/BrowserButtons.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <memory>
#include <string>

#include "Values/Translation.h"
namespace tavo {

namespace {

using ToolbarDetail = XBrowserConfiguration::ToolbarDetail;

struct Look {
  std::string_view image;
  const char* label;
};

const Look& lookOf(BrowserButton button) {
  static constexpr std::array<Look, 5> looks{{{"browserstop", toTranslate("Close")},
                                              {"browserback", toTranslate("Back")},
                                              {"browserforward", toTranslate("Forward")},
                                              {"browserreload", toTranslate("Reload")},
                                              {"browseraction", toTranslate("Open in browser")}}};
  return looks.at(static_cast<std::size_t>(button));
}

bool isFor(const ToolbarDetail& detail, std::string_view property, BrowserButton button) {
  return detail[0] == property && detail[2] == std::to_string(static_cast<unsigned>(button));
}

std::uint8_t byteOf(float component) {
  return static_cast<std::uint8_t>(std::lround(std::clamp(component, 0.0F, 1.0F) * 255));
}

}  // namespace

// Quirk: "Visibility" reads as a wish to hide, and the action button waits for an entry that does
// not.
bool isButtonShown(const XBrowserConfiguration& settings, BrowserButton button) {
  const auto hasEntry = [&](std::string_view hides) {
    return std::any_of(
        settings.toolbarDetails.begin(), settings.toolbarDetails.end(), [&](const auto& detail) {
          return isFor(detail, "Visibility", button) && (detail[1] == "YES") == (hides == "YES");
        });
  };
  return button == BrowserButton::action ? hasEntry("NO") : !hasEntry("YES");
}

std::vector<ToolbarDetail> hostImages(const XBrowserConfiguration& settings, BrowserButton button) {
  std::vector<ToolbarDetail> images;
  for (const auto& detail : settings.toolbarDetails) {
    if (isFor(detail, "Image", button) && !detail[1].empty()) images.push_back(detail);
  }
  return images;
}

std::string_view builtInImageName(BrowserButton button) { return lookOf(button).image; }

std::string buttonLabel(BrowserButton button) { return translated(lookOf(button).label); }

Image tinted(const Image& shape, const Color& color) {
  constexpr std::size_t channels = 4;
  if (shape.empty()) return {};
  const auto width = static_cast<std::size_t>(shape.width());
  const auto height = static_cast<std::size_t>(shape.height());
  auto pixels = std::make_shared<std::vector<std::uint8_t>>(width * height * channels);
  for (std::size_t row = 0; row < height; ++row) {
    const std::uint8_t* from = shape.pixels().get() + row * shape.stride();
    std::uint8_t* to = pixels->data() + row * width * channels;
    for (std::size_t column = 0; column < width; ++column, from += channels, to += channels) {
      to[0] = byteOf(color.red);
      to[1] = byteOf(color.green);
      to[2] = byteOf(color.blue);
      to[3] = from[3];
    }
  }
  return {shape.width(), shape.height(), width * channels, Image::Pixels{pixels, pixels->data()}};
}

}  // namespace tavo
