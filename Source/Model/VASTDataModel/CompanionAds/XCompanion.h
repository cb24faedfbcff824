#pragma once

#include <vector>

#include "Model/VASTDataModel/Elements/AttributeMap.h"
#include "Model/VASTDataModel/Elements/XResource.h"
#include "Model/VASTDataModel/Elements/XTrackingEvent.h"

namespace tavo {

// An ad that is shown beside the video.
struct XCompanion {
  OptionalText identifier;  // the parser leaves this and the next eight empty
  OptionalText width;
  OptionalText height;
  OptionalText assetWidth;
  OptionalText assetHeight;
  OptionalText expandedWidth;
  OptionalText expandedHeight;
  OptionalText apiFramework;
  OptionalText adSlotID;
  XResource resource;
  OptionalText ADParameters;  // text of AdParameters
  OptionalText AltText;
  OptionalText companionClickThrough;
  OptionalText companionClickTracking;  // never filled
  std::vector<XTrackingEvent> trackingEvents;

  // Sets the first nine fields; one whose attribute is absent becomes none. Not called by the
  // parser.
  void setCompanionAttributes(const AttributeMap& attributes);
};

}  // namespace tavo
