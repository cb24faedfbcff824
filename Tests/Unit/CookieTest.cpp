#include "Communicator/Cookie/XCookieManager.h"
#include "Rules/HttpHops.h"
#include "Unit/TransportFixture.h"

namespace tavo::test {
namespace {

constexpr auto description =
    "DAPROPS=sdevicePixelRatio:2|sdeviceAspectRatio:2/3|sjs.deviceOrientation:1";

Cookie cookie(std::string name, std::string value, std::string domain = "ads.test") {
  Cookie made;
  made.name = std::move(name);
  made.value = std::move(value);
  made.domain = std::move(domain);
  return made;
}

class Cookies : public test::TransportTest {
 protected:
  void store(const std::string& name, const std::string& value) {
    platform_.cookies->store(cookie(name, value), url_);
  }

  HttpRequest attached(std::string_view domain, bool coppa = false) {
    const auto slot = std::make_shared<XAdSlotConfiguration>();
    slot->COPPAPermissions = coppa;
    HttpRequest request;
    request.url = url_;
    request.setHeader("User-Agent", "x");
    XCookieManager{Runtime::current().platform(), slot}.attachCookiesToHeaderWithRequest(request,
                                                                                         domain);
    return request;
  }

  // The header that leaves for the request's own URL.
  [[nodiscard]] static std::string header(const HttpRequest& request, const CookieStore& store) {
    const auto sent = HttpHops{request, 0}.request(store, Date{});
    const auto* const text = sent ? sent->header("Cookie") : nullptr;
    return text == nullptr ? "none" : *text;
  }

