#include "Communicator/Cookie/XCookieManager.h"

#include <algorithm>

#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "Rules/CookieRules.h"
#include "Services/Screen.h"
#include "Utilities/NumberText.h"
#include "Values/Text.h"

namespace tavo {

namespace {

bool belongsToAdServer(const Cookie& cookie) {
  return equalsIgnoringCase(std::string_view{cookie.name}.substr(0, 3), "KQD");
}

// Lengths of real screens; what lies outside is no length at all.
int wholePart(double length) { return integerPart(std::clamp(length, 0.0, 1'000'000.0)); }

}  // namespace

XCookieManager::XCookieManager(const Platform& platform)
    : store_{platform.cookies}, screen_{platform.screen} {
  const OperationLog log{"-[XCookieManager init]"};
}

XCookieManager::XCookieManager(const Platform& platform,
                               std::shared_ptr<XAdSlotConfiguration> configuration)
    : slotConfiguration{std::move(configuration)},
      store_{platform.cookies},
      screen_{platform.screen} {
  const OperationLog log{"-[XCookieManager initWithSlotConfiguration:]"};
}

void XCookieManager::attachCookiesToHeaderWithRequest(HttpRequest& request,
                                                      std::string_view domainName) const {
  const OperationLog log{"-[XCookieManager attachCookiesToHeaderWithRequest:domainName:]"};
  if (request.url.empty()) return;
  const bool coppa = slotConfiguration && slotConfiguration->COPPAPermissions;
  log.debug("\n\nCoppa: ", static_cast<int>(coppa));
  if (coppa) request.cookies = CookieHandling::onlyOwnHeader;

  const auto properties = DAPROPSCookieWithDomainName(domainName);
  if (!properties) return;
  platformLog("\n\nDaprops cookies attached");
  if (coppa) {
    auto cookies = adServersOwn(request.url);
    cookies.push_back(*properties);
    request.setHeader("Cookie", cookieHeader(cookies));
  } else {
    request.extraCookies = {*properties};
  }
}

std::vector<Cookie> XCookieManager::adServersOwn(const Url& url) const {
  std::vector<Cookie> cookies = store_->cookiesFor(url);
  std::erase_if(cookies, [](const Cookie& cookie) { return !belongsToAdServer(cookie); });
  boundHeader(cookies);
  return cookies;
}

void XCookieManager::persistCookies(const HttpResponse* response) const {
  const OperationLog log{"-[XCookieManager persistCookies:]"};
  if (response == nullptr || !response->url.isHttp()) return;
  platformLog("\n\nPersisting Cookies");
  store_->storeFromHeaders(response->headers, response->url);
}

std::optional<Cookie> XCookieManager::DAPROPSCookieWithDomainName(
    std::string_view domainName) const {
  const OperationLog log{"-[XCookieManager DAPROPSCookieWithDomainName:]"};
  if (domainName.empty()) return std::nullopt;
  const Rect bounds = screen_->bounds();
  Cookie cookie;
  cookie.name = "DAPROPS";
  cookie.domain = std::string{domainName};
  // Quirk: the orientation is always 1, however the device is held; the server sorts by it.
  cookie.value = "sdevicePixelRatio:" + getDevicePixelRatio() +
                 "|sdeviceAspectRatio:" + getFractionsWithWidth(bounds.width, bounds.height) +
                 "|sjs.deviceOrientation:1";
  return cookie;
}

std::string XCookieManager::getFractionsWithWidth(double width, double height) const {
  const OperationLog log{"-[XCookieManager getFractionsWithWidth:height:]"};
  const int wholeWidth = wholePart(width);
  const int wholeHeight = wholePart(height);
  // Quirk: the search starts at half the smaller side, so a square of 320 is 2/2 and not 1/1.
  int divisor = std::min(wholeWidth / 2, wholeHeight / 2) + 1;
  while (divisor > 1 && (wholeWidth % divisor != 0 || wholeHeight % divisor != 0)) --divisor;
  return std::to_string(wholeWidth / divisor) + "/" + std::to_string(wholeHeight / divisor);
}

std::string XCookieManager::getDevicePixelRatio() const {
  const OperationLog log{"-[XCookieManager getDevicePixelRatio]"};
  const auto scale = screen_->scale();
  if (!scale) return "2";
  // By way of the printed form: a scale that prints as 2.000000 is 2, even if it is a hair less.
  return std::to_string(leadingWholeNumber(std::to_string(*scale)));
}

}  // namespace tavo
