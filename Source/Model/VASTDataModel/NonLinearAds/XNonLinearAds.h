#pragma once

#include <vector>

#include "Model/VASTDataModel/Elements/AttributeMap.h"
#include "Model/VASTDataModel/Elements/XTrackingEvent.h"
#include "Model/VASTDataModel/NonLinearAds/XNonLinear.h"

namespace tavo {

// One NonLinearAds element.
struct XNonLinearAds {
  std::vector<XNonLinear> nonLinearArray;
  std::vector<XTrackingEvent> trackingEventsArray;
};

}  // namespace tavo
