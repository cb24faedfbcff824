#include "OnlineRequest/TrackedPing.h"

#include <cstddef>
#include <utility>

#include "Communicator/Cookie/XCookieManager.h"
#include "Communicator/Network/XNetworkManager.h"
#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "Services/RunLoop.h"
#include "Utilities/XUserAgent.h"

namespace tavo {

namespace {

constexpr const char* sendOperation =
    "+[XTrackingRequest sendAsynchronousRequest:context:slotConfiguration:]";
constexpr const char* completionOperation =
    "+[XTrackingRequest sendAsynchronousRequest:context:slotConfiguration:]_block_invoke";

// More is no pixel: the rest of such an answer is not waited for.
constexpr std::size_t mostAnswerBytes = std::size_t{256} * 1024;

// Quirk: a request like an ad request is prepared, and then a plain one is sent. Trackers must not
// get the engine's user agent nor a cookie header of ours; the preparation shows in the log only.
HttpRequest plainRequest(Environment& environment, const Url& url,
                         const std::shared_ptr<XAdSlotConfiguration>& slotConfiguration) {
  HttpRequest prepared = XUserAgent::sharedProvider(environment).getUserAgentForUrl(url);
  XCookieManager{environment.platform(), slotConfiguration}.attachCookiesToHeaderWithRequest(
      prepared, url.host());

  const auto timeout = environment.limits().pingTimeout;
  HttpRequest plain;
  plain.url = url;
  plain.idleTimeout = timeout;
  plain.deadline = timeout;
  plain.traffic = TrafficClass::tracking;
  plain.maximumBodyBytes = mostAnswerBytes;
  return plain;
}

}  // namespace

TrackedPing::TrackedPing(Environment& environment, Url url, std::string context,
                         std::shared_ptr<XAdSlotConfiguration> slotConfiguration,
                         std::uint64_t number)
    : QueuedPing{std::move(url)},
      environment_{environment},
      ledger_{environment.shared<PingLedger>()},
      context_{std::move(context)},
      slotConfiguration_{std::move(slotConfiguration)},
      number_{number} {}

// The network may have gone while the ping waited: then it is suppressed like one that becomes due
// now.
std::optional<HttpRequest> TrackedPing::prepare() {
  const OperationLog log{sendOperation};
  if (!XNetworkManager::shareInstance(environment_).internetAvailable()) {
    log.debug("\n\nInternet not available");
    ledger_.markSuppressed(number_);
    return std::nullopt;
  }
  HttpRequest request = plainRequest(environment_, url(), slotConfiguration_);
  log.debug("\n\nSending tracking request asynchronously");
  ledger_.markSent(number_);
  return request;
}

void TrackedPing::dropped() {
  platformLog("TAVO: " + context_ + " dropped, too many tracking requests are waiting",
              LogLevel::warning);
  ledger_.markDropped(number_);
}

void TrackedPing::answered(const HttpResult& result) {
  const OperationLog log{completionOperation};
  // Quirk: the log says so whatever came of it; the ledger knows better.
  platformLog(context_ + " sent successfully");
  log.debug("\n\nreceived Tracking async response");
  if (result.error) {
    log.debug("\n\nAsync Error: ", result.error->description);
  } else if (result.response) {
    XCookieManager{environment_.platform()}.persistCookies(&*result.response);
  }
}

void TrackedPing::settled(const HttpResult& result, Seconds took) {
  if (result.error) {
    ledger_.markFailed(number_, *result.error, took);
  } else {
    ledger_.markAnswered(number_, result.response ? result.response->status : 0, took);
  }
}

}  // namespace tavo
