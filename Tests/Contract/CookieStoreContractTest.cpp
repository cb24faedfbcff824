#include <thread>

#include "Gtk/Http/GtkCookieStore.h"
#include "Gtk/Services/GtkRunLoop.h"
#include "Headless/HeadlessCookieStore.h"
#include "Headless/HeadlessRunLoop.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace tavo::test {
namespace {

struct HeadlessCookieRig {
  std::shared_ptr<headless::HeadlessRunLoop> loop = std::make_shared<headless::HeadlessRunLoop>();
  HeadlessCookieRig() { loop->setEpoch(std::chrono::system_clock::now()); }
  [[nodiscard]] std::unique_ptr<CookieStore> open() const {
    return std::make_unique<headless::HeadlessCookieStore>(loop);
  }
  void jump(std::chrono::hours by) const { loop->jumpCalendar(by); }
};

class JumpingLoop : public gtk::GtkRunLoop {
 public:
  [[nodiscard]] Date today() const override { return GtkRunLoop::today() + ahead; }
  std::chrono::hours ahead{0};
};

struct GtkCookieRig {
  TemporaryFolder folder;
  std::shared_ptr<JumpingLoop> loop = std::make_shared<JumpingLoop>();
  int number = 0;
  [[nodiscard]] std::unique_ptr<CookieStore> open() {
    return std::make_unique<gtk::GtkCookieStore>(loop, folder.path(std::to_string(number++)));
  }
  void jump(std::chrono::hours by) const { loop->ahead += by; }
};

template <typename Rig>
class CookieStoreContract : public testing::Test {
 protected:
  static void set(CookieStore& store, const std::string& url, const std::string& header) {
    store.storeFromHeaders({{"X-Other", "x=1"}, {"set-cookie", header}}, Url::parse(url));
  }
  static std::string sent(const CookieStore& store, const std::string& url) {
    return cookieHeader(store.cookiesFor(Url::parse(url)));
  }
  Rig rig_;
};

using Rigs = testing::Types<HeadlessCookieRig, GtkCookieRig>;
TYPED_TEST_SUITE(CookieStoreContract, Rigs);

struct Case {
  const char* url;
  const char* header;
  const char* asked;
  bool sent;
};

const std::vector<Case> cases{
    {"http://a.example.com/", "n=1", "http://a.example.com/x", true},
    {"http://a.example.com/", "n=1", "http://A.EXAMPLE.com/", true},
    {"http://a.example.com/", "n=1", "http://a.example.com:8080/", true},
    {"http://a.example.com/", "n=1", "http://b.a.example.com/", false},
    {"http://a.example.com/", "n=1; Domain=example.com", "http://b.example.com/", true},
    {"http://a.example.com/", "n=1; domain = .EXAMPLE.com", "http://example.com/", true},
    {"http://a.example.com/", "n=1; Domain=", "http://a.example.com/", true},
    {"http://a.example.com/", "n=1; Domain=example.com", "http://badexample.com/", false},
    {"http://a.example.com/", "n=1; Domain=b.example.com", "http://b.example.com/", false},
    {"http://a.example.com/", "n=1; Domain=com", "http://b.com/", false},
    {"http://127.0.0.1:80/", "n=1", "http://127.0.0.1:81/", true},
    {"http://127.0.0.1/", "n=1; Domain=0.0.1", "http://127.0.0.1/", false},
    {"http://localhost/", "n=1", "http://localhost/", true},
    {"http://a.example.com/x/y", "n=1", "http://a.example.com/x/z", true},
    {"http://a.example.com/x/y", "n=1", "http://a.example.com/x", true},
    {"http://a.example.com/x/y", "n=1", "http://a.example.com/z", false},
    {"http://a.example.com/", "n=1; Path=/x", "http://a.example.com/xy", false},
    {"http://a.example.com/", "n=1; Path=/x/", "http://a.example.com/x/y", true},
    {"http://a.example.com/x/y", "n=1; Path=relative", "http://a.example.com/x/z", true},
    {"http://a.example.com", "n=1", "http://a.example.com", true},
    {"https://a.example.com/", "n=1; Secure", "https://a.example.com/", true},
    {"https://a.example.com/", "n=1; Secure", "http://a.example.com/", false},
    {"http://a.example.com/", "n=1; Secure", "https://a.example.com/", false},
    {"http://a.example.com/", "n=1; HttpOnly; SameSite=Strict", "http://a.example.com/", true},
    {"mraid://a.example.com/", "n=1", "mraid://a.example.com/", false},
    {"http://a.example.com/", "n=1; Max-Age=60", "http://a.example.com/", true},
    {"http://a.example.com/", "n=1; Max-Age=-1", "http://a.example.com/", false},
    {"http://a.example.com/", "n=1; Max-Age=soon", "http://a.example.com/", true},
    {"http://a.example.com/", "n=1; Expires=Fri, 31 Dec 9999 23:59:59 GMT", "http://a.example.com/",
     true},
    {"http://a.example.com/", "n=1; Expires=Thu, 01-Jan-1970 00:00:01 GMT", "http://a.example.com/",
     false},
    {"http://a.example.com/", "n=1; Max-Age=60; Expires=Thu, 01 Jan 1970 00:00:01 GMT",
     "http://a.example.com/", true},
    {"http://a.example.com/", " n = 1 ;", "http://a.example.com/", true},
    {"http://a.example.com/", "n=1\x01", "http://a.example.com/", false},
    {"http://a.example.com/", "n=1\x7f", "http://a.example.com/", false},
    {"http://a.example.com/", "no pair", "http://a.example.com/", false},
    {"http://a.example.com/", "=1", "http://a.example.com/", false},
};

TYPED_TEST(CookieStoreContract, SendsACookieWhereItBelongs) {
  for (const auto& rule : cases) {
    const auto store = this->rig_.open();
    this->set(*store, rule.url, rule.header);
    EXPECT_EQ(this->sent(*store, rule.asked), rule.sent ? "n=1" : "")
        << rule.url << " sets " << rule.header << ", asked for " << rule.asked;
  }
}

TYPED_TEST(CookieStoreContract, KeepsThePromisesThatNamesMake) {
  using Promise = std::tuple<const char*, const char*, bool>;
  const std::vector<Promise> promises{
      {"https://a.example.com/", "__Secure-n=1; Secure; Domain=example.com", true},
      {"https://a.example.com/", "__Secure-n=1", false},
      {"http://a.example.com/", "__Secure-n=1", false},
      {"http://a.example.com/", "__secure-n=1", false},
      {"https://a.example.com/x/y", "__Host-n=1; Secure; Path=/", true},
      {"https://a.example.com/", "__Host-n=1; Path=/", false},
      {"http://a.example.com/", "__Host-n=1; Path=/", false},
      {"http://a.example.com/", "__Host-n=1; Secure; Path=/", false},
      {"https://a.example.com/", "__Host-n=1; Secure; Path=/; Domain=a.example.com", false},
      {"https://a.example.com/x/y", "__HOST-n=1; Secure", false},
  };
  for (const auto& [url, header, kept] : promises) {
    const auto store = this->rig_.open();
    this->set(*store, url, header);
    EXPECT_EQ(!this->sent(*store, "https://a.example.com/x/y").empty(), kept)
        << url << " sets " << header;
  }
}

TYPED_TEST(CookieStoreContract, StoresRecordsByTheSameRules) {
  const auto store = this->rig_.open();
  const Url url = Url::parse("http://ads.example.com/");
  const Cookie good{.name = "good", .value = "1", .domain = "ads.example.com"};
  store->store({.name = "good", .value = "1"}, url);  // no domain: the host that sets it
  for (const Cookie& bad : std::vector<Cookie>{
           {.name = "", .value = "1", .domain = "ads.example.com"},
           {.name = "a", .value = "1;b=2", .domain = "ads.example.com"},
           {.name = "a\r\nX: ", .value = "1", .domain = "ads.example.com"},
           {.name = "a", .value = std::string(5'000, 'x'), .domain = "ads.example.com"},
           {.name = "a", .value = "1", .domain = "other.com"},
           {.name = "a", .value = "1", .domain = ".com"},
           {.name = "a", .value = "1", .domain = "ads.example.com", .secure = true}}) {
    store->store(bad, url);
  }
  EXPECT_THAT(store->cookiesFor(url), ElementsAre(good));
  Cookie expired = good;
  expired.expires = Date{};
  store->store(expired, url);
  EXPECT_THAT(store->cookiesFor(url), ElementsAre());
}

TYPED_TEST(CookieStoreContract, ReplacesByNameDomainAndPathAndSendsTheLongestPathFirst) {
  const auto store = this->rig_.open();
  const std::string url = "http://a.example.com/x/y";
  this->set(*store, url, "n=1; Path=/");
  this->set(*store, url, "n=2; Path=/x");
  this->set(*store, url, "n=3; Path=/");
  EXPECT_EQ(this->sent(*store, url), "n=2; n=3");
  this->set(*store, url, "n=; Path=/x; Max-Age=0");
  EXPECT_EQ(this->sent(*store, url), "n=3");
}

TYPED_TEST(CookieStoreContract, AClockThatWasAheadForAWhileLosesNothing) {
  const auto store = this->rig_.open();
  const std::string url = "http://a.example.com/";
  this->set(*store, url, "n=1; Max-Age=600");
  this->rig_.jump(std::chrono::hours{1});
  EXPECT_EQ(this->sent(*store, url), "");
  this->rig_.jump(std::chrono::hours{-1});
  EXPECT_EQ(this->sent(*store, url), "n=1");
}

TYPED_TEST(CookieStoreContract, LetsNoPlainAnswerReplaceASecureCookie) {
  const auto store = this->rig_.open();
  this->set(*store, "https://a.example.com/", "n=good; Secure");
  this->set(*store, "http://a.example.com/", "n=evil");
  this->set(*store, "http://a.example.com/", "n=evil; Domain=example.com");
  EXPECT_EQ(this->sent(*store, "https://a.example.com/"), "n=good");
}

TYPED_TEST(CookieStoreContract, BoundsWhatOneAnswerSets) {
  const auto store = this->rig_.open();
  const Url url = Url::parse("http://a.example.com/");
  std::vector<HttpHeader> headers;
  for (int number = 0; number < 10'000; ++number) {
    headers.push_back({"Set-Cookie", "n" + std::to_string(number) + "=1; Max-Age=100000000000"});
  }
  store->storeFromHeaders(headers, url);
  const auto cookies = store->cookiesFor(url);
  EXPECT_EQ(cookies.size(), Limits{}.cookiesPerAnswer);
  const auto latest = std::chrono::system_clock::now() + std::chrono::hours{400 * 24 + 1};
  for (const auto& cookie : cookies) EXPECT_LT(*cookie.expires, latest);
}

TYPED_TEST(CookieStoreContract, TakesWritesFromManyThreads) {
  const auto store = this->rig_.open();
  std::vector<std::thread> writers;
  for (int writer = 0; writer < 4; ++writer) {
    writers.emplace_back([&, writer] {
      for (int number = 0; number < 25; ++number) {
        this->set(*store, "http://a.example.com/",
                  std::to_string(writer) + "x" + std::to_string(number) + "=1; Max-Age=1000");
        EXPECT_FALSE(this->sent(*store, "http://a.example.com/").empty());
      }
    });
  }
  for (auto& writer : writers) writer.join();
  EXPECT_EQ(store->cookiesFor(Url::parse("http://a.example.com/")).size(), 100U);
}

}  // namespace
}  // namespace tavo::test
