#pragma once

#include <string>
#include <vector>

#include "Model/VASTDataModel/Elements/AttributeMap.h"
#include "Model/VASTDataModel/XCreative.h"
#include "Model/VASTDataModel/XImpression.h"

namespace tavo {

// The content of a Wrapper element: an ad whose main part is in another document.
struct XWrapperAd {
  OptionalText adSystem = std::string{};
  OptionalText vastTagURI = std::string{};    // where the other document is
  std::vector<XTrackingEvent> trackingEvent;  // never filled
  std::vector<XImpression> impresssionArray;  // those without a text as well
  std::vector<std::string> errorArray;
  OptionalList<XCreative> creativesArray = std::vector<XCreative>{};
};

}  // namespace tavo
