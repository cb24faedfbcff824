#include "AdController/ResponseParser/VASTXMLParser/CreativeWalk.h"

#include <utility>

#include "AdController/ResponseParser/VASTXMLParser/ElementWalk.h"
#include "AdController/ResponseParser/VASTXMLParser/VastFailure.h"
#include "ErrorHandler/OperationLog.h"

namespace tavo {

AttributeMap CreativeWalk::takenAttributes(XTBXMLElement* element) {
  const OperationLog log{"-[XVASTXMLParser parseAttributesData:]"};
  // Quirk: the attributes are taken from the element, and whoever asks again gets none. The walk
  // over non-linear ads depends on it.
  return AttributeMap{element != nullptr ? std::exchange(element->firstAttribute, nullptr)
                                         : nullptr};
}

OptionalList<XCreative> CreativeWalk::parseCreativeXMLData(XTBXMLElement* creatives) {
  const OperationLog log{"-[XVASTXMLParser parseCreativeXMLData:]"};
  OptionalList<XCreative> list;
  forChildren(creatives, "Creative", [this, &list](XTBXMLElement* creative) {
    if (!list) {
      list.emplace().reserve(countOfChildren(creative->parentElement, "Creative"));
    }
    readCreative(list->emplace_back(), creative);
  });
  return list;
}

void CreativeWalk::readCreative(XCreative& creative, XTBXMLElement* element) {
  // Quirk: a creative with extensions is not read. Nobody has defined what to make of them, so the
  // whole document is refused rather than shown without what its server thought it had to say.
  if (childOf(element, "CreativeExtensions") != nullptr) throw VastFailure::invalidXML();
  creative.setCreativeAttributes(takenAttributes(element));
  creative.creativeExtensionsArray = std::nullopt;
  creative.linearAds = parseLinearXMLData(childOf(element, "Linear"));
  creative.companionads = parseCompanionAdXMLElement(childOf(element, "CompanionAds"));
  creative.nonLinearAdsArray = parseNonLinearAdXMLElement(childOf(element, "NonLinearAds"));
}

XLinear CreativeWalk::parseLinearXMLData(XTBXMLElement* linear) {
  const OperationLog log{"-[XVASTXMLParser parseLinearXMLData:]"};
  XLinear result;
  forThisAndSiblings(linear, "Linear", [this, &result](XTBXMLElement* element) {
    result.setLinearAttributes(takenAttributes(element));
    forChildren(element, "AdParameters",
                [this](XTBXMLElement* parameters) { takenAttributes(parameters); });
    forChildren(element, "Duration",
                [&result](XTBXMLElement* duration) { result.duration = textOf(duration); });
    XTBXMLElement* const trackingEvents = childOf(element, "TrackingEvents");
    isTrackingEventValid_ = trackingEvents != nullptr;
    if (isTrackingEventValid_) {
      result.trackingEventsArray = parseTrackingEventsXMLData(trackingEvents);
    }
    result.videoClicksArray = parseVideoClicksElement(childOf(element, "VideoClicks"));
    result.mediaFilesArray = parseMediaFileXMLData(childOf(element, "MediaFiles"));
    result.iconsArray = parseIconsXMLData(childOf(element, "Icons"));
  });
  return result;
}

OptionalList<XMediaFile> CreativeWalk::parseMediaFileXMLData(XTBXMLElement* mediaFiles) {
  const OperationLog log{"-[XVASTXMLParser parseMediaFileXMLData:]"};
  if (mediaFiles == nullptr) return std::nullopt;
  std::vector<XMediaFile> list;
  list.reserve(countOfChildren(mediaFiles, "MediaFile"));
  forChildren(mediaFiles, "MediaFile", [this, &list](XTBXMLElement* element) {
    XMediaFile& file = list.emplace_back();
    file.mediaFileURL = textOf(element);
    file.setMediaFileAttributes(takenAttributes(element));
  });
  return list;
}

std::vector<XTrackingEvent> CreativeWalk::parseTrackingEventsXMLData(
    XTBXMLElement* trackingEvents) {
  const OperationLog log{"-[XVASTXMLParser parseTrackingEventsXMLData:]"};
  std::vector<XTrackingEvent> list;
  forThisAndSiblings(trackingEvents, "TrackingEvents", [&list](XTBXMLElement* element) {
    if (list.empty()) {
      list.reserve(countOfChildren(element, "Tracking"));
    }
    forChildren(element, "Tracking", [&list](XTBXMLElement* tracking) {
      // Quirk: the first attribute names the event, whatever its own name. Without any the name
      // counts as empty.
      list.push_back(XTrackingEvent::getTrackingEventWithEvent(
          XTBXML::attributeValue(tracking->firstAttribute), textOf(tracking)));
    });
  });
  return list;
}

OptionalList<XVideoClick> CreativeWalk::parseVideoClicksElement(XTBXMLElement* videoClicks) {
  const OperationLog log{"-[XVASTXMLParser parseVideoClicksElement:]"};
  if (videoClicks == nullptr) return std::nullopt;
  std::vector<XVideoClick> list;
  forThisAndSiblings(videoClicks, "VideoClicks", [this, &list](XTBXMLElement* element) {
    list.push_back(parseVideoClick(element));
  });
  return list;
}

XVideoClick CreativeWalk::parseVideoClick(XTBXMLElement* videoClicks) {
  XVideoClick click;
  if (XTBXMLElement* const through = childOf(videoClicks, "ClickThrough"); through != nullptr) {
    click.clickThroughgURL = textOf(through);
    click.setVideoClickAttributes(takenAttributes(through));
  }
  std::vector<XClickTracking> tracking;
  tracking.reserve(countOfChildren(videoClicks, "ClickTracking"));
  forChildren(videoClicks, "ClickTracking", [this, &tracking](XTBXMLElement* element) {
    tracking.push_back(parseClickTracking(element));
  });
  std::vector<XCustomClick> custom;
  forChildren(videoClicks, "CustomClick", [this, &custom](XTBXMLElement* element) {
    XCustomClick& one = custom.emplace_back();
    one.url = textOf(element);
    one.setCustomClickAttributes(takenAttributes(element));
  });
  if (!tracking.empty()) {
    click.clickTrackingArray = std::move(tracking);
  }
  if (!custom.empty()) {
    click.customClickArray = std::move(custom);
  }
  return click;
}

XClickTracking CreativeWalk::parseClickTracking(XTBXMLElement* element) {
  XClickTracking tracking{.identifier = {}, .url = textOf(element)};
  tracking.setClickTrackingAttributes(takenAttributes(element));
  return tracking;
}

OptionalList<XIcon> CreativeWalk::parseIconsXMLData(XTBXMLElement* icons) {
  const OperationLog log{"-[XVASTXMLParser parseIconsXMLData:]"};
  if (icons == nullptr) return std::nullopt;
  // Quirk: the view tracking of every icon is that of the Icons element, where the standard has one
  // for each Icon. Without one its text counts as empty.
  const std::string_view viewTracking = textOf(childOf(icons, "IconViewTracking"));
  std::vector<XIcon> list;
  list.reserve(countOfChildren(icons, "Icon"));
  forChildren(icons, "Icon", [this, &viewTracking, &list](XTBXMLElement* element) {
    XIcon& icon = list.emplace_back();
    icon.setIconAttributes(takenAttributes(element));
    icon.resource = parseResourceElement(element);
    icon.iconClicksArray = parseIconClicksXMLElement(childOf(element, "IconClicks"));
    icon.iconViewTracking = viewTracking;
  });
  return list;
}

std::vector<XIconClick> CreativeWalk::parseIconClicksXMLElement(XTBXMLElement* iconClicks) {
  const OperationLog log{"-[XVASTXMLParser parseIconClicksXMLElement:]"};
  std::vector<XIconClick> list;
  forThisAndSiblings(iconClicks, "IconClicks", [this, &list](XTBXMLElement* element) {
    XIconClick& click = list.emplace_back();
    click.iconClickThroughURI = textOf(childOf(element, "IconClickThrough"));
    forChildren(element, "IconClickTracking", [this, &click](XTBXMLElement* tracking) {
      click.iconClickTrackingArray.push_back(parseClickTracking(tracking));
    });
  });
  return list;
}

OptionalList<XCompanion> CreativeWalk::parseCompanionAdXMLElement(XTBXMLElement* companionAds) {
  const OperationLog log{"-[XVASTXMLParser parseCompanionAdXMLElement:]"};
  OptionalList<XCompanion> list;
  forThisAndSiblings(companionAds, "CompanionAds", [this, &list](XTBXMLElement* element) {
    // Quirk: each CompanionAds starts anew, so that the companions of the last one are left.
    list.emplace().reserve(countOfChildren(element, "Companion"));
    takenAttributes(element);
    forChildren(element, "Companion", [this, &list](XTBXMLElement* companion) {
      readCompanion(list->emplace_back(), companion);
    });
  });
  return list;
}

void CreativeWalk::readCompanion(XCompanion& companion, XTBXMLElement* element) {
  // Quirk: sizes and identifiers are read and not kept; nothing shows companions yet.
  takenAttributes(element);
  companion.resource = parseResourceElement(element);
  readText(companion.ADParameters, element, "AdParameters");
  readText(companion.AltText, element, "AltText");
  readText(companion.companionClickThrough, element, "CompanionClickThrough");
  forChildren(element, "CompanionClickTracking",
              [this](XTBXMLElement* tracking) { takenAttributes(tracking); });
  companion.trackingEvents = parseTrackingEventsXMLData(childOf(element, "TrackingEvents"));
}

OptionalList<XNonLinearAds> CreativeWalk::parseNonLinearAdXMLElement(XTBXMLElement* nonLinearAds) {
  const OperationLog log{"-[XVASTXMLParser parseNonLinearAdXMLElement:]"};
  if (nonLinearAds == nullptr) return std::nullopt;
  std::vector<XNonLinearAds> list;
  forThisAndSiblings(nonLinearAds, "NonLinearAds", [this, &list](XTBXMLElement* element) {
    XNonLinearAds& ads = list.emplace_back();
    ads.nonLinearArray.reserve(countOfChildren(element, "NonLinear"));
    forChildren(element, "NonLinear", [this, &ads](XTBXMLElement* nonLinear) {
      readNonLinear(ads.nonLinearArray.emplace_back(), nonLinear);
    });
    ads.trackingEventsArray = parseTrackingEventsXMLData(childOf(element, "TrackingEvents"));
  });
  return list;
}

void CreativeWalk::readNonLinear(XNonLinear& nonLinear, XTBXMLElement* element) {
  nonLinear.setNonLinearAttributes(takenAttributes(element));
  nonLinear.resource = parseResourceElement(element);
  readText(nonLinear.nonLinearClickThrough, element, "NonLinearClickThrough");
  // Quirk: the attributes are asked from the NonLinear, which has none left, the URL is not read,
  // and the next one is looked for under another spelling: in effect one empty record says that
  // there is click tracking.
  const auto addTracking = [this, element, &nonLinear](XTBXMLElement*) {
    nonLinear.nonLinearClickTrackingArray.emplace_back().setClickTrackingAttributes(
        takenAttributes(element));
  };
  forThisAndSiblings(childOf(element, "NonLinearClickTracking"), "NonLinearClicktracking",
                     addTracking);
  readText(nonLinear.ADParameters, element, "AdParameters");
}

XResource CreativeWalk::parseResourceElement(XTBXMLElement* element) {
  const OperationLog log{"-[XVASTXMLParser parseResourceElement:]"};
  XResource resource;
  forChildren(element, "StaticResource", [this, &resource](XTBXMLElement* fixed) {
    resource.setResourceAttributes(takenAttributes(fixed));
    resource.staticResourceURL = textOf(fixed);
  });
  forChildren(element, "IFrameResource",
              [&resource](XTBXMLElement* frame) { resource.iFrameResourceURL = textOf(frame); });
  forChildren(element, "HTMLResource",
              [&resource](XTBXMLElement* markup) { resource.HTMLResourceURL = textOf(markup); });
  return resource;
}

}  // namespace tavo