  const Url url_ = Url::parse("http://ads.test/path");
};

TEST_F(Cookies, AttachesTheStoredOnesAndTheDescription) {
  store("a", "1");
  store("kqd", "2");
  const auto request = attached("ads.test");
  EXPECT_EQ(header(request, *platform_.cookies), std::string{"a=1; kqd=2; "} + description);
  EXPECT_EQ(*request.header("User-Agent"), "x");
  EXPECT_EQ(request.cookies, CookieHandling::attachStored);
}

TEST_F(Cookies, SendsOnlyTheAdServersOwnUnderCoppa) {
  for (const auto* name : {"a", "kqd_session", "KQD", "kq", "xkqd"}) store(name, "1");
  const auto request = attached("ads.test", true);
  EXPECT_EQ(header(request, *platform_.cookies),
            std::string{"kqd_session=1; KQD=1; "} + description);
  EXPECT_EQ(request.cookies, CookieHandling::onlyOwnHeader);
}

TEST_F(Cookies, KeepsTheCoppaFilterOnTheWireAcrossRedirects) {
  store("tracker", "1");
  platform_.cookies->store(cookie("foreign", "1", "other.test"), Url::parse("http://other.test/"));
  platform_.http->answer(url_.text(),
                         {.status = 302, .headers = {{"Location", "http://other.test/"}}});
  platform_.http->answer("http://other.test/", {.body = "x"});
  platform_.http->send(attached("ads.test", true), [](const HttpResult&) {});
  platform_.runLoop->runPending();
  ASSERT_EQ(platform_.http->requests().size(), 2U);
  EXPECT_EQ(*platform_.http->requests()[0].header("Cookie"), description);
  EXPECT_EQ(platform_.http->requests()[1].header("Cookie"), nullptr);
}

TEST_F(Cookies, AttachesNothingWithoutADomainOrAUrl) {
  store("a", "1");
  EXPECT_EQ(header(attached(""), *platform_.cookies), "a=1");
  EXPECT_EQ(attached("", true).cookies, CookieHandling::onlyOwnHeader);
  HttpRequest nowhere;
  XCookieManager{runtime_.platform()}.attachCookiesToHeaderWithRequest(nowhere, "ads.test");
  EXPECT_EQ(nowhere.header("Cookie"), nullptr);
}

// A store that hands out whatever a test puts in.
class LooseStore : public headless::HeadlessCookieStore {
 public:
  using HeadlessCookieStore::HeadlessCookieStore;
  [[nodiscard]] std::vector<Cookie> cookiesFor(const Url& /*url*/) const override { return held; }
  std::vector<Cookie> held;
};

TEST_F(Cookies, NeverBecomeASecondHeaderNorAnEndlessOne) {
  const auto loose = std::make_shared<LooseStore>(platform_.runLoop);
  loose->held.push_back(cookie("evil", "1\r\nHost: other.test"));
  loose->held.push_back(cookie("e\x01vil", "1"));
  for (int i = 0; i < 10'000; ++i) {
    loose->held.push_back(cookie("n" + std::to_string(i), std::string(100, 'v')));
  }
  Platform platform = runtime_.platform();
  platform.cookies = loose;
  for (const bool coppa : {false, true}) {
    const auto slot = std::make_shared<XAdSlotConfiguration>();
    slot->COPPAPermissions = coppa;
    for (auto& one : loose->held) one.name = (coppa ? "kqd" : "") + one.name;
    HttpRequest request{.url = url_};
    XCookieManager{platform, slot}.attachCookiesToHeaderWithRequest(request, "ads.test");
    const std::string sent = header(request, *loose);
    EXPECT_THAT(sent, Not(HasSubstr("vil")));
    EXPECT_TRUE(sent.starts_with(coppa ? "kqdn0=vvv" : "n0=vvv"));
    EXPECT_TRUE(sent.ends_with(description));
    EXPECT_LT(sent.size(), 65U * 1024U);
  }
}

TEST_F(Cookies, StoresThoseOfAnAnswerOverHttpOnly) {
  HttpResponse response{url_, 200, {{"Set-Cookie", "a=1"}, {"set-cookie", "b=2"}}, {}, {}};
  XCookieManager{runtime_.platform()}.persistCookies(nullptr);
  XCookieManager{runtime_.platform()}.persistCookies(&response);
  EXPECT_EQ(cookieHeader(platform_.cookies->cookiesFor(url_)), "a=1; b=2");
  EXPECT_EQ(platform_.log->messages(), std::vector<std::string>{"\n\nPersisting Cookies"});

  response.url = Url::parse("file:///tmp/x");
  response.headers = {{"Set-Cookie", "c=3"}};
  XCookieManager{runtime_.platform()}.persistCookies(&response);
  EXPECT_TRUE(platform_.cookies->cookiesFor(response.url).empty());
}

TEST_F(Cookies, DescribeTheScreen) {
  const XCookieManager manager{runtime_.platform()};
  const auto ratio = [&](std::optional<double> scale) {
    platform_.screen->factor = scale;
    return manager.getDevicePixelRatio();
  };
  EXPECT_EQ(ratio(2), "2");
  EXPECT_EQ(ratio(3), "3");
  EXPECT_EQ(ratio(1.5), "1");
  EXPECT_EQ(ratio(1.9999999), "2");
  EXPECT_EQ(ratio(std::nullopt), "2");

  platform_.screen->rect = {0, 0, 320, 568};
  const auto properties = manager.DAPROPSCookieWithDomainName("ads.test");
  EXPECT_EQ(properties->value,
            "sdevicePixelRatio:2|sdeviceAspectRatio:40/71|sjs.deviceOrientation:1");
  EXPECT_EQ(properties->domain, "ads.test");
  EXPECT_EQ(properties->path, "/");
}

TEST_F(Cookies, ReduceTheAspectRatio) {
  using Row = std::tuple<double, double, const char*>;
  constexpr Row rows[] = {{320, 480, "2/3"},     {768, 1024, "3/4"}, {375, 667, "375/667"},
                          {1, 480, "1/480"},     {0, 0, "0/0"},      {-4, 8, "0/8"},
                          {320.9, 480.9, "2/3"}, {2, 4, "1/2"},      {3, 9, "3/9"}};
  for (const auto& [width, height, ratio] : rows) {
    EXPECT_EQ(XCookieManager{runtime_.platform()}.getFractionsWithWidth(width, height), ratio);
  }
}

TEST_F(Cookies, QuirkAspectRatioOfASquareIsNotFullyReduced) {
  EXPECT_EQ(XCookieManager{runtime_.platform()}.getFractionsWithWidth(320, 320), "2/2");
}

}  // namespace
}  // namespace tavo::test
