#include "AdController/ResponseParser/StandardsVast/VastCreativeReader.h"

#include <algorithm>

#include "AdController/ResponseParser/StandardsVast/VastText.h"
#include "AdController/ResponseParser/VASTXMLParser/ElementWalk.h"
#include "Utilities/NumberText.h"

namespace tavo {

namespace {

int length(const XTBXMLElement* element, std::string_view name) {
  return attributeNumber(element, name).value_or(0);
}

double pixelRatioOf(const XTBXMLElement* element) {
  const double ratio = leadingNumber(attributeText(element, "pxratio"));
  return ratio > 0 ? ratio : 1;
}

VastMediaFile mediaFile(const XTBXMLElement* element, const VastWords& words) {
  const int bitrate = length(element, "bitrate");
  return {.url = words.address(element),
          .id = attributeText(element, "id"),
          .delivery = attributeText(element, "delivery"),
          .type = attributeText(element, "type"),
          .codec = attributeText(element, "codec"),
          .apiFramework = attributeText(element, "apiFramework"),
          .width = length(element, "width"),
          .height = length(element, "height"),
          .bitrate = bitrate,
          .minBitrate = attributeNumber(element, "minBitrate").value_or(bitrate),
          .maxBitrate = attributeNumber(element, "maxBitrate").value_or(bitrate),
          .fileSize = leadingInteger(attributeText(element, "fileSize"))};
}

std::vector<VastMediaFile> mediaFiles(const XTBXMLElement* parent, std::string_view name,
                                      const VastWords& words) {
  std::vector<VastMediaFile> files;
  forChildren(parent, name, [&](const XTBXMLElement* child) {
    VastMediaFile file = mediaFile(child, words);
    if (!file.url.empty()) files.push_back(std::move(file));
  });
  return files;
}

std::vector<VastCaptions> captions(const XTBXMLElement* mediaFiles, const VastWords& words) {
  std::vector<VastCaptions> files;
  forChildren(mediaFiles, "ClosedCaptionFiles", [&](const XTBXMLElement* list) {
    forChildren(list, "ClosedCaptionFile", [&](const XTBXMLElement* file) {
      files.push_back(
          {words.address(file), attributeText(file, "type"), attributeText(file, "language")});
    });
  });
  return files;
}

// A picture is drawn sooner than a page is loaded, and a page's text sooner than its address.
std::vector<VastResource> resources(const XTBXMLElement* parent, const VastWords& words) {
  using Kind = VastResource::Kind;
  std::vector<VastResource> found;
  const auto add = [&](std::string_view name, Kind kind) {
    forChildren(parent, name, [&](const XTBXMLElement* child) {
      VastResource one{kind, kind == Kind::html ? plainText(child) : words.address(child),
                       attributeText(child, "creativeType")};
      if (!one.content.empty()) found.push_back(std::move(one));
    });
  };
  add("StaticResource", Kind::picture);
  add("HTMLResource", Kind::html);
  add("IFrameResource", Kind::frame);
  return found;
}

std::vector<VastFallbackImage> fallbackImages(const XTBXMLElement* clicks, const VastWords& words) {
  std::vector<VastFallbackImage> images;
  forChildren(childOf(clicks, "IconClickFallbackImages"), "IconClickFallbackImage",
              [&](const XTBXMLElement* image) {
                images.push_back({words.address(childOf(image, "StaticResource")),
                                  plainText(childOf(image, "AltText")), length(image, "width"),
                                  length(image, "height")});
              });
  return images;
}

VastIcon icon(const XTBXMLElement* element, VastWords& words) {
  const XTBXMLElement* const clicks = childOf(element, "IconClicks");
  return {.program = attributeText(element, "program"),
          .apiFramework = attributeText(element, "apiFramework"),
          .altText = attributeText(element, "altText"),
          .hoverText = attributeText(element, "hoverText"),
          .width = length(element, "width"),
          .height = length(element, "height"),
          .x = attributeText(element, "xPosition"),
          .y = attributeText(element, "yPosition"),
          .offset = vastSeconds(attributeText(element, "offset")).value_or(0),
          .duration = vastSeconds(attributeText(element, "duration")),
          .pixelRatio = pixelRatioOf(element),
          .resources = resources(element, words),
          .click = {words.address(childOf(clicks, "IconClickThrough")),
                    words.addresses(clicks, "IconClickTracking")},
          .fallbackImages = fallbackImages(clicks, words),
          .viewTracking = words.addresses(element, "IconViewTracking")};
}

VastLinear linear(const XTBXMLElement* element, VastWords& words) {
  const XTBXMLElement* const clicks = childOf(element, "VideoClicks");
  const XTBXMLElement* const media = childOf(element, "MediaFiles");
  VastLinear film{.skipOffset = vastOffset(attributeText(element, "skipoffset")),
                  .duration = vastSeconds(plainText(childOf(element, "Duration"))).value_or(0),
                  .parameters = plainText(childOf(element, "AdParameters")),
                  .mediaFiles = mediaFiles(media, "MediaFile", words),
                  .mezzanines = mediaFiles(media, "Mezzanine", words),
                  .interactiveFiles = mediaFiles(media, "InteractiveCreativeFile", words),
                  .captions = captions(media, words),
                  .tracking = words.tracking(childOf(element, "TrackingEvents")),
                  .click = {words.address(childOf(clicks, "ClickThrough")),
                            words.addresses(clicks, "ClickTracking")},
                  .customClicks = words.addresses(clicks, "CustomClick"),
                  .icons = {}};
  forChildren(childOf(element, "Icons"), "Icon",
              [&](const XTBXMLElement* child) { film.icons.push_back(icon(child, words)); });
  return film;
}

VastCompanion companion(const XTBXMLElement* element, VastWords& words) {
  return {.id = attributeText(element, "id"),
          .adSlotId = attributeText(element, "adSlotId"),
          .apiFramework = attributeText(element, "apiFramework"),
          .altText = plainText(childOf(element, "AltText")),
          .parameters = plainText(childOf(element, "AdParameters")),
          .renderingMode = attributeText(element, "renderingMode"),
          .width = length(element, "width"),
          .height = length(element, "height"),
          .assetWidth = length(element, "assetWidth"),
          .assetHeight = length(element, "assetHeight"),
          .expandedWidth = length(element, "expandedWidth"),
          .expandedHeight = length(element, "expandedHeight"),
          .pixelRatio = pixelRatioOf(element),
          .resources = resources(element, words),
          .click = {words.address(childOf(element, "CompanionClickThrough")),
                    words.addresses(element, "CompanionClickTracking")},
          .tracking = words.tracking(childOf(element, "TrackingEvents"))};
}

}  // namespace

VastCreative readVastCreative(const XTBXMLElement* element, VastWords& words) {
  VastCreative creative{.id = attributeText(element, "id"),
                        .adId = attributeText(element, "adId"),
                        .apiFramework = attributeText(element, "apiFramework"),
                        .sequence = attributeNumber(element, "sequence"),
                        .universalAdIds = {},
                        .linear = {},
                        .companionsRequired = {},
                        .companions = {},
                        .hasNonLinear = childOf(element, "NonLinearAds") != nullptr};
  forChildren(element, "UniversalAdId", [&](const XTBXMLElement* id) {
    std::string value = plainText(id);
    // Before 4.1 the value was an attribute, and the text whatever the server liked.
    if (std::string old = attributeText(id, "idValue"); !old.empty()) value = std::move(old);
    creative.universalAdIds.push_back({attributeText(id, "idRegistry"), std::move(value)});
  });
  if (const auto* const film = childOf(element, "Linear")) creative.linear = linear(film, words);
  if (const auto* const list = childOf(element, "CompanionAds")) {
    creative.companionsRequired = attributeText(list, "required");
    forChildren(list, "Companion", [&](const XTBXMLElement* one) {
      creative.companions.push_back(companion(one, words));
    });
  }
  return creative;
}

}  // namespace tavo
