#include "Headless/HeadlessHttpClient.h"

#include <algorithm>

#include "Values/Text.h"

namespace tavo::headless {

namespace {

bool isRedirect(int status) {
  return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

std::string mimeTypeOf(const std::string* contentType) {
  if (contentType == nullptr) return {};
  std::string type{trimmed(std::string_view{*contentType}.substr(0, contentType->find(';')))};
  std::transform(type.begin(), type.end(), type.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
  return type;
}

// Where a "Location" header leads: an absolute URL, or a path on the same server.
Url target(const Url& from, const std::string& location) {
  Url absolute = Url::fromText(location);
  if (!absolute.scheme().empty()) return absolute;
  const auto& text = from.text();
  const auto authority = text.find("//") + 2;
  return Url::fromText(text.substr(0, text.find('/', authority)) + location);
}

}  // namespace

// One request on its way through the script, redirects included.
class HeadlessHttpClient::Flight : public Exchange, public std::enable_shared_from_this<Flight> {
 public:
  Flight(HeadlessHttpClient& client, HttpRequest request, HttpCompletion completion)
      : client_{client}, request_{std::move(request)}, completion_{std::move(completion)} {}

  void start() {
    if (request_.deadline > Seconds{0}) {
      deadline_ = client_.runLoop_->after(request_.deadline, [weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->fail(TransportError::timedOut, "Timed out.");
      });
    }
    hop(request_.url);
  }

  void cancel() override { fail(TransportError::cancelled, "Cancelled."); }

  // The client goes, and what is under way with it.
  void abandon() {
    wait_.invalidate();
    deadline_.invalidate();
    completion_ = nullptr;
  }

 private:
  void hop(const Url& url) {
    if (!url.isHttp()) return fail(TransportError::unsupportedUrl, "Not an http URL.");
    HttpRequest sent = request_;
    sent.url = url;
    prepareCookies(sent);
    client_.requests_.push_back(sent);
    auto answer = client_.nextAnswer(url.text());
    if (!answer) return fail(TransportError::cannotConnect, "Could not connect to the server.");
    if (answer->neverAnswers) {
      wait_ = client_.runLoop_->after(request_.idleTimeout, [weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->fail(TransportError::timedOut, "Timed out.");
      });
      return;
    }
    wait_ = client_.runLoop_->after(answer->delay,
                                    [weak = weak_from_this(), url, answer = std::move(*answer)] {
                                      if (const auto self = weak.lock()) self->arrived(url, answer);
                                    });
  }

  void prepareCookies(HttpRequest& sent) const {
    const bool ownHost = sent.url.host() == request_.url.host();
    if (!ownHost) {
      std::erase_if(sent.headers, [](const HttpHeader& header) {
        return equalsIgnoringCase(header.name, "Cookie") ||
               equalsIgnoringCase(header.name, "Authorization");
      });
    }
    if (request_.cookies == CookieHandling::onlyOwnHeader || sent.header("Cookie") != nullptr) {
      return;
    }
    const auto cookies = client_.cookies_->cookiesFor(sent.url);
    if (!cookies.empty()) sent.setHeader("Cookie", cookieHeader(cookies));
  }

  void arrived(const Url& url, const ScriptedAnswer& answer) {
    if (answer.error) return finish({std::nullopt, answer.error});
    HttpResponse response{url, answer.status, answer.headers, {}, answer.body};
    client_.cookies_->storeFromHeaders(response.headers, url);
    const auto* location = response.header("Location");
    if (request_.followsRedirects && isRedirect(answer.status) && location != nullptr) {
      if (++hops_ > client_.redirectLimit_) {
        return fail(TransportError::tooManyRedirects, "Too many redirects.");
      }
      return hop(target(url, *location));
    }
    response.mimeType = mimeTypeOf(response.header("Content-Type"));
    if (request_.maximumBodyBytes > 0 && response.body.size() > request_.maximumBodyBytes) {
      response.body.clear();
      return finish(
          {std::move(response), makeError(TransportError::bodyTooLarge, "The body is too large.")});
    }
    finish({std::move(response), std::nullopt});
  }

  void fail(TransportError code, std::string description) {
    finish({std::nullopt, makeError(code, std::move(description))});
  }

  void finish(HttpResult result) {
    if (!completion_) return;
    wait_.invalidate();
    deadline_.invalidate();
    auto deliver = [completion = std::move(completion_), result = std::move(result)] {
      completion(result);
    };
    completion_ = nullptr;
    if (request_.completionThread == CompletionThread::background) {
      client_.runLoop_->background(std::move(deliver));
    } else {
      client_.runLoop_->post(std::move(deliver));
    }
    client_.flights_.erase(shared_from_this());
  }

  HeadlessHttpClient& client_;
  HttpRequest request_;
  HttpCompletion completion_;
  Timer wait_;
  Timer deadline_;
  int hops_ = 0;
};

HeadlessHttpClient::HeadlessHttpClient(std::shared_ptr<RunLoop> runLoop,
                                       std::shared_ptr<CookieStore> cookies, int redirectLimit)
    : runLoop_{std::move(runLoop)}, cookies_{std::move(cookies)}, redirectLimit_{redirectLimit} {}

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
