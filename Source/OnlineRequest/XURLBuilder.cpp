#include <algorithm>

#include <tavo/XDeviceInformation.h>
#include <tavo/XURLBuilder.h>

#include "ErrorHandler/OperationLog.h"
#include "OnlineRequest/QueryMerge.h"
#include "RequestEnrichment/ScreenAndVisibility.h"
#include "Runtime/Environment.h"
#include "Runtime/LivingEnvironment.h"
#include "Values/Text.h"

namespace tavo {

namespace {

constexpr std::string_view geoOverride = "_TAVO_GEO_OVERRIDE_";

// Takes the override out of the query that starts at `start` of `text`.
void removeGeoOverride(std::string& text, std::size_t start) {
  const auto marker = text.find(geoOverride, start);
  if (marker == std::string::npos) return;
  const std::string found = text.substr(marker, text.find('&', marker) - marker);
  // Quirk: the text is removed wherever it stands, also where it is the beginning of a longer
  // value. The ad server's own clean-up works the same way.
  std::size_t kept = marker;
  for (auto at = marker; at < text.size();) {
    if (text.compare(at, found.size(), found) == 0) {
      at += found.size();
    } else {
      text[kept++] = text[at++];
    }
  }
  text.resize(kept);
}

void trimSeparators(std::string& text, std::size_t start) {
  while (text.size() > start && text.back() == '&') text.pop_back();
  const auto first = text.find_first_not_of('&', start);
  text.erase(start, std::min(first, text.size()) - start);
}

// Nothing of a request is a fragment: a "#" would cut off what stands behind it.
void escapeFragmentMarks(std::string& text) {
  if (text.find('#') == std::string::npos) return;
  std::string escaped;
  for (const char c : text) {
    if (c == '#') escaped += "%23";
    if (c != '#') escaped += c;
  }
  text = std::move(escaped);
}

// "http://domain/format/page/@position", with room for a query of `querySize`.
std::string addressText(std::string_view domainName, std::string_view dataFormat,
                        std::string_view pageName, std::string_view adPosition,
                        std::size_t querySize) {
  std::string text;
  text.reserve(16 + domainName.size() + dataFormat.size() + pageName.size() + adPosition.size() +
               querySize);
  text.append("http://").append(domainName).append("/").append(dataFormat);
  text.append("/").append(pageName).append(adPosition.starts_with('@') ? "/" : "/@");
  return text.append(adPosition);
}

std::optional<std::string> carrierValue(std::string_view key) {
  const auto carrier = XDeviceInformation::sharedCarrierInfo();
  const auto value = carrier.find(key);
  return value == carrier.end() ? std::nullopt : std::optional{value->second};
}

}  // namespace

XURLBuilder& XURLBuilder::sharedInstance() {
  const OperationLog log{"+[XURLBuilder sharedInstance]"};
  return livingEnvironment()->shared<XURLBuilder>();
}

Url XURLBuilder::URLWithDomainName(std::string_view domainName, std::string_view dataFormat,
                                   std::string_view pageName, std::string_view adPosition,
                                   std::string_view keywords, std::string_view queryString,
                                   const XAdSlotConfiguration* configuration) {
  const OperationLog log{
      "+[XURLBuilder URLWithDomainName:dataFormat:pageName:adPosition:keywords:queryString:"
      "xAdSlotConfiguration:]"};
  const bool coppa = configuration != nullptr && configuration->COPPAPermissions;
  log.debug("\n\nCoppa: ", static_cast<int>(coppa));

  std::string text = addressText(domainName, dataFormat, pageName, adPosition,
                                 keywords.size() + queryString.size() + 2);
  const auto start = text.size();
  appendMergedQuery(text, keywords, queryString);
  if (coppa) {
    removeGeoOverride(text, start);
    trimSeparators(text, start);
  }
  if (text.size() > start && text[start] != '?') text.insert(start, 1, '?');
  escapeFragmentMarks(text);
  return Url::fromText(std::move(text));
}

std::string XURLBuilder::removeGeoOverrideFromQueryString(std::string& queryString) {
  const OperationLog log{"+[XURLBuilder removeGeoOverrideFromQueryString:]"};
  removeGeoOverride(queryString, 0);
  return queryString;
}

std::string XURLBuilder::getPlaceholderURLString() {
  const OperationLog log{"+[XURLBuilder getPlaceholderURLString]"};
  return "http[s]://[host_name]/[alias_url]/[data_format]/[site_page]/@[position_list]";
}

std::string& XURLBuilder::replaceOccurenceOfString(std::string_view target,
                                                   std::string_view replacement,
                                                   std::string& text) {
  const OperationLog log{"+[XURLBuilder replaceOccurenceOfString:withString:inMutableString:]"};
  if (target.empty()) return text;
  std::string result;
  const std::string_view source = text;
  for (std::size_t at = 0; at < source.size();) {
    if (equalsIgnoringCase(source.substr(at, target.size()), target)) {
      result += replacement;
      at += target.size();
    } else {
      result += source[at++];
    }
  }
  return text = std::move(result);
}

std::string XURLBuilder::orientationFromDeviceInfo() {
  const OperationLog log{"+[XURLBuilder orientationFromDeviceInfo]"};
  return isPortrait(XDeviceInterfaceOrientation(livingEnvironment()->platform())) ? "&o=p" : "&o=l";
}

std::string XURLBuilder::timeZoneFromDeviceInfo() {
  const OperationLog log{"+[XURLBuilder timeZoneFromDeviceInfo]"};
  return XDeviceInformation::deviceCurrentForTimeZone();
}

std::optional<std::string> XURLBuilder::networkTypeFromDeviceInfo() {
  const OperationLog log{"+[XURLBuilder networkTypeFromDeviceInfo]"};
  return carrierValue("mobileNetworkCode");
}

std::optional<std::string> XURLBuilder::carrierNameFromDeviceInfo() {
  const OperationLog log{"+[XURLBuilder carrierNameFromDeviceInfo]"};
  return carrierValue("carrierName");
}

std::optional<std::string> XURLBuilder::ISOCountryCodeFromDeviceInfo() {
  const OperationLog log{"+[XURLBuilder ISOCountryCodeFromDeviceInfo]"};
  return carrierValue("isoCountryCode");
}

std::optional<std::string> XURLBuilder::genderFromUserInfo() {
  const OperationLog log{"+[XURLBuilder genderFromUserInfo]"};
  return std::nullopt;
}

std::optional<std::string> XURLBuilder::ageFromUserInfo() {
  const OperationLog log{"+[XURLBuilder ageFromUserInfo]"};
  return std::nullopt;
}

}  // namespace tavo
