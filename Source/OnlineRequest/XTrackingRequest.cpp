#include "OnlineRequest/XTrackingRequest.h"

#include "Communicator/Cookie/XCookieManager.h"
#include "Communicator/Network/XNetworkManager.h"
#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "OnlineRequest/PingLedger.h"
#include "OnlineRequest/PingQueue.h"
#include "Runtime/Environment.h"
#include "Services/RunLoop.h"
#include "Utilities/XUserAgent.h"
#include "Values/Text.h"

namespace tavo {

namespace {

constexpr const char* operation =
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

bool isOnline(Environment& environment, const OperationLog& log) {
  const bool online = XNetworkManager::shareInstance(environment).internetAvailable();
  if (!online) log.debug("\n\nInternet not available");
  return online;
}

// The request of a ping whose turn has come. The network may have gone while it waited: then it is
// suppressed like one that becomes due now.
std::optional<HttpRequest> nextRequest(
    Environment& environment, const Url& url,
    const std::shared_ptr<XAdSlotConfiguration>& slotConfiguration, std::uint64_t number) {
  const OperationLog log{operation};
  auto& ledger = environment.shared<PingLedger>();
  if (!isOnline(environment, log)) {
    ledger.markSuppressed(number);
    return std::nullopt;
  }
  HttpRequest request = plainRequest(environment, url, slotConfiguration);
  log.debug("\n\nSending tracking request asynchronously");
  ledger.markSent(number);
  return request;
}

// On another thread.
void answered(const Platform& platform, const std::string& context, const HttpResult& result) {
  const OperationLog log{completionOperation};
  // Quirk: the log says so whatever came of it; the ledger knows better.
  platformLog(context + " sent successfully");
  log.debug("\n\nreceived Tracking async response");
  if (result.error) {
    log.debug("\n\nAsync Error: ", result.error->description);
  } else if (result.response) {
    XCookieManager{platform}.persistCookies(&*result.response);
  }
}

void settled(PingLedger& ledger, std::uint64_t number, const HttpResult& result, Seconds took) {
  if (result.error) {
    ledger.markFailed(number, *result.error, took);
  } else {
    ledger.markAnswered(number, result.response ? result.response->status : 0, took);
  }
}

}  // namespace

void XTrackingRequest::sendAsynchronousRequest(
    Environment& environment, const Url& url, const std::string& context,
    const std::shared_ptr<XAdSlotConfiguration>& slotConfiguration) {
  const OperationLog log{operation};
  auto& ledger = environment.shared<PingLedger>();
  const bool isNullText = equalsIgnoringCase(url.text(), "(null)");
  const bool isDue = !url.empty() && !isNullText;
  const auto number =
      isDue ? ledger.enter(url, context, environment.platform().runLoop->today()) : 0;
  if (!isOnline(environment, log)) {
    if (isDue) ledger.markSuppressed(number);
    return;
  }
  log.debug("\n\nURL: ", url.empty() ? std::string_view{"(null)"} : std::string_view{url.text()});
  if (url.empty()) return;
  if (isNullText) {
    log.debug("\n\nSending tracking request asynchronously");
    log.debug("\n\nUnable to track as URL is not found");
    return;
  }
  // The environment owns the queue, and the queue calls nobody once it is gone.
  environment.shared<PingQueue>().add(
      {.url = url,
       .prepare = [&environment, url, slotConfiguration,
                   number] { return nextRequest(environment, url, slotConfiguration, number); },
       .dropped =
           [&ledger, context, number] {
             platformLog("TAVO: " + context + " dropped, too many tracking requests are waiting",
                         LogLevel::warning);
             ledger.markDropped(number);
           },
       .answered =
           [&environment, context](const HttpResult& result) {
             answered(environment.platform(), context, result);
           },
       .settled = [&ledger, number](const HttpResult& result,
                                    Seconds took) { settled(ledger, number, result, took); }});
}

}  // namespace tavo
