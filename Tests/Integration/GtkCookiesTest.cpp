// The cookie store on a real file.

#include <gmock/gmock.h>

#include <fstream>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "Gtk/Http/GtkCookieStore.h"
#include "Support/GtkLoopTest.h"

namespace tavo::test {
namespace {

using testing::ElementsAre;

class GtkCookies : public GtkLoopTest {
 protected:
  [[nodiscard]] std::shared_ptr<gtk::GtkCookieStore> open() const {
    return std::make_shared<gtk::GtkCookieStore>(runLoop_, folder_.path("a/b/cookies.sqlite"));
  }
  static Cookie cookie(std::string name, std::string value, std::string domain) {
    Cookie made;
    made.name = std::move(name);
    made.value = std::move(value);
    made.domain = std::move(domain);
    return made;
  }
  static void set(gtk::GtkCookieStore& store, const std::string& url, const std::string& header) {
    store.storeFromHeaders({{"Set-Cookie", header}}, Url::parse(url));
  }
  static std::string sent(const gtk::GtkCookieStore& store, const std::string& url) {
    return cookieHeader(store.cookiesFor(Url::parse(url)));
  }
};

TEST_F(GtkCookies, SurviveARestartUnlessTheyEndWithTheProcess) {
  {
    const auto store = open();
    set(*store, "http://ads.example.com/", "lasting=1; Max-Age=1000; Domain=example.com");
    set(*store, "http://ads.example.com/", "passing=1");
    set(*store, "http://ads.example.com/", "distant=1; Expires=Fri, 31 Dec 9999 23:59:59 GMT");
    EXPECT_EQ(sent(*store, "http://ads.example.com/"), "passing=1; distant=1; lasting=1");
  }
  const auto store = open();
  EXPECT_EQ(sent(*store, "http://ads.example.com/"), "distant=1; lasting=1");
  set(*store, "http://ads.example.com/", "lasting=1; Max-Age=0; Domain=example.com");
  EXPECT_EQ(sent(*open(), "http://ads.example.com/"), "distant=1");
}

TEST_F(GtkCookies, MatchByHostPathAndSecurity) {
  struct Case {
    const char* url;
    const char* header;
    const char* asked;
    const char* sent;
  };
  const std::vector<Case> cases{
      {"http://a.example.com/", "n=1", "http://a.example.com/x", "n=1"},
      {"http://a.example.com/", "n=1", "http://A.EXAMPLE.com/", "n=1"},
      {"http://a.example.com/", "n=1", "http://a.example.com:8080/", "n=1"},
      {"http://a.example.com/", "n=1", "http://b.a.example.com/", ""},
      {"http://a.example.com/", "n=1; Domain=example.com", "http://b.example.com/", "n=1"},
      {"http://a.example.com/", "n=1; Domain=.example.com", "http://example.com/", "n=1"},
      {"http://a.example.com/", "n=1; Domain=example.com", "http://badexample.com/", ""},
      {"http://a.example.com/", "n=1; Domain=b.example.com", "http://b.example.com/", ""},
      {"http://a.example.com/", "n=1; Domain=com", "http://b.com/", ""},
      {"http://a.example.co.uk/", "n=1; Domain=co.uk", "http://b.co.uk/", ""},
      {"http://127.0.0.1:80/", "n=1", "http://127.0.0.1:81/", "n=1"},
      {"http://localhost/", "n=1", "http://localhost/", "n=1"},
      {"http://a.example.com/x/y", "n=1", "http://a.example.com/x/z", "n=1"},
      {"http://a.example.com/x/y", "n=1", "http://a.example.com/z", ""},
      {"http://a.example.com/", "n=1; Path=/x", "http://a.example.com/xy", ""},
      {"https://a.example.com/", "n=1; Secure", "https://a.example.com/", "n=1"},
      {"https://a.example.com/", "n=1; Secure", "http://a.example.com/", ""},
      {"http://a.example.com/", "n=1; Secure", "https://a.example.com/", ""},
      {"http://a.example.com/", "n=1; HttpOnly; SameSite=Strict", "http://a.example.com/", "n=1"},
      {"http://a.example.com/", "n=1; Max-Age=-1", "http://a.example.com/", ""},
      {"http://a.example.com/",
       "n=a\x01"
       "b",
       "http://a.example.com/", ""},
      {"http://a.example.com/", "n=a\x7f", "http://a.example.com/", ""},
      {"http://a.example.com/", "no pair", "http://a.example.com/", ""},
      {"http://a.example.com/", "=1", "http://a.example.com/", ""},
      {"mraid://a.example.com/", "n=1", "mraid://a.example.com/", ""},
  };
  int number = 0;
  for (const auto& rule : cases) {
    gtk::GtkCookieStore store{runLoop_, folder_.path(std::to_string(number++))};
    set(store, rule.url, rule.header);
    EXPECT_EQ(sent(store, rule.asked), rule.sent)
        << rule.url << " sets " << rule.header << ", asked for " << rule.asked;
  }
}

TEST_F(GtkCookies, StoreRecordsByTheSameRules) {
  const auto store = open();
  const Url url = Url::parse("http://ads.example.com/");
  const Cookie good = cookie("good", "1", "ads.example.com");
  store->store(good, url);
  EXPECT_THAT(store->cookiesFor(url), ElementsAre(good));
  Cookie secure = cookie("a", "1", "ads.example.com");
  secure.secure = true;
  for (const Cookie& bad :
       {cookie("", "1", "ads.example.com"), cookie("a", "1;b=2", "ads.example.com"),
        cookie("a\r\nX: ", "1", "ads.example.com"), cookie("a", "1", "other.com"),
        cookie("a", "1", ".com"), secure}) {
    store->store(bad, url);
  }
  EXPECT_THAT(store->all(), ElementsAre(good));
  Cookie expired = good;
  expired.expires = Date{};
  store->store(expired, url);
  EXPECT_TRUE(store->all().empty());
}

TEST_F(GtkCookies, DoNotLetAPlainAnswerReplaceASecureOne) {
  const auto store = open();
  set(*store, "https://a.example.com/", "n=good; Secure");
  set(*store, "http://a.example.com/", "n=evil");
  EXPECT_EQ(sent(*store, "https://a.example.com/"), "n=good");
}

TEST_F(GtkCookies, StayBoundedWhenTenThousandAreSet) {
  const auto store = open();
  const Url url = Url::parse("http://a.example.com/");
  std::vector<HttpHeader> one;
  one.reserve(10'000);
  for (int number = 0; number < 10'000; ++number) {
    one.push_back({"Set-Cookie", "n" + std::to_string(number) + "=1; Max-Age=1000"});
  }
  store->storeFromHeaders(one, url);
  EXPECT_EQ(store->all().size(), 50U);
  for (int number = 0; number < 1'000; ++number) {
    set(*store, url.text(), "m" + std::to_string(number) + "=1");
  }
  EXPECT_LE(store->cookiesFor(url).size(), 180U);
  EXPECT_THAT(sent(*store, url.text()), testing::HasSubstr("m999=1"));
  for (int number = 0; number < 3'500; ++number) {
    set(*store, "http://h" + std::to_string(number) + ".example.com/", "n=1");
  }
  EXPECT_LE(store->all().size(), 3'000U);
  EXPECT_EQ(sent(*store, "http://h3499.example.com/"), "n=1");
  set(*store, url.text(), "large=" + std::string(5'000, 'x'));
  EXPECT_THAT(sent(*store, url.text()), testing::Not(testing::HasSubstr("large")));
}

TEST_F(GtkCookies, TellTheirListenerOfEveryChangeButTheEnginesOwn) {
  const auto store = open();
  std::vector<std::string> changes;
  store->setListener([&](const gtk::CookieChange& change) {
    EXPECT_TRUE(runLoop_->isMainThread());
    const auto text = [](const std::optional<Cookie>& cookie) {
      return cookie ? cookie->name + "=" + cookie->value : std::string{"-"};
    };
    changes.push_back(text(change.previous) + " > " + text(change.current));
  });
  std::thread other{[&] { set(*store, "http://a.example.com/", "n=1"); }};
  other.join();
  set(*store, "http://a.example.com/", "n=2");
  set(*store, "http://a.example.com/", "n=2; Max-Age=0");
  const Cookie own = cookie("page", "1", "a.example.com");
  store->adopt(own);
  EXPECT_EQ(sent(*store, "http://a.example.com/"), "page=1");
  store->discard(own);
  EXPECT_EQ(sent(*store, "http://a.example.com/"), "");
  EXPECT_TRUE(changes.empty());  // never inside the change
  settle();
  EXPECT_THAT(changes, ElementsAre("- > n=1", "n=1 > n=2", "n=2 > -"));
  set(*store, "http://a.example.com/", "late=1");
  store->setListener({});
  settle();
  EXPECT_EQ(changes.size(), 3U);
}

TEST_F(GtkCookies, TakeWritesFromManyThreads) {
  const auto store = open();
  std::vector<std::thread> writers;
  writers.reserve(4);
  for (int writer = 0; writer < 4; ++writer) {
    writers.emplace_back([&, writer] {
      for (int number = 0; number < 25; ++number) {
        const std::string name = std::to_string(writer) + "x" + std::to_string(number);
        set(*store, "http://a.example.com/", name + "=1; Max-Age=1000");
        EXPECT_FALSE(sent(*store, "http://a.example.com/").empty());
      }
    });
  }
  for (auto& writer : writers) writer.join();
  EXPECT_EQ(store->all().size(), 100U);
  EXPECT_EQ(open()->all().size(), 100U);
}

TEST_F(GtkCookies, WorkWithoutTheirFile) {
  std::ofstream{folder_.path("file")} << "not a folder";
  gtk::GtkCookieStore store{runLoop_, folder_.path("file/cookies.sqlite")};
  set(store, "http://a.example.com/", "n=1; Max-Age=1000");
  EXPECT_EQ(sent(store, "http://a.example.com/"), "n=1");
}

}  // namespace
}  // namespace tavo::test
