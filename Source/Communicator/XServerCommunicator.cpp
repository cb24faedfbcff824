#include "Communicator/XServerCommunicator.h"

#include <chrono>
#include <future>

#include <tavo/SdkErrors.h>

#include "AdController/ResponseParser/XJSONResponseParser.h"
#include "Communicator/Cookie/XCookieManager.h"
#include "Communicator/Network/XNetworkManager.h"
#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "Services/Alerts.h"
#include "Services/RunLoop.h"
#include "Utilities/XUserAgent.h"
#include "Values/Text.h"

namespace tavo {

namespace {

using Delegate = XServerCommunicatorDelegate;

constexpr Seconds blockingTimeout{60};
// The transport ends a blocking exchange by itself; past this nobody waits for one that does not.
constexpr Seconds blockingPatience{65};

std::shared_ptr<XAdInfo> readAnswer(const std::string& body) {
  const auto document = XJSONResponseParser::parseJSONResponseWithData(body);
  return std::make_shared<XAdInfo>(document ? &*document : nullptr);
}

bool hasBody(const HttpResult& result) { return result.response && !result.response->body.empty(); }

}  // namespace

XServerCommunicator::XServerCommunicator(std::shared_ptr<Environment> environment)
    : environment_{std::move(environment)} {}

std::shared_ptr<XServerCommunicator> XServerCommunicator::create(
    std::shared_ptr<Environment> environment, const std::shared_ptr<const Delegate>& delegate) {
  const OperationLog log{"-[XServerCommunicator initWithDelegate:]"};
  std::shared_ptr<XServerCommunicator> communicator{
      new XServerCommunicator{std::move(environment)}};
  communicator->delegate.set(delegate);
  return communicator;
}

void XServerCommunicator::loadURL(const Url& url) {
  const OperationLog log{"-[XServerCommunicator loadURL:]"};
  platformLog("URL: " + url.text());
  if (XNetworkManager::shareInstance(*environment_).internetAvailable()) {
    // Only the very first load has to wait here.
    XUserAgent::sharedProvider(*environment_).whenKnown([weak = weak_from_this(), url] {
      if (const auto self = weak.lock()) self->send(url);
    });
    log.debug("\n\nAsync Call made to ad URL: ", url.text());
    return;
  }
  log.debug("\n\nInternet Not Available");
  const auto self = shared_from_this();
  delegate.tell(&Delegate::serverCommunicatorDidFailWithError, *this,
                makeError(SdkError::noConnectivity, "Network connectivity not available"));
}

void XServerCommunicator::send(const Url& url) {
  const HttpRequest asked = XUserAgent::sharedProvider(*environment_).getUserAgentForUrl(url);
  HttpRequest request = asked;
  request.slot = slot;
  XCookieManager{environment_->platform(), slotConfiguration}.attachCookiesToHeaderWithRequest(
      request, url.host());
  http().send(std::move(request), [weak = weak_from_this(), asked](const HttpResult& result) {
    if (const auto self = weak.lock()) self->received(result, asked);
  });
}

void XServerCommunicator::received(const HttpResult& result, HttpRequest asked) {
  const OperationLog log{"-[XServerCommunicator loadURL:]_block_invoke"};
  log.debug("\n\nAsync response received");
  XCookieManager{environment_->platform()}.persistCookies(result.response ? &*result.response
                                                                          : nullptr);
  if (result.error) {
    return delegate.tell(&Delegate::serverCommunicatorDidFailWithError, *this, result.error);
  }
  if (!hasBody(result)) {
    log.debug("\n\nAsync request/response error occured");
    return delegate.tell(&Delegate::serverCommunicatorDidFailWithError, *this, std::nullopt);
  }
  const auto info = readAnswer(result.response->body);
  info->httpResponseCode = result.response->status;
  info->httpRequestURL = std::move(asked);
  info->servedFrom = result.response->url;
  info->responseContent = validUtf8(result.response->body);
  info->MIMEType = result.response->mimeType;
  delegate.tell(&Delegate::serverCommunicatorDidReceiveAdInfo, *this, info);
}

void XServerCommunicator::VASTResponseFromAlternateURL() {
  const OperationLog log{"-[XServerCommunicator VASTResponseFromAlternateURL]"};
  const auto& limits = environment_->limits();
  HttpRequest request = XUserAgent::buildURL(alternateURL);
  request.deadline = limits.requestDeadline;
  request.maximumBodyBytes = limits.vastBytes;
  http().send(std::move(request), [weak = weak_from_this()](const HttpResult& result) {
    if (const auto self = weak.lock()) self->receivedAlternate(result);
  });
}

void XServerCommunicator::receivedAlternate(const HttpResult& result) {
  const OperationLog log{"-[XServerCommunicator VASTResponseFromAlternateURL]_block_invoke"};
  log.debug("\n\nData received");
  if (result.error || !hasBody(result)) {
    log.debug("\n\nImproper ad response");
    return showNoAdsAlert();
  }
  const auto info = std::make_shared<XAdInfo>();
  info->adType = "text/xml";
  info->text = validUtf8(result.response->body);
  delegate.tell(&Delegate::serverCommunicatorDidReceiveAdInfo, *this, info);
}

void XServerCommunicator::showNoAdsAlert() {
  environment_->platform().alerts->show({"No Ads", "Improper Ad Response", {"Ok"}},
                                        [weak = weak_from_this()](std::size_t button) {
                                          if (const auto self = weak.lock())
                                            self->alertViewClickedButtonAtIndex(button);
                                        });
}

void XServerCommunicator::alertViewClickedButtonAtIndex(std::size_t /*button*/) {
  const OperationLog log{"-[XServerCommunicator alertView:clickedButtonAtIndex:]"};
  delegate.tell(&Delegate::dismissVastViewController);
}

std::optional<std::string> XServerCommunicator::responseFromServer(const Url& url) const {
  const OperationLog log{"-[XServerCommunicator responseFromServer:]"};
  if (environment_->platform().runLoop->isMainThread()) {
    // The transport needs the main thread to get anywhere: waiting on it would be waiting for ever.
    platformLog("responseFromServer: would stop the host. Call it on another thread.",
                LogLevel::error);
    return std::nullopt;
  }
  HttpRequest request = XUserAgent::buildURL(url);
  request.idleTimeout = blockingTimeout;
  request.deadline = blockingTimeout;
  request.maximumBodyBytes = environment_->limits().answerBytes;
  request.completionThread = CompletionThread::background;

  // The promise belongs to the completion, which may come when nobody waits any more.
  const auto promise = std::make_shared<std::promise<std::optional<std::string>>>();
  auto answer = promise->get_future();
  http().send(std::move(request), [promise](const HttpResult& result) {
    const bool arrived = result.response && !result.error;
    promise->set_value(arrived ? std::optional{result.response->body} : std::nullopt);
  });
  if (answer.wait_for(blockingPatience) != std::future_status::ready) return std::nullopt;
  return answer.get();
}

void XServerCommunicator::connectionDidReceiveData(const Connection* /*connection*/,
                                                   std::string_view data) {
  const OperationLog log{"-[XServerCommunicator connection:didReceiveData:]"};
  // Quirk: only the last piece of a body is kept; what this road answers depends on it.
  responseData = data;
}

void XServerCommunicator::connectionDidFinishLoading(const Connection* finished) {
  const OperationLog log{"-[XServerCommunicator connectionDidFinishLoading:]"};
  if (finished == nullptr) return;
  delegate.tell(&Delegate::serverCommunicatorDidReceiveAdInfo, *this, readAnswer(responseData));
}

HttpRequest XServerCommunicator::connectionWillSendRequest(
    const Connection* /*connection*/, const HttpRequest& request,
    const HttpResponse* /*redirectResponse*/) const {
  const OperationLog log{"-[XServerCommunicator connection:willSendRequest:redirectResponse:]"};
  return request;
}

void XServerCommunicator::connectionDidFailWithError(const Connection* /*connection*/,
                                                     const Error& error) {
  const OperationLog log{"-[XServerCommunicator connection:didFailWithError:]"};
  delegate.tell(&Delegate::serverCommunicatorDidFailWithError, *this, std::optional{error});
}

}  // namespace tavo
