#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <tavo/Observer.h>
#include <tavo/XAdSlotConfiguration.h>

#include "AdInfo/XAdInfo.h"
#include "Runtime/Environment.h"
#include "Services/HttpClient.h"

namespace tavo {

class XServerCommunicator;

// Told on the main thread.
struct XServerCommunicatorDelegate {
  // A body arrived, whatever the status: judging it is the observer's work.
  std::function<void(XServerCommunicator&, const std::shared_ptr<XAdInfo>&)>
      serverCommunicatorDidReceiveAdInfo{};
  // No error is given for an answer without a body.
  std::function<void(XServerCommunicator&, const std::optional<Error>&)>
      serverCommunicatorDidFailWithError{};
  // The alert about an alternate answer without content was dismissed.
  std::function<void()> dismissVastViewController{};
};

// Makes one exchange with the ad server at a time for whoever owns it, and turns the answer into an
// XAdInfo. A communicator that is gone when its answer arrives reports nothing. Main thread only,
// where not said otherwise.
class XServerCommunicator : public std::enable_shared_from_this<XServerCommunicator> {
 public:
  // The delegate is held weakly.
  [[nodiscard]] static std::shared_ptr<XServerCommunicator> create(
      std::shared_ptr<Environment> environment,
      const std::shared_ptr<const XServerCommunicatorDelegate>& delegate);

  Observer<XServerCommunicatorDelegate> delegate;
  // The slot that asks; set before each loadURL.
  std::shared_ptr<XAdSlotConfiguration> slotConfiguration;
  // The ad view that is asked for, for the inspection; compared and never followed.
  const void* slot = nullptr;
  bool isRequestRedirected = false;  // kept for the ad manager
  // Where VASTResponseFromAlternateURL asks; empty: nowhere, which counts as no answer.
  Url alternateURL;

  // Starts one exchange. Without a connection the failure is told inside this call.
  void loadURL(const Url& url);

  // Fetches a VAST document from `alternateURL` and reports it as an ad of type "text/xml". Without
  // a body an alert is shown, and its dismissal is told.
  void VASTResponseFromAlternateURL();
  void alertViewClickedButtonAtIndex(std::size_t button);

  // Fetches the URL while the calling thread waits, for a minute at most; none on failure. Any
  // thread but the main one, where nothing is fetched and the log says so: it would stop the host.
  [[nodiscard]] std::optional<std::string> responseFromServer(const Url& url) const;

  // The road of a connection that reports piece by piece. The connection's identity is passed on
  // and not used.
  using Connection = HttpClient::Exchange;
  std::shared_ptr<Connection> connection;
  std::string responseData;  // what this road has received
  void connectionDidReceiveData(const Connection* connection, std::string_view data);
  void connectionDidFinishLoading(const Connection* connection);
  [[nodiscard]] HttpRequest connectionWillSendRequest(const Connection* connection,
                                                      const HttpRequest& request,
                                                      const HttpResponse* redirectResponse) const;
  void connectionDidFailWithError(const Connection* connection, const Error& error);

 private:
  explicit XServerCommunicator(std::shared_ptr<Environment> environment);

  [[nodiscard]] HttpClient& http() const { return *environment_->platform().http; }

  void send(const Url& url);
  void received(const HttpResult& result, HttpRequest asked);
  void receivedAlternate(const HttpResult& result);
  void showNoAdsAlert();

  const std::shared_ptr<Environment> environment_;
};

}  // namespace tavo
