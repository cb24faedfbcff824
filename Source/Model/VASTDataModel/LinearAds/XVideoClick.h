#pragma once

#include "Model/VASTDataModel/Elements/AttributeMap.h"
#include "Model/VASTDataModel/Elements/XClickTracking.h"
#include "Model/VASTDataModel/LinearAds/XCustomClick.h"

namespace tavo {

// One VideoClicks element.
struct XVideoClick {
  OptionalText clickThroughIdentifier;              // attribute "id" of ClickThrough
  OptionalText clickThroughgURL;                    // text of ClickThrough
  OptionalList<XClickTracking> clickTrackingArray;  // none without ClickTracking
  OptionalList<XCustomClick> customClickArray;      // none without CustomClick

  // Sets the identifier from the attributes of ClickThrough; it becomes none without an "id".
  void setVideoClickAttributes(const AttributeMap& attributes);
};

}  // namespace tavo
