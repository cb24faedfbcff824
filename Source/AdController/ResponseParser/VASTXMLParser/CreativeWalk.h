#pragma once

#include <vector>

#include "External/TBXML/XTBXML.h"
#include "Model/VASTDataModel/XCreative.h"

namespace tavo {

// Turns the creatives of a VAST document into the model. Each walk takes the element that it is
// about, or none, and reads the attributes of what it passes for good: see takenAttributes. No
// element gives an empty list, an empty XLinear or an empty XResource where the type cannot be
// none, and none otherwise. A document that cannot be read throws VastFailure.
class CreativeWalk {
 public:
  OptionalList<XCreative> parseCreativeXMLData(XTBXMLElement* creatives);
  XLinear parseLinearXMLData(XTBXMLElement* linear);
  OptionalList<XMediaFile> parseMediaFileXMLData(XTBXMLElement* mediaFiles);
  std::vector<XTrackingEvent> parseTrackingEventsXMLData(XTBXMLElement* trackingEvents);
  OptionalList<XVideoClick> parseVideoClicksElement(XTBXMLElement* videoClicks);
  OptionalList<XIcon> parseIconsXMLData(XTBXMLElement* icons);
  std::vector<XIconClick> parseIconClicksXMLElement(XTBXMLElement* iconClicks);
  OptionalList<XCompanion> parseCompanionAdXMLElement(XTBXMLElement* companionAds);
  OptionalList<XNonLinearAds> parseNonLinearAdXMLElement(XTBXMLElement* nonLinearAds);
  XResource parseResourceElement(XTBXMLElement* element);

  // The attributes of an element, once: they are taken from it, and a second call gives none.
  AttributeMap takenAttributes(XTBXMLElement* element);

  // Whether the last Linear walked had TrackingEvents.
  [[nodiscard]] bool isTrackingEventValid() const { return isTrackingEventValid_; }

 private:
  void readCreative(XCreative& creative, XTBXMLElement* element);
  XVideoClick parseVideoClick(XTBXMLElement* videoClicks);
  void readCompanion(XCompanion& companion, XTBXMLElement* element);
  void readNonLinear(XNonLinear& nonLinear, XTBXMLElement* element);
  XClickTracking parseClickTracking(XTBXMLElement* element);

  bool isTrackingEventValid_ = false;
};

}  // namespace tavo
