#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <tavo/Inspection.h>

#include "Services/CookieStore.h"
#include "Services/HttpClient.h"
#include "Services/RunLoop.h"

namespace tavo::headless {

// What a scripted server does with one request.
struct ScriptedAnswer {
  int status = 200;
  std::vector<HttpHeader> headers{};
  std::string body{};
  Seconds delay{0};              // before the answer begins
  bool neverAnswers = false;     // the client's time-outs decide
  std::optional<Error> error{};  // the transport fails with it
  bool sharedConnection = false;
};

// An HTTP client whose servers are a script. Answers are given per URL text, each list in turn and
// its last entry for ever; a URL without a script cannot be connected to.
class HeadlessHttpClient : public HttpClient {
 public:
  HeadlessHttpClient(std::shared_ptr<RunLoop> runLoop, std::shared_ptr<CookieStore> cookies,
                     int redirectLimit, std::shared_ptr<Inspection> inspection = nullptr);
  ~HeadlessHttpClient() override;

  std::shared_ptr<Exchange> send(HttpRequest request, HttpCompletion completion) override;

  // Adds an answer for `url`; the empty text stands for every URL without a script of its own.
  void answer(const std::string& url, ScriptedAnswer answer);
  // Takes every answer for `url` out of the script.
  void forget(const std::string& url) { script_.erase(url); }
  void answerWith(const std::string& url, std::string contentType, std::string body);

  // Hears each request as it is handed over.
  std::function<void(const HttpRequest&)> onSend{};

  // Every hop that was sent, with the headers as they left.
  [[nodiscard]] const std::vector<HttpRequest>& requests() const { return requests_; }
  // Their URLs, as text.
  [[nodiscard]] std::vector<std::string> urls() const;
  void clearRequests() { requests_.clear(); }

 private:
  class Flight;

  [[nodiscard]] std::optional<ScriptedAnswer> nextAnswer(const std::string& url);

  std::shared_ptr<RunLoop> runLoop_;
  std::shared_ptr<CookieStore> cookies_;
  int redirectLimit_;
  std::shared_ptr<Inspection> inspection_;
  std::map<std::string, std::deque<ScriptedAnswer>> script_;
  std::vector<HttpRequest> requests_;
  std::set<std::shared_ptr<Flight>> flights_;  // under way
};

}  // namespace tavo::headless
