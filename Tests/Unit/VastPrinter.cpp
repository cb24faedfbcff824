#include "VastPrinter.h"

#include <string_view>

namespace tavo::test {
namespace {

class Printer {
 public:
  void add(std::string_view name, const OptionalText& text) {
    if (text) {
      line(std::string{name} + ": \"" + escaped(*text) + '"');
    }
  }
  void add(std::string_view name, const XTrackingEvent& event) {
    line(std::string{name} + ": " + std::to_string(static_cast<int>(event.eventType)) + " \"" +
         escaped(event.eventURL.value_or("(none)")) + '"');
  }
  void add(std::string_view name, const std::string& text) { add(name, OptionalText{text}); }

  template <typename Item>
  void add(std::string_view name, const std::vector<Item>& list) {
    if (list.empty()) {
      line(std::string{name} + ": empty");
    }
    for (const Item& item : list) {
      add(name, item);
    }
  }
  template <typename Item>
  void add(std::string_view name, const OptionalList<Item>& list) {
    if (list) {
      add(name, *list);
    }
  }
  template <typename Record>
  void add(std::string_view name, const Record& record) {
    line(name);
    depth_ += 2;
    fields(record);
    depth_ -= 2;
  }

  void fields(const XVASTAd& ad) {
    add("identifier", ad.identifier);
    add("sequence", ad.sequence);
    add("vastTagURI", ad.vastTagURI);
    if (ad.inlineAd != nullptr) {
      add("inlineAd", *ad.inlineAd);
    }
    for (const auto& wrapper : ad.wrapperAd) {
      add("wrapperAd", *wrapper);
    }
  }

  std::string lines;

