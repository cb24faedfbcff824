#pragma once

#include <vector>

#include "Model/VASTDataModel/AttributeMap.h"
#include "Model/VASTDataModel/NonLinearAds/XNonLinear.h"
#include "Model/VASTDataModel/XTrackingEvent.h"

namespace tavo {

// One NonLinearAds element.
struct XNonLinearAds {
  std::vector<XNonLinear> nonLinearArray;
  std::vector<XTrackingEvent> trackingEventsArray;
};

}  // namespace tavo
