#pragma once

#include <string_view>
#include <vector>

#include "Model/VASTDataModel/Elements/AttributeMap.h"
#include "Model/VASTDataModel/XCreative.h"
#include "Model/VASTDataModel/XImpression.h"

namespace tavo {

// The content of a Wrapper element: an ad whose main part is in another document.
struct XWrapperAd {
  OptionalText adSystem = std::string_view{};
  OptionalText vastTagURI = std::string_view{};  // where the other document is
  std::vector<XTrackingEvent> trackingEvent;     // never filled
  std::vector<XImpression> impresssionArray;     // those without a text as well
  std::vector<std::string_view> errorArray;
  OptionalList<XCreative> creativesArray = std::vector<XCreative>{};
  DocumentText document;  // what the texts stand in
};

}  // namespace tavo