 private:
  void fields(const XInlineAd& ad) {
    add("adSystem", ad.adSystem);
    add("adTitle", ad.adTitle);
    add("adDescription", ad.adDescription);
    add("advertiser", ad.advertiser);
    if (ad.pricing) {
      add("pricing", *ad.pricing);
    }
    add("survey", ad.survey);
    add("errorArray", ad.errorArray);
    add("impresssionArray", ad.impresssionArray);
    add("creativesArray", ad.creativesArray);
    add("vastTagURI", ad.vastTagURI);
  }
  void fields(const XWrapperAd& ad) {
    add("adSystem", ad.adSystem);
    add("vastTagURI", ad.vastTagURI);
    add("errorArray", ad.errorArray);
    add("impresssionArray", ad.impresssionArray);
    add("creativesArray", ad.creativesArray);
  }
  void fields(const XPricing& pricing) {
    add("url", pricing.url);
    add("model", pricing.model);
    add("currency", pricing.currency);
  }
  void fields(const XImpression& impression) { named(impression); }
  void fields(const XClickTracking& tracking) { named(tracking); }
  void fields(const XCustomClick& click) { named(click); }
  template <typename Record>
  void named(const Record& record) {
    add("identifier", record.identifier);
    add("url", record.url);
  }
  void fields(const XCreative& creative) {
    add("identifier", creative.identifier);
    add("sequence", creative.sequence);
    add("adIdentifier", creative.adIdentifier);
    add("apiFramework", creative.apiFramework);
    add("linearAds", creative.linearAds);
    add("companionads", creative.companionads);
    add("nonLinearAdsArray", creative.nonLinearAdsArray);
  }
  void fields(const XLinear& linear) {
    add("skipOffset", linear.skipOffset);
    add("ADParameters", linear.ADParameters);
    add("duration", linear.duration);
    add("mediaFilesArray", linear.mediaFilesArray);
    add("trackingEventsArray", linear.trackingEventsArray);
    add("videoClicksArray", linear.videoClicksArray);
    add("iconsArray", linear.iconsArray);
  }
  void fields(const XMediaFile& file) {
    add("mediaFileURL", file.mediaFileURL);
    add("delivery", file.delivery);
    add("identifier", file.identifier);
    add("type", file.type);
    add("bitrate", file.bitrate);
    add("minBitrate", file.minBitrate);
    add("maxBitrate", file.maxBitrate);
    add("width", file.width);
    add("height", file.height);
    add("scalable", file.scalable);
    add("maintainAspectRatio", file.maintainAspectRatio);
    add("codec", file.codec);
    add("apiFramework", file.apiFramework);
  }
  void fields(const XVideoClick& click) {
    add("clickThroughIdentifier", click.clickThroughIdentifier);
    add("clickThroughgURL", click.clickThroughgURL);
    add("clickTrackingArray", click.clickTrackingArray);
    add("customClickArray", click.customClickArray);
  }
  void fields(const XIcon& icon) {
    add("program", icon.program);
    add("width", icon.width);
    add("height", icon.height);
    add("xPosition", icon.xPosition);
    add("yPosition", icon.yPosition);
    add("duration", icon.duration);
    add("offset", icon.offset);
    add("apiFramework", icon.apiFramework);
    add("resource", icon.resource);
    add("iconClicksArray", icon.iconClicksArray);
    add("iconViewTracking", icon.iconViewTracking);
  }
  void fields(const XIconClick& click) {
    add("iconClickThroughURI", click.iconClickThroughURI);
    add("iconClickTrackingArray", click.iconClickTrackingArray);
  }
  void fields(const XResource& resource) {
    add("staticResourceURL", resource.staticResourceURL);
    add("staticResourceCreativeType", resource.staticResourceCreativeType);
    add("iFrameResourceURL", resource.iFrameResourceURL);
    add("HTMLResourceURL", resource.HTMLResourceURL);
  }
  void fields(const XCompanion& companion) {
    add("identifier", companion.identifier);
    add("width", companion.width);
    add("height", companion.height);
    add("assetWidth", companion.assetWidth);
    add("assetHeight", companion.assetHeight);
    add("expandedWidth", companion.expandedWidth);
    add("expandedHeight", companion.expandedHeight);
    add("apiFramework", companion.apiFramework);
    add("adSlotID", companion.adSlotID);
    add("resource", companion.resource);
    add("ADParameters", companion.ADParameters);
    add("AltText", companion.AltText);
    add("companionClickThrough", companion.companionClickThrough);
    add("companionClickTracking", companion.companionClickTracking);
    add("trackingEvents", companion.trackingEvents);
  }
  void fields(const XNonLinearAds& ads) {
    add("nonLinearArray", ads.nonLinearArray);
    add("trackingEventsArray", ads.trackingEventsArray);
  }
  void fields(const XNonLinear& nonLinear) {
    add("identifier", nonLinear.identifier);
    add("width", nonLinear.width);
    add("height", nonLinear.height);
    add("expandedWidth", nonLinear.expandedWidth);
    add("expandedHeight", nonLinear.expandedHeight);
    add("scalable", nonLinear.scalable);
    add("maintainAspectRatio", nonLinear.maintainAspectRatio);
    add("minSuggestedDuration", nonLinear.minSuggestedDuration);
    add("apiFramework", nonLinear.apiFramework);
    add("resource", nonLinear.resource);
    add("nonLinearClickThrough", nonLinear.nonLinearClickThrough);
    add("nonLinearClickTrackingArray", nonLinear.nonLinearClickTrackingArray);
    add("ADParameters", nonLinear.ADParameters);
  }

  void line(std::string_view content) { lines.append(depth_, ' ').append(content) += '\n'; }
  static std::string escaped(std::string_view raw) {
    std::string result;
    for (const char c : raw) {
      result += c == '\n' ? std::string{"\\n"} : std::string{c};
    }
    return result;
  }

  std::size_t depth_ = 0;
};

}  // namespace

std::string printed(const XVASTAd& ad) {
  Printer printer;
  printer.fields(ad);
  return printer.lines;
}

}  // namespace tavo::test
