#include <atomic>
#include <thread>

#include "Communicator/Network/XNetworkManager.h"
#include "Communicator/XServerCommunicator.h"
#include "Unit/TransportFixture.h"
#include "Utilities/XUserAgent.h"

namespace tavo::test {
namespace {

class Communicator : public test::TransportTest {
 protected:
  using Delegate = XServerCommunicatorDelegate;

  // Loads the URL and runs until nothing is left to happen.
  void load() {
    communicator_->loadURL(url_);
    platform_.runLoop->advance(Seconds{60});
  }

  void answer(headless::ScriptedAnswer answer) {
    platform_.http->answer(url_.text(), std::move(answer));
  }

  const Url url_ = Url::parse("http://ads.test/d/sdk/page/@Top");
  std::vector<std::string> events_;
  std::vector<std::shared_ptr<XAdInfo>> infos_;
  const std::shared_ptr<const Delegate> delegate_ = std::make_shared<Delegate>(
      Delegate{.serverCommunicatorDidReceiveAdInfo =
                   [this](XServerCommunicator&, const std::shared_ptr<XAdInfo>& info) {
                     events_.push_back("info " + std::to_string(info->httpResponseCode));
                     infos_.push_back(info);
                   },
               .serverCommunicatorDidFailWithError =
                   [this](XServerCommunicator&, const std::optional<Error>& error) {
                     events_.push_back(error ? error->domain + " " + std::to_string(error->code) +
                                                   " " + error->description
                                             : "no error");
                   },
               .dismissVastViewController = [this] { events_.emplace_back("dismiss"); }});
  std::shared_ptr<XServerCommunicator> communicator_ =
      XServerCommunicator::create(Runtime::current().environment(), delegate_);
};

TEST_F(Communicator, ReportsTheAnswerWithItsFacts) {
  const std::string body = R"({"Ad":[{"Text":"x"}]})";
  answer({.headers = {{"Content-Type", "application/json; charset=utf-8"}}, .body = body});
  load();
  EXPECT_THAT(events_, ElementsAre("info 200"));
  EXPECT_EQ(infos_[0]->text, "x");
  EXPECT_EQ(infos_[0]->adType, "(null)");
  EXPECT_EQ(infos_[0]->responseContent, body);
  EXPECT_EQ(infos_[0]->MIMEType, "application/json");
  EXPECT_THAT(platform_.log->messages(), Contains("URL: " + url_.text()));
}

TEST_F(Communicator, SendsTheConfiguredRequestAndKeepsTheOneBeforeTheCookies) {
  answer({.body = "{}"});
  load();
  const HttpRequest& sent = platform_.http->requests().at(0);
  EXPECT_EQ(*sent.header("User-Agent"), "Headless/1.0");
  EXPECT_THAT(*sent.header("Cookie"), HasSubstr("DAPROPS=sdevicePixelRatio:2|"));
  EXPECT_EQ(sent.cachePolicy, CachePolicy::reloadIgnoringLocalCacheData);
  EXPECT_EQ(sent.idleTimeout, Seconds{10});
  EXPECT_EQ(sent.deadline, runtime_.limits().requestDeadline);
  EXPECT_EQ(sent.maximumBodyBytes, runtime_.limits().answerBytes);
  EXPECT_EQ(infos_.at(0)->httpRequestURL->url, url_);
  EXPECT_EQ(infos_.at(0)->httpRequestURL->header("Cookie"), nullptr);
}

TEST_F(Communicator, ReportsEveryBodyWhateverTheStatus) {
  answer({.status = 404, .body = "<html>\xFF</html>"});
  load();
  EXPECT_THAT(events_, ElementsAre("info 404"));
  EXPECT_EQ(infos_[0]->text, std::nullopt);
  EXPECT_EQ(infos_[0]->responseContent, "<html>\uFFFD</html>");
}

TEST_F(Communicator, PassesFailuresOn) {
  const Error lost = makeError(TransportError::connectionLost, "lost");
  answer({.error = lost});
  answer({.status = 204});
  answer({.neverAnswers = true});
  answer({.body = std::string(runtime_.limits().answerBytes + 1, ' ')});
  for (int i = 0; i < 4; ++i) load();
  const std::string domain{transportErrorDomain};
  EXPECT_THAT(events_, ElementsAre(domain + " -1005 lost", "no error", domain + " -1001 Timed out.",
                                   HasSubstr(domain + " -1103")));
}

TEST_F(Communicator, FollowsARedirectAndKeepsTheAskedUrl) {
  answer({.status = 302, .headers = {{"Location", "http://other.test/ad"}}});
  platform_.http->answer("http://other.test/ad", {.body = "{}"});
  load();
  EXPECT_THAT(events_, ElementsAre("info 200"));
  EXPECT_EQ(infos_[0]->httpRequestURL->url, url_);
  EXPECT_EQ(platform_.http->requests().at(1).header("Cookie"), nullptr);
}

// A transport that leaves cookies to whoever asked: what is stored the communicator stores itself.
class CookielessHttpClient : public HttpClient {
 public:
  explicit CookielessHttpClient(HttpResult result) : result_{std::move(result)} {}
  std::shared_ptr<Exchange> send(HttpRequest /*request*/, HttpCompletion completion) override {
    completion(result_);
    return nullptr;
  }

