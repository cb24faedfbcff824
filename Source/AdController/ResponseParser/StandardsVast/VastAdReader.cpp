#include "AdController/ResponseParser/StandardsVast/VastAdReader.h"

#include <algorithm>
#include <limits>

#include "AdController/ResponseParser/StandardsVast/VastText.h"
#include "Values/Text.h"

namespace tavo {

namespace {

std::vector<VastCategory> categories(const XTBXMLElement* parent, std::string_view name) {
  std::vector<VastCategory> found;
  forChildren(parent, name, [&](const XTBXMLElement* child) {
    found.push_back({attributeText(child, "authority"), plainText(child)});
  });
  return found;
}

int orderOf(const VastCreative& creative) {
  return creative.sequence.value_or(std::numeric_limits<int>::max());
}

}  // namespace

VastAd VastAdReader::read(const XTBXMLElement* element) {
  VastAd ad;
  ad.id = attributeText(element, "id");
  ad.sequence = attributeNumber(element, "sequence");
  if (ad.sequence == 0) ad.sequence.reset();  // places are counted from 1
  ad.adType = attributeText(element, "adType");
  ad.conditional = attributeSwitch(element, "conditionalAd").value_or(false);
  const XTBXMLElement* content = childOf(element, "InLine");
  if (content == nullptr) {
    content = childOf(element, "Wrapper");
    ad.isWrapper = content != nullptr;
  }
  if (content == nullptr) return ad;
  readDescription(ad, content);
  readAddresses(ad, content);
  if (ad.isWrapper) readWrapper(ad, content);
  readCreatives(ad, content);
  return ad;
}

void VastAdReader::readDescription(VastAd& ad, const XTBXMLElement* content) {
  const auto text = [content](std::string_view name) { return plainText(childOf(content, name)); };
  ad.system = text("AdSystem");
  ad.systemVersion = attributeText(childOf(content, "AdSystem"), "version");
  ad.title = text("AdTitle");
  ad.description = text("Description");
  ad.advertiser = text("Advertiser");
  ad.adServingId = text("AdServingId");
  if (const auto expires = vastOffset(text("Expires")); expires && !expires->isPart) {
    ad.expires = static_cast<int>(std::min(expires->value, 1e9));
  }
  if (const auto* const pricing = childOf(content, "Pricing")) {
    ad.pricing = VastPricing{plainText(pricing), attributeText(pricing, "model"),
                             attributeText(pricing, "currency")};
  }
  ad.categories = categories(content, "Category");
}

void VastAdReader::readAddresses(VastAd& ad, const XTBXMLElement* content) {
  ad.errors = words_.addresses(content, "Error");
  ad.impressions = words_.addresses(content, "Impression");
  ad.surveys = words_.addresses(content, "Survey");
  forChildren(content, "ViewableImpression", [&](const XTBXMLElement* element) {
    ad.viewableImpressions.push_back(
        {attributeText(element, "id"), words_.addresses(element, "Viewable"),
         words_.addresses(element, "NotViewable"), words_.addresses(element, "ViewUndetermined")});
  });
  readVerifications(ad, content);
  // Where they stood before VAST 4.1.
  forChildren(childOf(content, "Extensions"), "Extension", [&](const XTBXMLElement* extension) {
    if (equalsIgnoringCase(attributeText(extension, "type"), "AdVerifications")) {
      readVerifications(ad, extension);
    }
  });
}

void VastAdReader::readVerifications(VastAd& ad, const XTBXMLElement* parent) {
  forChildren(
      childOf(parent, "AdVerifications"), "Verification",
      [&](const XTBXMLElement* element) { ad.verifications.push_back(verification(element)); });
}

VastVerification VastAdReader::verification(const XTBXMLElement* element) {
  VastVerification one{.vendor = attributeText(element, "vendor"),
                       .resources = {},
                       .tracking = words_.tracking(childOf(element, "TrackingEvents")),
                       .parameters = plainText(childOf(element, "VerificationParameters"))};
  const auto add = [&](std::string_view name, bool isScript) {
    forChildren(element, name, [&](const XTBXMLElement* resource) {
      one.resources.push_back(
          {.url = words_.address(resource),
           .apiFramework = attributeText(resource, "apiFramework"),
           .type = attributeText(resource, "type"),
           .isScript = isScript,
           .browserOptional = attributeSwitch(resource, "browserOptional").value_or(false)});
    });
  };
  add("JavaScriptResource", true);
  add("ExecutableResource", false);
  return one;
}

// The switches stood as attributes from VAST 3 on; without them the standard's defaults count.
void VastAdReader::readWrapper(VastAd& ad, const XTBXMLElement* wrapper) {
  ad.tagUri = words_.address(childOf(wrapper, "VASTAdTagURI"));
  ad.followsWrappers = attributeSwitch(wrapper, "followAdditionalWrappers").value_or(true);
  ad.allowsMultipleAds = attributeSwitch(wrapper, "allowMultipleAds").value_or(false);
  ad.fallsBackOnNoAd = attributeSwitch(wrapper, "fallbackOnNoAd");
  ad.blockedCategories = categories(wrapper, "BlockedAdCategories");
}

void VastAdReader::readCreatives(VastAd& ad, const XTBXMLElement* content) {
  forChildren(content, "Creatives", [&](const XTBXMLElement* list) {
    forChildren(list, "Creative", [&](const XTBXMLElement* element) {
      ad.creatives.push_back(readVastCreative(element, words_));
    });
  });
  std::stable_sort(ad.creatives.begin(), ad.creatives.end(),
                   [](const VastCreative& left, const VastCreative& right) {
                     return orderOf(left) < orderOf(right);
                   });
}

}  // namespace tavo
