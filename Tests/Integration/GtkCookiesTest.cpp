#include <gtk/gtk.h>

#include <fstream>
#include <thread>

#include <tavo/gtk/GtkPlatform.h>

#include "Gtk/Http/GtkCookieStore.h"
#include "Support/GtkLoopTest.h"

namespace tavo::test {
namespace {

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

TEST_F(GtkCookies, KnowTheSuffixesThatSitesShare) {
  const auto store = open();
  set(*store, "http://a.example.co.uk/", "n=1; Domain=co.uk");
  set(*store, "http://a.example.co.uk/", "m=1; Domain=example.co.uk");
  EXPECT_EQ(sent(*store, "http://a.example.co.uk/"), "m=1");
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
  EXPECT_THAT(sent(*store, url.text()), HasSubstr("m999=1"));
  for (int number = 0; number < 3'500; ++number) {
    set(*store, "http://h" + std::to_string(number) + ".example.com/", "n=1");
  }
  EXPECT_LE(store->all().size(), 3'000U);
  EXPECT_EQ(sent(*store, "http://h3499.example.com/"), "n=1");
  set(*store, url.text(), "large=" + std::string(5'000, 'x'));
  EXPECT_THAT(sent(*store, url.text()), Not(HasSubstr("large")));
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

TEST_F(GtkCookies, WorkWithoutTheirFile) {
  folder_.write("file", "not a folder");
  gtk::GtkCookieStore store{runLoop_, folder_.path("file/cookies.sqlite")};
  set(store, "http://a.example.com/", "n=1; Max-Age=1000");
  EXPECT_EQ(sent(store, "http://a.example.com/"), "n=1");
}

TEST_F(GtkCookies, OfAnApplicationLieInItsDataFolder) {
  ASSERT_TRUE(gtk_init_check());
  const Url url = Url::parse("http://a.example.com/");
  for (const bool isLater : {false, true}) {
    const Platform platform =
        gtk::makePlatform({.applicationId = "tavo-launch", .dataFolder = folder_.path("data")});
    EXPECT_EQ(cookieHeader(platform.cookies->cookiesFor(url)), isLater ? "n=1" : "");
    platform.cookies->storeFromHeaders({{"Set-Cookie", "n=1; Max-Age=1000"}}, url);
  }
}

}  // namespace
}  // namespace tavo::test
