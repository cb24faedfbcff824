// What the pages of ads keep and share, and what those that a person opens do.

#include <csignal>
#include <set>

#include "Support/WebPage.h"
#include "Support/WebProcesses.h"

namespace tavo::test {
namespace {

class WebSessionTest : public WebPageTest {
 protected:
  static constexpr WebViewOptions browser{.ownProcess = true, .kind = PageKind::browser};

  // Whether a sound may play that the page's own script starts; a script of ours would count as the
  // person's action.
  static std::string autoplay(Page& page, const Url& base) {
    page.load(R"html(<html><body><script>
      let silence = 'RIFF\x64\x1f\0\0WAVEfmt \x10\0\0\0\x01\0\x01\0\x40\x1f\0\0\x40\x1f\0\0\x01\0\x08\0' +
          'data\x40\x1f\0\0' + '\x80'.repeat(8000);
      let sound = new Audio('data:audio/wav;base64,' + btoa(silence));
      sound.play().catch(() => {});
      var allowed = !sound.paused;
    </script></body></html>)html",
              base);
    return page.evaluate("allowed");
  }

  HostileServer server_;
};

TEST_F(WebSessionTest, NothingOfACreativeRunsOnOrKeepsADatabase) {
  Page page;
  page.load("<html><body></body></html>", urlOf(server_, "/"));
  EXPECT_EQ(page.evaluate("['serviceWorker' in navigator, typeof indexedDB, typeof caches,"
                          " typeof SharedWorker, typeof openDatabase].join()"),
            "false,undefined,undefined,undefined,undefined");
}

TEST_F(WebSessionTest, WhatACreativeStoresEndsWithIt) {
  const int slots[2] = {};
  for (const auto* owner : {&slots[0], &slots[0], &slots[1]}) {
    Page page{{.owner = owner}};
    page.load("<html><body></body></html>", urlOf(server_, "/"));
    EXPECT_EQ(page.evaluate("localStorage.local + ' ' + sessionStorage.own"),
              "undefined undefined");
    EXPECT_EQ(page.evaluate("localStorage.local = 1; sessionStorage.own = 2;"
                            "localStorage.local + sessionStorage.own"),
              "12");
  }
}

TEST_F(WebSessionTest, APageThatOnlyCompletesItsAddressesActsForNobody) {
  const Url site = urlOf(server_, "/ads/");
  cookies()->storeFromHeaders({{"Set-Cookie", "secret=1; Path=/ads/"}}, site);
  Page page;
  page.load(
      "<html><head><base href='" + site.text() + "'></head><body><a href='a'></a></body></html>",
      {});
  EXPECT_EQ(page.evaluate("[self.origin, document.links[0].href,"
                          " (() => { try { return document.cookie; } catch { return ''; } })()]"
                          ".join()"),
            "null," + site.text() + "a,");
}

TEST_F(WebSessionTest, ABrowserTakesTheCookiesOfAdsOverAndGivesNoneBack) {
  const Url site = urlOf(server_, "/");
  Page ad;
  ad.load("<html><body></body></html>", site);
  ad.evaluate("document.cookie = 'ad=1'");
  ASSERT_TRUE(runUntil([&] { return cookies()->cookiesFor(site).size() == 1; }));

  Page shop{browser};
  shop.load("<html><body></body></html>", site);
  EXPECT_EQ(shop.evaluate("document.cookie"), "ad=1");
  shop.evaluate("document.cookie = 'person=1'; localStorage.person = 1");
  ad.evaluate("document.cookie = 'later=1'");
  ASSERT_TRUE(runUntil([&] { return cookies()->cookiesFor(site).size() == 2; }));
  EXPECT_EQ(ad.evaluate("document.cookie"), "ad=1; later=1");
  EXPECT_EQ(ad.evaluate("localStorage.person"), "");
  EXPECT_EQ(shop.evaluate("document.cookie"), "ad=1; person=1");
  EXPECT_EQ(shop.evaluate("typeof indexedDB"), "object");
}

TEST_F(WebSessionTest, CookiesAreHeardOfWhenTheNetworkProcessHasEnded) {
  const Url site = urlOf(server_, "/");
  cookies()->storeFromHeaders({{"Set-Cookie", "kept=1"}}, site);
  const auto names = [&] {
    std::set<std::string> all;
    for (const auto& cookie : cookies()->cookiesFor(site)) all.insert(cookie.name);
    return all;
  };
  Page page;
  page.load("<html><body></body></html>", site);
  for (const char* name : {"first", "second", "third"}) {
    ASSERT_TRUE(runUntil([&] {
      page.evaluate("document.cookie = '" + std::string{name} + "=1'");
      return names().contains(name);
    })) << name;
    EXPECT_TRUE(names().contains("kept"));
    for (const int id : descendants("WebKitNetworkPr")) kill(id, SIGKILL);
  }
  page.load("<html><body></body></html>", site);
  EXPECT_THAT(page.evaluate("document.cookie"), HasSubstr("kept=1"));
}

TEST_F(WebSessionTest, MediaOfACreativePlaysByItselfAndABrowsersWaitsForThePerson) {
  const Url site = urlOf(server_, "/");
  Page ad;
  ad.view->mediaPlaybackRequiresUserAction = false;
  EXPECT_EQ(autoplay(ad, site), "true");
  Page shop{browser};
  EXPECT_EQ(autoplay(shop, site), "false");
}

}  // namespace
}  // namespace tavo::test