 private:
  HttpResult result_;
};

TEST_F(Communicator, StoresCookiesItselfAlsoAfterAFailure) {
  Platform platform = runtime_.platform();
  platform.http = std::make_shared<CookielessHttpClient>(
      HttpResult{HttpResponse{url_, 200, {{"Set-Cookie", "a=1"}}, {}, {}},
                 makeError(TransportError::connectionLost, "lost")});
  communicator_ = XServerCommunicator::create(std::make_shared<Environment>(platform), delegate_);
  communicator_->loadURL(url_);
  EXPECT_EQ(cookieHeader(platform_.cookies->cookiesFor(url_)), "a=1");
}

TEST_F(Communicator, TellsItsUserAgentOnAnotherThread) {
  std::string told;
  std::thread asking{
      [&] { told = XUserAgent::sharedProvider(*runtime_.environment()).userAgent(); }};
  std::atomic<bool> done{false};
  std::thread waiting{[&] {
    asking.join();
    done = true;
  }};
  while (!done) platform_.runLoop->runPending();
  waiting.join();
  EXPECT_EQ(told, "Headless/1.0");
}

TEST_F(Communicator, StoresTheCookiesOfTheAnswerBeforeItReports) {
  answer({.status = 204, .headers = {{"Set-Cookie", "kqd_id=7"}}});
  answer({.body = "{}"});
  load();
  load();
  EXPECT_THAT(*platform_.http->requests().at(1).header("Cookie"), HasSubstr("kqd_id=7; DAPROPS="));
}

TEST_F(Communicator, SaysNothingOnceItIsGone) {
  answer({.body = "{}", .delay = Seconds{1}});
  communicator_->loadURL(url_);
  communicator_.reset();
  platform_.runLoop->advance(Seconds{10});
  EXPECT_TRUE(events_.empty());
}

TEST_F(Communicator, MayBeDroppedByItsObserver) {
  const auto dropping = std::make_shared<Delegate>(Delegate{
      .serverCommunicatorDidReceiveAdInfo = [this](auto&, auto&) { communicator_.reset(); },
      .serverCommunicatorDidFailWithError = [this](auto&, auto&) { communicator_.reset(); }});
  answer({.body = "{}"});
  communicator_->delegate.set(dropping);
  load();
  EXPECT_EQ(communicator_, nullptr);

  communicator_ = XServerCommunicator::create(Runtime::current().environment(), dropping);
  platform_.network->setReachable(false);
  communicator_->loadURL(url_);
  EXPECT_EQ(communicator_, nullptr);
}

TEST_F(Communicator, ReportsAnAlternateAnswerAsXml) {
  communicator_->alternateURL = Url::parse("http://vast.test/alternate");
  platform_.http->answer("http://vast.test/alternate", {.body = "<VAST/>"});
  communicator_->VASTResponseFromAlternateURL();
  platform_.runLoop->runPending();
  EXPECT_THAT(events_, ElementsAre("info 0"));
  EXPECT_EQ(infos_[0]->adType, "text/xml");
  EXPECT_EQ(infos_[0]->text, "<VAST/>");
  EXPECT_EQ(infos_[0]->responseContent, std::nullopt);
  const HttpRequest& sent = platform_.http->requests().at(0);
  EXPECT_EQ(sent.deadline, runtime_.limits().requestDeadline);
  EXPECT_EQ(sent.maximumBodyBytes, runtime_.limits().vastBytes);
}

TEST_F(Communicator, ShowsAnAlertForAnAlternateAnswerWithoutContent) {
  communicator_->VASTResponseFromAlternateURL();
  platform_.runLoop->runPending();
  EXPECT_THAT(alerts_->shown, ElementsAre(Alert{"No Ads", "Improper Ad Response", {"Ok"}}));
  EXPECT_TRUE(events_.empty());
  alerts_->answers.at(0)(0);
  EXPECT_THAT(events_, ElementsAre("dismiss"));
  communicator_.reset();
  alerts_->answers.at(0)(0);
  EXPECT_EQ(events_.size(), 1U);
}

TEST_F(Communicator, QuirkKeepsOnlyTheLastPieceOfABodyThatComesInPieces) {
  const auto connection =
      platform_.http->send(XUserAgent::buildURL(url_), [](const HttpResult&) {});
  communicator_->connectionDidReceiveData(connection.get(), R"({"Ad":[{"Text":"first"}]})");
  communicator_->connectionDidReceiveData(connection.get(), R"({"Ad":[{"Text":"last"}]})");
  communicator_->connectionDidFinishLoading(nullptr);
  EXPECT_TRUE(events_.empty());
  communicator_->connectionDidFinishLoading(connection.get());
  EXPECT_THAT(events_, ElementsAre("info 0"));
  EXPECT_EQ(infos_[0]->text, "last");
  EXPECT_EQ(infos_[0]->responseContent, std::nullopt);
}

TEST_F(Communicator, ForwardsARedirectAndAFailureOfTheConnection) {
  const HttpRequest proposed = XUserAgent::buildURL(Url::parse("http://b.test/"));
  EXPECT_EQ(communicator_->connectionWillSendRequest(nullptr, proposed, nullptr).url, proposed.url);
  communicator_->connectionDidFailWithError(nullptr, {"d", 1, "text"});
  EXPECT_THAT(events_, ElementsAre("d 1 text"));
}

// A transport that answers from a thread of its own while the caller waits.
class ThreadedHttpClient : public HttpClient {
 public:
  explicit ThreadedHttpClient(HttpResult result) : result_{std::move(result)} {}
  ~ThreadedHttpClient() override { thread_.join(); }
  std::shared_ptr<Exchange> send(HttpRequest request, HttpCompletion completion) override {
    sent = std::move(request);
    thread_ = std::thread{[this, completion = std::move(completion)] { completion(result_); }};
    return nullptr;
  }
  HttpRequest sent;

