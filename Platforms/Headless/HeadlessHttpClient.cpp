#include "Headless/HeadlessHttpClient.h"

#include <utility>

#include "Rules/HttpHops.h"
#include "Rules/HttpInspection.h"

namespace tavo::headless {

// One request on its way through the script, redirects included.
class HeadlessHttpClient::Flight : public Exchange, public std::enable_shared_from_this<Flight> {
 public:
  Flight(HeadlessHttpClient& client, HttpRequest request, HttpCompletion completion)
      : client_{client},
        request_{request},
        completion_{std::move(completion)},
        inspection_{client.inspection_, request_},
        hops_{std::move(request), client.redirectLimit_} {}

  void start() {
    if (request_.deadline > Seconds{0}) deadline_ = failAfter(request_.deadline);
    hop();
  }

  void cancel() override { fail(TransportError::cancelled, "Cancelled."); }

  // The client goes, and what is under way with it.
  void abandon() {
    wait_.invalidate();
    deadline_.invalidate();
    completion_ = nullptr;
  }

 private:
  [[nodiscard]] Timer failAfter(Seconds patience) {
    return client_.runLoop_->after(patience,
                                   [this] { fail(TransportError::timedOut, "Timed out."); });
  }

  void hop() {
    const auto sent = hops_.request(*client_.cookies_, client_.runLoop_->today());
    if (!sent) return fail(TransportError::unsupportedUrl, "Not a URL that HTTP can reach.");
    client_.requests_.push_back(*sent);
    inspection_.sent(*sent, client_.runLoop_->now());
    auto answer = client_.nextAnswer(sent->url.text());
    if (!answer) return fail(TransportError::cannotConnect, "Could not connect to the server.");
    if (answer->neverAnswers) {
      wait_ = failAfter(request_.idleTimeout);
      return;
    }
    wait_ = client_.runLoop_->after(answer->delay,
                                    [this, answer = std::move(*answer)] { arrived(answer); });
  }

  void arrived(const ScriptedAnswer& answer) {
    if (answer.error) return finish(answer.error);
    if (!response_) sharedConnection_ = answer.sharedConnection;
    response_ = HttpResponse{hops_.url(), answer.status, answer.headers, {}, {}};
    const auto* const type = response_->header("Content-Type");
    if (type != nullptr) response_->mimeType = mimeTypeOf(*type);
    switch (hops_.take(*response_, *client_.cookies_)) {
      case HttpHops::Next::follow:
        inspection_.redirected(*response_, client_.runLoop_->now());
        return hop();
      case HttpHops::Next::giveUp:
        return fail(TransportError::tooManyRedirects, "Too many redirects.");
      case HttpHops::Next::deliver:
        break;
    }
    if (request_.maximumBodyBytes > 0 && answer.body.size() > request_.maximumBodyBytes) {
      return fail(TransportError::bodyTooLarge, "The body is too large.");
    }
    response_->body = answer.body;
    finish(std::nullopt);
  }

  void fail(TransportError code, std::string description) {
    finish(makeError(code, std::move(description)));
  }

  void finish(std::optional<Error> error) {
    if (!completion_) return;
    const auto self = shared_from_this();
    wait_.invalidate();
    deadline_.invalidate();
    inspection_.ended(response_, error, client_.runLoop_->now());
    auto deliver = [completion = std::exchange(completion_, nullptr),
                    result = HttpResult{std::move(response_), std::move(error),
                                        sharedConnection_}] { completion(result); };
    if (request_.completionThread == CompletionThread::background) {
      client_.runLoop_->background(std::move(deliver));
    } else {
      client_.runLoop_->post(std::move(deliver));
    }
    client_.flights_.erase(self);
  }

  HeadlessHttpClient& client_;
  HttpRequest request_;
  HttpCompletion completion_;
  HttpInspection inspection_;
  HttpHops hops_;
  std::optional<HttpResponse> response_;  // of the last hop whose head has arrived
  bool sharedConnection_ = false;         // of the first
  Timer wait_;
  Timer deadline_;
};

HeadlessHttpClient::HeadlessHttpClient(std::shared_ptr<RunLoop> runLoop,
                                       std::shared_ptr<CookieStore> cookies, int redirectLimit,
                                       std::shared_ptr<Inspection> inspection)
    : runLoop_{std::move(runLoop)},
      cookies_{std::move(cookies)},
      redirectLimit_{redirectLimit},
      inspection_{std::move(inspection)} {}

HeadlessHttpClient::~HeadlessHttpClient() {
  for (const auto& flight : flights_) flight->abandon();
}

std::shared_ptr<HttpClient::Exchange> HeadlessHttpClient::send(HttpRequest request,
                                                               HttpCompletion completion) {
  if (onSend) onSend(request);
  auto flight = std::make_shared<Flight>(*this, std::move(request), std::move(completion));
  flights_.insert(flight);
  flight->start();
  return flight;
}

void HeadlessHttpClient::answer(const std::string& url, ScriptedAnswer answer) {
  script_[url].push_back(std::move(answer));
}

void HeadlessHttpClient::answerWith(const std::string& url, std::string contentType,
                                    std::string body) {
  answer(url, {.headers = {{"Content-Type", std::move(contentType)}}, .body = std::move(body)});
}

std::vector<std::string> HeadlessHttpClient::urls() const {
  std::vector<std::string> texts;
  for (const auto& request : requests_) texts.push_back(request.url.text());
  return texts;
}

std::optional<ScriptedAnswer> HeadlessHttpClient::nextAnswer(const std::string& url) {
  auto entry = script_.find(url);
  if (entry == script_.end()) entry = script_.find({});
  if (entry == script_.end()) return std::nullopt;
  auto answer = entry->second.front();
  if (entry->second.size() > 1) entry->second.pop_front();
  return answer;
}

}  // namespace tavo::headless
