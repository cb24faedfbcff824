// The rules that every platform follows, held against tables.

#include "Headless/HeadlessCookieStore.h"
#include "Headless/HeadlessRunLoop.h"
#include "Rules/CookieRules.h"
#include "Rules/HttpHops.h"
#include "Rules/OrientationRules.h"
#include "Rules/Playhead.h"
#include "Rules/Presence.h"
#include "Rules/SameSite.h"
#include "Rules/WayToTarget.h"
#include "Services/Application.h"
#include "Support/Testing.h"

namespace tavo::test {
namespace {

TEST(SameSiteTest, WhoMayActForWhom) {
  struct Row {
    const char* served;
    const char* base;
    bool may;
  };
  const Row rows[] = {
      {"http://ads.site.example/a", "http://ads.site.example/", true},
      {"http://ads.site.example/", "http://CDN.site.example.:81/x", true},
      {"https://ads.site.example/", "http://site.example/", true},
      {"http://ads.site.example/", "https://site.example/", false},
      {"http://ads.example/", "http://cdn.example/", false},
      {"http://ads.one.co.uk/", "http://cdn.one.co.uk/", true},
      {"http://one.co.uk/", "http://two.co.uk/", false},
      {"http://co.uk/", "http://one.co.uk/", false},
      {"http://127.0.0.1/", "http://126.0.0.1/", false},
      {"http://127.0.0.1/", "http://127.0.0.1:8/", true},
      {"http://localhost/", "http://localhost/", true},
      {"http://ads.example/", "file:///etc/passwd", false},
      {"", "http://ads.example/", false},
  };
  const auto isPublicSuffix = [](std::string_view domain) {
    return domain == "co.uk" || domain.find('.') == std::string_view::npos;
  };
  for (const auto& row : rows) {
    EXPECT_EQ(mayActFor(Url::parse(row.served), Url::parse(row.base), isPublicSuffix), row.may)
        << row.served << " for " << row.base;
  }
}

class HttpHopsTest : public testing::Test {
 protected:
  // What one header of the request says on each hop of an exchange that is sent from one URL to the
  // next; "-" where it is not sent at all, "!" where nothing can be sent.
  std::vector<std::string> sent(const HttpRequest& request, const std::vector<std::string>& targets,
                                std::string_view name, int status = 302) {
    HttpHops hops{request, static_cast<int>(targets.size())};
    std::vector<std::string> values;
    for (std::size_t hop = 0;; ++hop) {
      const auto leaving = hops.request(cookies_, Date{});
      const auto* const value = leaving ? leaving->header(name) : nullptr;
      values.push_back(!leaving ? "!" : value == nullptr ? "-" : *value);
      if (!leaving || hop == targets.size()) return values;
      const HttpResponse head{hops.url(), status, {{"Location", targets[hop]}}, {}, {}};
      EXPECT_EQ(hops.take(head, cookies_), HttpHops::Next::follow);
    }
  }

  static HttpRequest request(const std::string& url) { return {.url = Url::parse(url)}; }

