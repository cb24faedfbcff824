#include <atomic>
#include <thread>

#include "Contract/HttpClientRig.h"

namespace tavo::test {
namespace {

struct RigMaker {
  std::string name;
  std::unique_ptr<HttpClientRig> (*make)();
};
template <typename Rig>
std::unique_ptr<HttpClientRig> make() {
  return std::make_unique<Rig>();
}

class HttpClientContract : public testing::TestWithParam<RigMaker> {
 protected:
  [[nodiscard]] HttpRequest request(const std::string& path) {
    HttpRequest request;
    request.url = Url::parse(url(path));
    return request;
  }

  [[nodiscard]] std::string url(const std::string& path, Host host = Host::own) {
    return rig_->urlText(path, host);
  }

  HttpResult exchange(HttpRequest request) {
    std::atomic<bool> done = false;
    HttpResult result;
    rig_->client().send(std::move(request), [&](const HttpResult& arrived) {
      result = arrived;
      done = true;
    });
    rig_->runUntil([&] { return done.load(); });
    EXPECT_TRUE(done);
    return result;
  }

  static std::optional<TransportError> codeOf(const HttpResult& result) {
    if (!result.error || result.error->domain != transportErrorDomain) return std::nullopt;
    return static_cast<TransportError>(result.error->code);
  }

  std::vector<std::optional<std::string>> receivedHeader(std::string_view name) {
    std::vector<std::optional<std::string>> values;
    for (const auto& request : rig_->received()) values.push_back(request.header(name));
    return values;
  }

  void redirect(const std::string& path, const std::string& target, int status = 302) {
    rig_->answer(path, {.status = status, .headers = {{"Location", target}}});
  }

