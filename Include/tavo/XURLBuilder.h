#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <tavo/Export.h>
#include <tavo/Url.h>
#include <tavo/XAdSlotConfiguration.h>

namespace tavo {

// Builds the URL that asks the ad server for one ad, and offers small pieces of query text from
// which a host can put its query string together before a load:
//
//   view->loadWithDomainName(server, page, "Bottom1", {},
//                            "section=news" + tavo::XURLBuilder::timeZoneFromDeviceInfo());
//
// The operations keep no state. Those that work on texts alone may be called on any thread; those
// that ask the device, the ones named "...FromDeviceInfo", belong to the main thread and need a
// runtime.
class TAVO_EXPORT XURLBuilder {
 public:
  // The one instance of the current runtime. It carries the field below, which is the host's to
  // use; no operation reads it.
  [[nodiscard]] static XURLBuilder& sharedInstance();

  std::shared_ptr<XAdSlotConfiguration> adSlotConfiguration;

  // "http://domain/format/page/@position?query", percent-escaped. `domainName` is the host with its
  // delivery path; `dataFormat` is "sdk", or "sdkl" where bids are wanted; the position gets its
  // "@" and the query its "?" unless they are there. An empty query has no "?".
  //
  // `keywords` and `queryString` are pairs joined by "&" and are merged: a keyword that the query
  // string has already is not repeated, and a piece that occurs twice is kept once, at the end.
  // With COPPAPermissions set in `configuration` (may be null) the geo override leaves, and "&" at
  // the ends of the query with it.
  //
  // Empty when the text makes no URL, for example one of more than 16 MB.
  [[nodiscard]] static Url URLWithDomainName(std::string_view domainName,
                                             std::string_view dataFormat, std::string_view pageName,
                                             std::string_view adPosition, std::string_view keywords,
                                             std::string_view queryString,
                                             const XAdSlotConfiguration* configuration);

  // Takes the geo override ("_TAVO_GEO_OVERRIDE_" up to the next "&", wherever that text stands)
  // out of `queryString`, the separators around it left alone, and returns the new text as well.
  static std::string removeGeoOverrideFromQueryString(std::string& queryString);

  // A template of the request URL, "http[s]://[host_name]/...", for the host to fill with the
  // operation below. Nothing here fills it.
  [[nodiscard]] static std::string getPlaceholderURLString();

  // Replaces every occurrence of `target`, whatever the case of its ASCII letters, and returns
  // `text` itself. An empty target occurs nowhere; what was put in is not searched again.
  static std::string& replaceOccurenceOfString(std::string_view target,
                                               std::string_view replacement, std::string& text);

  // Pieces of query text, each beginning with "&": "&o=p" for an upright screen and "&o=l" for any
  // other, "&z=+0530" for the time zone.
  [[nodiscard]] static std::string orientationFromDeviceInfo();
  [[nodiscard]] static std::string timeZoneFromDeviceInfo();

  // Values of XDeviceInformation::sharedCarrierInfo, bare, without "&": the mobile network code,
  // the carrier's name, the country. None where the network did not tell, and in the first moments
  // of the first launch.
  [[nodiscard]] static std::optional<std::string> networkTypeFromDeviceInfo();
  [[nodiscard]] static std::optional<std::string> carrierNameFromDeviceInfo();
  [[nodiscard]] static std::optional<std::string> ISOCountryCodeFromDeviceInfo();

  // Without a source yet: always none.
  [[nodiscard]] static std::optional<std::string> genderFromUserInfo();
  [[nodiscard]] static std::optional<std::string> ageFromUserInfo();
};

}  // namespace tavo
