#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <tavo/Url.h>
#include <tavo/XAdSlotConfiguration.h>

namespace tavo {

// Builds the URL that asks the ad server for one ad, and offers small pieces of query text from
// which a host can put its query string together. The operations keep no state. The URL operation
// may be called on any thread; the pieces that ask the device belong to the main thread.
class XURLBuilder {
 public:
  // The one instance of the process. It carries the field below; nothing here reads it.
  [[nodiscard]] static XURLBuilder& sharedInstance();

  std::shared_ptr<XAdSlotConfiguration> adSlotConfiguration;

  // "http://domain/format/page/@position?query", percent-escaped. `domainName` is the host with its
  // delivery path; `keywords` and `queryString` are pairs joined by "&" and are merged: a keyword
  // that the query string has already is not repeated, and a piece that occurs twice is kept once,
  // at the end. With COPPAPermissions set in `configuration` (may be null) the geo override leaves.
  // Empty when the text makes no URL.
  [[nodiscard]] static Url URLWithDomainName(std::string_view domainName,
                                             std::string_view dataFormat, std::string_view pageName,
                                             std::string_view adPosition, std::string_view keywords,
                                             std::string_view queryString,
                                             const XAdSlotConfiguration* configuration);

  // Takes the geo override out of `queryString`, the separators around it left alone, and returns
  // the new text as well.
  static std::string removeGeoOverrideFromQueryString(std::string& queryString);

  // A template of the request URL, to be filled by the operation below. Nothing here fills it.
  [[nodiscard]] static std::string getPlaceholderURLString();

  // Replaces every occurrence of `target`, whatever its letter case, and returns `text` itself. An
  // empty target occurs nowhere.
  static std::string& replaceOccurenceOfString(std::string_view target,
                                               std::string_view replacement, std::string& text);

  // Pieces of query text, each beginning with "&": "&o=p" for upright and "&o=l" for sideways,
  // "&z=+0530".
  [[nodiscard]] static std::string orientationFromDeviceInfo();
  [[nodiscard]] static std::string timeZoneFromDeviceInfo();

  // Values of the carrier record, without any "&"; none where the network did not tell.
  [[nodiscard]] static std::optional<std::string> networkTypeFromDeviceInfo();
  [[nodiscard]] static std::optional<std::string> carrierNameFromDeviceInfo();
  [[nodiscard]] static std::optional<std::string> ISOCountryCodeFromDeviceInfo();

  // Without a source yet: always none.
  [[nodiscard]] static std::optional<std::string> genderFromUserInfo();
  [[nodiscard]] static std::optional<std::string> ageFromUserInfo();
};

}  // namespace tavo