  headless::HeadlessCookieStore cookies_{std::make_shared<headless::HeadlessRunLoop>()};
};

TEST_F(HttpHopsTest, EachHopCarriesTheCookiesOfItsOwnUrl) {
  cookies_.storeFromHeaders({{"Set-Cookie", "a=1"}}, Url::parse("http://a.example/"));
  cookies_.storeFromHeaders({{"Set-Cookie", "b=2"}}, Url::parse("http://b.example/"));
  auto plain = request("http://a.example/");
  const std::vector<std::string> way{"/x", "//b.example/", "http://c.example/"};
  EXPECT_THAT(sent(plain, way, "Cookie"), ElementsAre("a=1", "a=1", "b=2", "-"));
  plain.extraCookies = {{.name = "own", .value = "3", .domain = "a.example"}};
  plain.setHeader("Cookie", "before=1");
  EXPECT_THAT(sent(plain, way, "Cookie"), ElementsAre("a=1; own=3", "a=1; own=3", "b=2", "-"));
  plain.cookies = CookieHandling::onlyOwnHeader;
  plain.setHeader("cookie", "chosen=1");
  EXPECT_THAT(sent(plain, way, "Cookie"), ElementsAre("chosen=1", "chosen=1", "-", "-"));
}

TEST_F(HttpHopsTest, TheCookiesOfOneHostMakeNoEndlessHeader) {
  const Url url = Url::parse("http://a.example/");
  for (int number = 0; number < 100; ++number) {
    cookies_.storeFromHeaders(
        {{"Set-Cookie", "n" + std::to_string(number) + "=" + std::string(4'000, 'x')}}, url);
  }
  auto plain = request(url.text());
  plain.extraCookies = {{.name = "own", .value = "3", .domain = "a.example"}};
  const std::string header = sent(plain, {}, "Cookie")[0];
  EXPECT_LT(header.size(), 64U * 1024);
  EXPECT_TRUE(header.ends_with("; own=3"));
}

TEST_F(HttpHopsTest, ACookieThatAHopSetsIsThereForTheNext) {
  HttpHops hops{request("http://a.example/"), 1};
  const HttpResponse check{
      hops.url(), 302, {{"Location", "http://a.example/"}, {"Set-Cookie", "seen=1"}}, {}, {}};
  EXPECT_EQ(hops.take(check, cookies_), HttpHops::Next::follow);
  EXPECT_EQ(*hops.request(cookies_, Date{})->header("Cookie"), "seen=1");
  EXPECT_EQ(hops.take(check, cookies_), HttpHops::Next::giveUp);
}

TEST_F(HttpHopsTest, SecretsStayWithTheirHostAndOutOfPlainText) {
  auto secret = request("https://a.example/");
  secret.setHeader("Authorization", "x");
  EXPECT_THAT(sent(secret, {"/y", "https://A.EXAMPLE/", "http://a.example/", "https://b.example"},
                   "Authorization"),
              ElementsAre("x", "x", "x", "-", "-"));
  secret.setHeader("X-Split", "a\r\nX-Evil: 1");
  EXPECT_THAT(sent(secret, {}, "X-Split"), ElementsAre("-"));
}

TEST_F(HttpHopsTest, NothingIsSentToWhatIsNoServer) {
  for (const char* const target :
       {"mraid://close", "file:///etc/passwd", "http:/.//9", "http:///x", "http://.a.example/",
        "http://a%0d%0aX:1/", "http://a%20b/", ""}) {
    EXPECT_THAT(sent(request("http://a.example/"), {target}, "Cookie"), ElementsAre("-", "!"))
        << target;
  }
}

TEST(HttpRules, ARedirectRepeatsOrDropsTheMethodAndWhatBelongsToIt) {
  struct Case {
    const char* method;
    int status;
    const char* then;
  };
  for (const Case& rule :
       {Case{"POST", 301, "GET"}, Case{"POST", 302, "GET"}, Case{"POST", 303, "GET"},
        Case{"POST", 307, "POST"}, Case{"POST", 308, "POST"}, Case{"PUT", 302, "PUT"},
        Case{"PUT", 303, "GET"}, Case{"HEAD", 303, "HEAD"}, Case{"GET", 303, "GET"}}) {
    HttpRequest request{.method = rule.method,
                        .headers = {{"content-type", "text/plain"}, {"X-Kept", "1"}},
                        .body = "a=1"};
    applyRedirect(request, rule.status);
    EXPECT_EQ(request.method, rule.then) << rule.method << ' ' << rule.status;
    const bool keepsBody = request.method == rule.method;
    EXPECT_EQ(request.body, keepsBody ? "a=1" : "");
    EXPECT_EQ(request.headers.size(), keepsBody ? 2U : 1U);
  }
  for (const int status : {200, 300, 304, 305, 306, 309, 404}) EXPECT_FALSE(isRedirect(status));
}

TEST(HttpRules, TheTypeOfAnAnswerHasNoParametersAndNoCapitals) {
  EXPECT_EQ(mimeTypeOf(" Text/HTML ; charset=UTF-8"), "text/html");
  EXPECT_EQ(mimeTypeOf(""), "");
}

TEST(CookieRules, DatesAreReadInEveryFormThatServersWrite) {
  using namespace std::chrono;
  const Date expected = sys_days{1994y / November / 6} + 8h + 49min + 37s;
  for (const char* const text :
       {"Sun, 06 Nov 1994 08:49:37 GMT", "Sunday, 06-Nov-94 08:49:37 GMT",
        "Sun Nov  6 08:49:37 1994", "6 november 1994 8:49:37", "08:49:37;06/nov/94"}) {
    EXPECT_EQ(readCookieDate(text), expected) << text;
  }
  for (const char* const text :
       {"", "never", "06 Nov 1994", "Nov 1994 08:49:37", "31 Feb 1994 08:49:37",
        "06 Nov 1994 24:00:00", "06 Nov 1600 08:49:37", "06 Nov 19940 08:49:37",
        "06 Abc 1994 08:49:37"}) {
    EXPECT_EQ(readCookieDate(text), std::nullopt) << text;
  }
  EXPECT_GT(readCookieDate("31 Dec 9999 23:59:59"), Date{} + hours{24 * 365 * 200});
}

TEST(CookieRules, ALifeEndsWhateverTheClockDoes) {
  Cookie cookie{.name = "n", .value = "1", .domain = "a.example"};
  const Date now = Date{} + std::chrono::hours{1'000'000};
  cookie.expires = Date::max();
  boundLife(cookie, now, Limits{});
  EXPECT_EQ(*cookie.expires, now + std::chrono::hours{400 * 24});
  EXPECT_FALSE(hasExpired(cookie, now));
  EXPECT_TRUE(hasExpired(cookie, *cookie.expires));
  EXPECT_FALSE(hasExpired(cookie, Date::min()));
}

TEST(PlayheadTest, NoVideoPlaysFasterThanTheTimeThatHasPassed) {
  Playhead head;
  head.prepared(30);
  head.resumed(Seconds{100});
  EXPECT_TRUE(head.moved(0.5, Seconds{100.5}));
  EXPECT_FALSE(head.moved(0.5, Seconds{101}));
  // Half of the data has come; the framework claims the end.
  EXPECT_FALSE(head.ended(30, true, Seconds{115}));
  head.restarted(Seconds{200});
  EXPECT_FALSE(head.ended(30, false, Seconds{230})) << "a sound is no video";
  EXPECT_TRUE(head.ended(30, true, Seconds{230}));
  EXPECT_TRUE(head.isAtEnd());
  EXPECT_EQ(head.time(0), 30);
}

TEST(PlayheadTest, WhileItSeeksItStandsWhereItGoes) {
  Playhead head;
  head.startAt(-3);
  EXPECT_EQ(head.time(std::nullopt), 0);
  head.startAt(3);
  EXPECT_EQ(head.time(std::nullopt), 3);
  head.prepared(30);
  head.seekTo(20);
  EXPECT_EQ(head.time(1.5), 20);
  head.sought(19.8, Seconds{1});
  EXPECT_EQ(head.time(19.9), 19.9);
  EXPECT_TRUE(head.ended(30, true, Seconds{11}));
  head.seekTo(5);
  EXPECT_FALSE(head.isAtEnd()) << "a seek leads away from the end";
}

TEST(OrientationRules, OneOrientationStandsInEveryWindow) {
  constexpr auto portrait = InterfaceOrientation::portrait;
  constexpr auto landscape = InterfaceOrientation::landscapeLeft;
  struct Case {
    Size window;
    InterfaceOrientation orientation;
    Rect letterbox;
    bool turns;
  };
  const Case cases[] = {
      {{360, 640}, portrait, {0, 0, 360, 640}, false},
      {{640, 360}, landscape, {0, 0, 640, 360}, false},
      {{360, 640}, landscape, {0, 200, 360, 240}, true},  // no narrower than 2 : 3
      {{640, 360}, portrait, {200, 0, 240, 360}, true},
      {{780, 800}, landscape, {0, 20, 780, 760}, true},  // as the window, turned
      {{400, 400}, landscape, {0, 0, 400, 399}, false},  // a square counts as upright
      {{0, 0}, landscape, {0, 0, 0, 0}, false},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(testing::PrintToString(test.window.width));
    const Size& window = test.window;
    const Rect turned{0, 0, window.height, window.width};
    EXPECT_EQ(placeIn(window, test.orientation, OrientationFit::letterbox),
              (ControllerPlace{test.letterbox, false}));
    EXPECT_EQ(placeIn(window, test.orientation, OrientationFit::turn),
              (ControllerPlace{test.turns ? turned : test.letterbox, test.turns}));
  }
  for (const auto asked : {portrait, landscape}) {
    EXPECT_EQ(allowedOrientation(allOrientations, asked), asked);
    EXPECT_EQ(allowedOrientation(0, asked), asked);
    EXPECT_EQ(allowedOrientation(maskOf(portrait), asked), portrait);
    EXPECT_EQ(allowedOrientation(landscapeOrientations, asked), landscape);
  }
}

TEST(PresenceTest, TellsEachComingAndGoingOnce) {
  Presence presence;
  EXPECT_EQ(presence.windowsShown(false), std::nullopt) << "it is starting";
  EXPECT_EQ(presence.windowsShown(true), std::nullopt);
  EXPECT_EQ(presence.windowsShown(false), notifications::didEnterBackground);
  EXPECT_EQ(presence.windowsShown(false), std::nullopt);
  EXPECT_EQ(presence.windowsShown(true), notifications::willEnterForeground);
  EXPECT_EQ(presence.screenLocked(false), std::nullopt) << "it was not locked";
  EXPECT_EQ(presence.screenLocked(true), notifications::screenLocked);
  EXPECT_EQ(presence.screenLocked(true), std::nullopt);
  EXPECT_EQ(presence.screenLocked(false), notifications::willEnterForeground);
}

TEST(PresenceTest, BehindALockOrAMinimisedWindowNobodyComesBack) {
  Presence presence;
  (void)presence.windowsShown(true);
  (void)presence.screenLocked(true);
  EXPECT_EQ(presence.windowsShown(false), notifications::didEnterBackground);
  EXPECT_EQ(presence.screenLocked(false), std::nullopt);
  (void)presence.screenLocked(true);
  EXPECT_EQ(presence.windowsShown(true), std::nullopt);
  EXPECT_EQ(presence.screenLocked(false), notifications::willEnterForeground);
}

}  // namespace
}  // namespace tavo::test
