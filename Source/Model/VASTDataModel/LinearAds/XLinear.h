#pragma once

#include "Model/VASTDataModel/Elements/AttributeMap.h"
#include "Model/VASTDataModel/Elements/XTrackingEvent.h"
#include "Model/VASTDataModel/LinearAds/XIcon.h"
#include "Model/VASTDataModel/LinearAds/XMediaFile.h"
#include "Model/VASTDataModel/LinearAds/XVideoClick.h"

namespace tavo {

// The video of a creative.
struct XLinear {
  OptionalText skipOffset;    // attribute of Linear: hours:minutes:seconds or a percentage
  OptionalText ADParameters;  // never filled
  OptionalText duration;      // hours:minutes:seconds
  OptionalList<XMediaFile> mediaFilesArray;
  OptionalList<XTrackingEvent> trackingEventsArray;
  OptionalList<XVideoClick> videoClicksArray;
  OptionalList<XIcon> iconsArray;

  // Sets skipOffset, which becomes none without its attribute.
  void setLinearAttributes(const AttributeMap& attributes);
};

}  // namespace tavo
