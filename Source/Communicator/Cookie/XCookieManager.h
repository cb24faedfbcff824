#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <tavo/Platform.h>
#include <tavo/XAdSlotConfiguration.h>

#include "Services/CookieStore.h"
#include "Services/HttpClient.h"

namespace tavo {

// Puts the stored cookies and the device's description on a request, and the cookies of an answer
// into the store. Made for one request or one answer. Attaching belongs to the main thread;
// persistCookies may be called on any.
class XCookieManager {
 public:
  explicit XCookieManager(const Platform& platform);
  // `slotConfiguration` may be null; of it only COPPAPermissions is read.
  XCookieManager(const Platform& platform, std::shared_ptr<XAdSlotConfiguration> slotConfiguration);

  std::shared_ptr<XAdSlotConfiguration> slotConfiguration;
  std::vector<Cookie> cookiesArray;  // kept for the host

  // Adds DAPROPS for `domainName` to the cookies that the transport takes from the store, on each
  // hop those of its own URL. Under COPPA the request gets a "Cookie" header instead, of the ad
  // server's own cookies for its URL (names that start with "KQD" in any letter case) and DAPROPS,
  // and is marked so that the transport adds none. No cookie is set when there is no domain name;
  // nothing happens to a request without a URL.
  void attachCookiesToHeaderWithRequest(HttpRequest& request, std::string_view domainName) const;

  // Stores the cookies of an answer over HTTP; null, or an answer from elsewhere, holds none.
  void persistCookies(const HttpResponse* response) const;

  // The cookie that describes the device, or none without a domain name.
  [[nodiscard]] std::optional<Cookie> DAPROPSCookieWithDomainName(
      std::string_view domainName) const;

  // "width/height", both divided by their largest common divisor up to half the smaller one.
  [[nodiscard]] std::string getFractionsWithWidth(double width, double height) const;

  // The screen's scale without its fraction; "2" where the screen does not tell.
  [[nodiscard]] std::string getDevicePixelRatio() const;

 private:
  [[nodiscard]] std::vector<Cookie> adServersOwn(const Url& url) const;

  const std::shared_ptr<CookieStore> store_;
  const std::shared_ptr<const Screen> screen_;
};

}  // namespace tavo