  std::unique_ptr<HttpClientRig> rig_ = GetParam().make();
};

TEST_P(HttpClientContract, TellsTheInspectionOfEveryHop) {
  redirect("/first", "/second");
  rig_->answer("/second", {.body = "<b>hi</b>", .contentType = "text/html"});
  exchange(request("/second"));  // nobody looks
  std::vector<std::string> seen;
  const auto observer = std::make_shared<InspectionObserver>(
      InspectionObserver{.inspectionDidSee = [&](const InspectionEvent& event) {
        EXPECT_EQ(event.slot, &seen);
        seen.push_back(std::string{nameOf(event.kind)} + " " + event.text + " " +
                       std::string{event.field("< Location")} + std::string{event.field("body")});
      }});
  rig_->inspection().observer.set(observer);
  HttpRequest asked = request("/first");
  asked.slot = &seen;
  exchange(asked);
  EXPECT_THAT(seen, ElementsAre("request GET " + url("/first") + " ",
                                "answer GET " + url("/first") + " -> 302 /second",
                                "request GET " + url("/second") + " ",
                                "answer GET " + url("/second") + " -> 200 <b>hi</b>"));
}

TEST_P(HttpClientContract, DeliversHeadAndBodyOfTheAnswer) {
  rig_->answer("/ad", {.status = 404,
                       .body = "not here",
                       .contentType = "Text/HTML; charset=UTF-8",
                       .headers = {{"X-Place", "a"}, {"X-Place", "b"}}});
  const auto result = exchange(request("/ad"));
  ASSERT_FALSE(result.error) << result.error->description;
  ASSERT_TRUE(result.response);
  EXPECT_EQ(result.response->status, 404);
  EXPECT_EQ(result.response->url.text(), url("/ad"));
  EXPECT_EQ(result.response->mimeType, "text/html");
  EXPECT_EQ(result.response->body, "not here");
  EXPECT_EQ(std::count_if(result.response->headers.begin(), result.response->headers.end(),
                          [](const HttpHeader& header) { return header.name == "X-Place"; }),
            2);
}

TEST_P(HttpClientContract, SendsMethodAndHeadersOfTheRequest) {
  rig_->answer("/ad", {});
  auto head = request("/ad");
  head.method = "HEAD";
  head.setHeader("User-Agent", "Test/1");
  EXPECT_FALSE(exchange(head).error);
  ASSERT_EQ(rig_->received().size(), 1U);
  EXPECT_EQ(rig_->received()[0].method, "HEAD");
  EXPECT_THAT(receivedHeader("user-agent"), ElementsAre(Optional(Eq("Test/1"))));
}

TEST_P(HttpClientContract, CompletesOnceOnTheNamedThreadAndNeverInsideSend) {
  rig_->answer("/ad", {});
  for (const auto thread : {CompletionThread::main, CompletionThread::background}) {
    for (const bool fails : {false, true}) {
      auto sent = request("/ad");
      if (fails) sent.url = Url::parse("mraid://close");
      sent.completionThread = thread;
      std::atomic<int> calls = 0;
      rig_->client().send(sent, [&](const HttpResult& result) {
        EXPECT_EQ(result.error.has_value(), fails);
        EXPECT_EQ(rig_->runLoop().isMainThread(), thread == CompletionThread::main);
        ++calls;
      });
      EXPECT_TRUE(thread == CompletionThread::background || calls == 0);
      rig_->runUntil([&] { return calls > 0; });
      EXPECT_EQ(calls, 1);
    }
  }
}

TEST_P(HttpClientContract, SendsFromAnyThread) {
  rig_->answer("/ad", {.body = "hello"});
  std::string body;
  std::thread sender{[&] {
    rig_->client().send(request("/ad"),
                        [&](const HttpResult& result) { body = result.response->body; });
  }};
  sender.join();
  rig_->runUntil([&] { return !body.empty(); });
  EXPECT_EQ(body, "hello");
}

TEST_P(HttpClientContract, RefusesWhatIsNotHttp) {
  for (const char* const text :
       {"", "file:///etc/passwd", "mraid://close", "about:blank", "/relative"}) {
    auto sent = request("/ad");
    sent.url = Url::parse(text);
    EXPECT_EQ(codeOf(exchange(sent)), TransportError::unsupportedUrl) << text;
  }
  EXPECT_TRUE(rig_->received().empty());
}

TEST_P(HttpClientContract, ReportsAServerThatCannotBeReached) {
  auto sent = request("/ad");
  sent.url = rig_->unreachableUrl();
  const auto result = exchange(sent);
  EXPECT_EQ(codeOf(result), TransportError::cannotConnect);
  EXPECT_FALSE(result.response);
}

TEST_P(HttpClientContract, FollowsRedirectsToTheLastAnswer) {
  redirect("/middle", url("/end", Host::foreign));
  rig_->answer("/end", {.body = "found"});
  for (const int status : {301, 302, 303, 307, 308}) {
    const std::string start = "/start" + std::to_string(status);
    redirect(start, "/middle", status);
    const auto result = exchange(request(start));
    ASSERT_TRUE(result.response && !result.error) << status;
    EXPECT_EQ(result.response->url.text(), url("/end", Host::foreign));
    EXPECT_EQ(result.response->body, "found");
  }
}

TEST_P(HttpClientContract, LeavesRedirectsAloneWhenToldTo) {
  redirect("/start", "/end");
  auto sent = request("/start");
  sent.followsRedirects = false;
  const auto result = exchange(sent);
  ASSERT_TRUE(result.response && !result.error);
  EXPECT_EQ(result.response->status, 302);
  EXPECT_EQ(rig_->received().size(), 1U);
}

TEST_P(HttpClientContract, TakesARedirectWithoutTargetForAnAnswer) {
  rig_->answer("/start", {.status = 302, .body = "nowhere"});
  const auto result = exchange(request("/start"));
  ASSERT_TRUE(result.response && !result.error);
  EXPECT_EQ(result.response->body, "nowhere");
}

TEST_P(HttpClientContract, EndsRedirectsThatLeadNowhere) {
  redirect("/loop", "/loop");
  EXPECT_EQ(codeOf(exchange(request("/loop"))), TransportError::tooManyRedirects);
  EXPECT_EQ(rig_->received().size(), 1U + HttpClientRig::redirectLimit);
  redirect("/leave", "mraid://close");
  EXPECT_EQ(codeOf(exchange(request("/leave"))), TransportError::unsupportedUrl);
}

TEST_P(HttpClientContract, StoresAndAttachesCookiesOnEveryHop) {
  rig_->answer("/start",
               {.status = 302, .headers = {{"Location", "/next"}, {"Set-Cookie", "a=1"}}});
  redirect("/next", url("/end", Host::foreign));
  rig_->answer("/end", {.headers = {{"Set-Cookie", "b=2"}}});
  exchange(request("/start"));
  EXPECT_THAT(receivedHeader("Cookie"),
              ElementsAre(std::nullopt, Optional(Eq("a=1")), std::nullopt));
  EXPECT_EQ(cookieHeader(rig_->cookies().cookiesFor(request("/").url)), "a=1");
  const auto foreign = Url::parse(url("/", Host::foreign));
  EXPECT_EQ(cookieHeader(rig_->cookies().cookiesFor(foreign)), "b=2");
}

// What many ad servers do before they answer.
TEST_P(HttpClientContract, PassesACookieCheckByRedirectWithExtraCookiesKeptApart) {
  rig_->answer("/seed", {.headers = {{"Set-Cookie", "old=1"}}});
  exchange(request("/seed"));
  rig_->answer("/check",
               {.status = 302, .headers = {{"Location", "/checked"}, {"Set-Cookie", "new=2"}}});
  redirect("/checked", url("/end", Host::foreign));
  rig_->answer("/end", {.body = "ad"});
  auto sent = request("/check");
  sent.extraCookies = {{.name = "own", .value = "3", .domain = std::string{sent.url.host()}}};
  EXPECT_EQ(exchange(sent).response->body, "ad");
  EXPECT_THAT(receivedHeader("Cookie"),
              ElementsAre(std::nullopt, Optional(Eq("old=1; own=3")),
                          Optional(testing::AnyOf("old=1; new=2; own=3", "new=2; old=1; own=3")),
                          std::nullopt));
}

TEST_P(HttpClientContract, SendsNoStoredCookieWhenOnlyItsOwnAreAllowed) {
  rig_->answer("/ad", {.headers = {{"Set-Cookie", "stored=1"}}});
  auto sent = request("/ad");
  sent.cookies = CookieHandling::onlyOwnHeader;
  exchange(sent);
  exchange(sent);
  exchange(request("/ad"));
  EXPECT_THAT(receivedHeader("Cookie"),
              ElementsAre(std::nullopt, std::nullopt, Optional(Eq("stored=1"))));
}

TEST_P(HttpClientContract, BoundsTheBody) {
  rig_->answer("/ad", {.body = "0123456789"});
  auto sent = request("/ad");
  sent.maximumBodyBytes = 9;
  const auto result = exchange(sent);
  EXPECT_EQ(codeOf(result), TransportError::bodyTooLarge);
  ASSERT_TRUE(result.response);
  EXPECT_EQ(result.response->status, 200);
  EXPECT_EQ(result.response->body, "");
  sent.maximumBodyBytes = 10;
  EXPECT_FALSE(exchange(sent).error);
}

TEST_P(HttpClientContract, GivesUpOnAServerThatStaysSilent) {
  rig_->neverAnswer("/ad");
  auto idle = request("/ad");
  idle.idleTimeout = Seconds{0.2};
  EXPECT_EQ(codeOf(exchange(idle)), TransportError::timedOut);
  auto deadline = request("/ad");
  deadline.deadline = Seconds{0.2};
  EXPECT_EQ(codeOf(exchange(deadline)), TransportError::timedOut);
}

TEST_P(HttpClientContract, CancelsOnceAndOnlyWhatIsUnderWay) {
  rig_->neverAnswer("/ad");
  std::vector<std::optional<TransportError>> outcomes;
  const auto note = [&](const HttpResult& result) { outcomes.push_back(codeOf(result)); };
  const auto exchange = rig_->client().send(request("/ad"), note);
  exchange->cancel();
  exchange->cancel();
  EXPECT_TRUE(outcomes.empty());  // never from inside the cancelling code
  rig_->runUntil([&] { return !outcomes.empty(); });
  rig_->answer("/other", {});
  const auto finished = rig_->client().send(request("/other"), note);
  rig_->runUntil([&] { return outcomes.size() > 1; });
  finished->cancel();
  bool later = false;
  rig_->runLoop().post([&] { later = true; });
  rig_->runUntil([&] { return later; });
  EXPECT_THAT(outcomes, ElementsAre(Optional(TransportError::cancelled), std::nullopt));
}

INSTANTIATE_TEST_SUITE_P(Platforms, HttpClientContract,
                         testing::Values(RigMaker{"Headless", make<HeadlessHttpRig>},
                                         RigMaker{"Gtk", make<GtkHttpRig>}),
                         [](const auto& instance) { return instance.param.name; });

}  // namespace
}  // namespace tavo::test
