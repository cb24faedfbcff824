#pragma once

#include <vector>

#include "Model/VASTDataModel/Elements/AttributeMap.h"
#include "Model/VASTDataModel/Elements/XResource.h"
#include "Model/VASTDataModel/LinearAds/XIconClick.h"

namespace tavo {

// One icon that is shown over a linear ad.
struct XIcon {
  OptionalText program;
  OptionalText width;
  OptionalText height;
  OptionalText xPosition;  // pixels, "left" or "right"
  OptionalText yPosition;  // pixels, "top" or "bottom"
  OptionalText duration;   // a time
  OptionalText offset;     // a time
  OptionalText apiFramework;
  XResource resource;
  std::vector<XIconClick> iconClicksArray;
  OptionalText iconViewTracking;  // shared by all icons of the ad

  // Sets the fields that are filled from attributes; one whose attribute is absent becomes none.
  void setIconAttributes(const AttributeMap& attributes);
};

}  // namespace tavo
