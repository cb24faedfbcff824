#pragma once

#include <vector>

#include "Model/VASTDataModel/Elements/AttributeMap.h"
#include "Model/VASTDataModel/Elements/XClickTracking.h"

namespace tavo {

// What happens when an icon is clicked.
struct XIconClick {
  OptionalText iconClickThroughURI;  // text of IconClickThrough
  std::vector<XClickTracking> iconClickTrackingArray;
};

}  // namespace tavo
