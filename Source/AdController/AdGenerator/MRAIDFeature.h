#pragma once

#include <string_view>

namespace tavo {

// What a creative may ask the device for. The values are part of the interface.
enum class MRAIDFeature : int {
  sms = 0,
  tel = 1,
  calendar = 2,
  storePicture = 3,
  inlineVideo = 4,
};

// The feature's name in scripts; empty for a value that has none.
[[nodiscard]] constexpr std::string_view nameOf(MRAIDFeature feature) {
  switch (feature) {
    case MRAIDFeature::sms:
      return "sms";
    case MRAIDFeature::tel:
      return "tel";
    case MRAIDFeature::calendar:
      return "calendar";
    case MRAIDFeature::storePicture:
      return "storePicture";
    case MRAIDFeature::inlineVideo:
      return "inlineVideo";
  }
  return {};
}

}  // namespace tavo
