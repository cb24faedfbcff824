#pragma once

#include <vector>

#include "Model/VASTDataModel/Elements/AttributeMap.h"
#include "Model/VASTDataModel/Elements/XClickTracking.h"
#include "Model/VASTDataModel/Elements/XResource.h"

namespace tavo {

// An ad that is shown over the video.
struct XNonLinear {
  OptionalText identifier;  // attribute "id"
  OptionalText width;
  OptionalText height;
  OptionalText expandedWidth;
  OptionalText expandedHeight;
  OptionalText scalable;
  OptionalText maintainAspectRatio;
  OptionalText minSuggestedDuration;
  OptionalText apiFramework;
  XResource resource;
  OptionalText nonLinearClickThrough;
  std::vector<XClickTracking> nonLinearClickTrackingArray;
  OptionalText ADParameters;  // text of AdParameters

  // Sets the fields that are filled from attributes; one whose attribute is absent becomes none.
  void setNonLinearAttributes(const AttributeMap& attributes);
};

}  // namespace tavo