 private:
  HttpResult result_;
  std::thread thread_;
};

TEST_F(Communicator, FetchesWhileTheCallerWaits) {
  const auto fetch = [&](HttpResult result) {
    const auto http = std::make_shared<ThreadedHttpClient>(std::move(result));
    Platform platform = runtime_.platform();
    platform.http = http;
    const auto asking =
        XServerCommunicator::create(std::make_shared<Environment>(platform), delegate_);
    std::optional<std::string> body = "not called";
    platform_.runLoop->background([&] { body = asking->responseFromServer(url_); });
    platform_.runLoop->runPending();
    EXPECT_EQ(http->sent.idleTimeout, Seconds{60});
    EXPECT_EQ(http->sent.cachePolicy, CachePolicy::useProtocolCachePolicy);
    EXPECT_EQ(http->sent.completionThread, CompletionThread::background);
    return body;
  };
  EXPECT_EQ(fetch({HttpResponse{url_, 500, {}, "text/plain", "text"}, {}}), "text");
  EXPECT_EQ(fetch({{}, makeError(TransportError::timedOut, "late")}), std::nullopt);
}

TEST_F(Communicator, RefusesToWaitOnTheMainThread) {
  EXPECT_EQ(communicator_->responseFromServer(url_), std::nullopt);
  EXPECT_TRUE(platform_.http->requests().empty());
  EXPECT_THAT(platform_.log->messages(), ElementsAre(HasSubstr("would stop the host")));
}

TEST_F(Communicator, WaitsForTheUserAgentBesideTheHost) {
  platform_.webViews->holdsAgent = true;
  answer({.body = "{}"});
  answer({.body = "{}"});
  load();
  load();
  EXPECT_TRUE(platform_.http->requests().empty());
  for (const auto& found : platform_.webViews->agentAsked) found();
  platform_.runLoop->advance(Seconds{60});
  EXPECT_THAT(events_, ElementsAre("info 200", "info 200"));
  EXPECT_EQ(*platform_.http->requests().at(0).header("User-Agent"), "Headless/1.0");
  load();
  EXPECT_EQ(platform_.webViews->agentAsked.size(), 2U) << "known for good";
}

TEST_F(Communicator, KeepsTheUserAgentOnceItIsKnown) {
  auto& provider = XUserAgent::sharedProvider(*Runtime::current().environment());
  EXPECT_EQ(provider.userAgent(), "Headless/1.0");
  platform_.webViews->agent = "Headless/2.0";  // nobody asks the engine again
  EXPECT_EQ(provider.userAgent(), "Headless/1.0");
  EXPECT_EQ(*provider.getUserAgentForUrl(url_).header("user-agent"), "Headless/1.0");
  EXPECT_TRUE(XUserAgent::buildURL(url_).headers.empty());
}

}  // namespace
}  // namespace tavo::test
