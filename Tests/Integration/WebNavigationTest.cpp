// Where pages on the real engine go, what is asked before, and what is told after.

#include <gio/gio.h>

#include "Gtk/GPtr.h"
#include "Gtk/Scene/NativeView.h"
#include "Support/ScreenPointer.h"
#include "Support/WebPage.h"
#include "Values/Text.h"

namespace tavo::test {
namespace {

class WebNavigationTest : public WebPageTest {};

TEST_F(WebNavigationTest, TellsTheMainFrameFromOthers) {
  HostileServer server;
  server.on("/frame", html("frame"));
  server.on("/next", html("next"));
  server.on("/hop", Redirect{"/next"});
  struct Case {
    std::string script;
    std::string path;
    bool mainFrame;
    std::string done = "document.readyState === 'complete'";
  };
  const std::string inFrame = "f.contentDocument.body.textContent === 'next'";
  const std::vector<Case> cases{
      {"f = document.createElement('iframe'); f.src = '/frame'; document.body.append(f)", "/frame",
       false},
      {"f.src = '/next'", "/next", false, inFrame},
      {"f.contentDocument.body.innerHTML = '<iframe src=/frame></iframe>'", "/frame", false,
       "f.contentWindow[0].document.body.textContent === 'frame'"},
      {"location.href = '/frame'", "/frame", true},
      {"location.replace('/hop')", "/hop", true},
  };
  Page page;
  page.load("<html><body></body></html>", urlOf(server, "/"));
  std::vector<std::string> expected;
  for (const auto& one : cases) {
    page.client->navigations.clear();
    expected.push_back(one.path);
    if (one.path == "/hop") expected.emplace_back("/next");
    page.evaluate(one.script);
    ASSERT_TRUE(runUntil([&] {
      return !page.client->navigations.empty() && paths(server) == expected;
    })) << one.script;
    ASSERT_TRUE(runUntil([&] { return !page.view->isLoading(); }));
    EXPECT_TRUE(runUntil([&] { return page.evaluate(one.done) == "true"; })) << one.script;
    const auto& seen = page.client->navigations.front();
    EXPECT_EQ(seen.url, urlOf(server, one.path));
    EXPECT_EQ(seen.mainDocumentUrl == seen.url, one.mainFrame) << one.script;
  }
  EXPECT_EQ(page.client->navigations.back().url, urlOf(server, "/next"));
  EXPECT_EQ(page.client->navigations.back().mainDocumentUrl, urlOf(server, "/next"));
}

TEST_F(WebNavigationTest, AsksAboutLinksIntoNewWindowsAndShowsAllowedOnesInPlace) {
  HostileServer server;
  server.on("/next", html("next"));
  const std::string click = "document.links[0].click()";
  Page page;
  page.load("<html><body><a target=_blank href='/next'>x</a></body></html>", urlOf(server, "/"));
  page.client->allows = [](const Navigation&) { return false; };
  page.client->navigations.clear();
  page.evaluate(click);
  ASSERT_TRUE(runUntil([&] { return !page.client->navigations.empty(); }));
  EXPECT_EQ(page.client->navigations[0].type, NavigationType::linkClicked);
  EXPECT_EQ(page.client->navigations[0].url, urlOf(server, "/next"));
  EXPECT_THAT(paths(server), IsEmpty());

  page.client->allows = nullptr;
  page.client->navigations.clear();
  page.evaluate(click);
  ASSERT_TRUE(runUntil([&] { return page.client->count("finish") == 2; }));
  EXPECT_EQ(page.view->url(), urlOf(server, "/next"));
  EXPECT_EQ(page.client->navigations.size(), 1U);
}

TEST_F(WebNavigationTest, ATapIsSeenBeforeWhatThePageDoesWithIt) {
  ScreenPointer pointer;
  if (!pointer.works()) GTEST_SKIP() << "libXtst.so.6 is not installed";
  Page page{{}, {0, 0, 320, 200}};
  std::vector<std::string> order;
  const auto recognizer = std::make_shared<TapRecognizer>();
  recognizer->action = [&](TapRecognizer&) { order.emplace_back("tap"); };
  page.view->addTapRecognizer(recognizer);
  page.client->allows = [&](const Navigation& navigation) {
    if (navigation.url.isHttp()) order.emplace_back("navigation");
    return !navigation.url.isHttp();
  };
  page.load(
      "<html><body style='margin:0'><div style='height:200px' onmousemove=\"say('ready')\" "
      "onmousedown=\"say('down')\" onclick=\"location.href='http://ads.example/'\">x</div>"
      "<script>function say(t) { webkit.messageHandlers.mraid.postMessage('mraid://' + t) }"
      "</script></body></html>");
  page.evaluate("document.querySelector('div').click()");
  ASSERT_TRUE(runUntil([&] { return !order.empty(); }));
  EXPECT_THAT(order, ElementsAre("navigation")) << "a script's click is no tap";

  order.clear();
  auto window = std::make_unique<PageWindow>(page);
  // The window may take a while to be under the pointer.
  int step = 0;
  const auto said = [&](const char* what) {
    pointer.moveTo(100 + (++step % 20), 100);
    return std::count(page.client->commands.begin(), page.client->commands.end(), what) > 0;
  };
  ASSERT_TRUE(runUntil([&] { return said("mraid://ready"); }));
  pointer.press();
  ASSERT_TRUE(runUntil([&] { return said("mraid://down"); }));
  pointer.release();
  ASSERT_TRUE(runUntil([&] { return order.size() >= 2; }));
  EXPECT_THAT(order, ElementsAre("tap", "navigation"));
  window.reset();
  EXPECT_EQ(page.evaluate("innerWidth"), "320");
}

TEST_F(WebNavigationTest, CookiesOfPagesAndRequestsAreTheSame) {
  HostileServer server;
  auto setting = html("set");
  setting.headers.emplace_back("Set-Cookie", "page=1; Path=/; Max-Age=600");
  server.on("/set", setting);
  const Url url = urlOf(server, "/set");
  const auto stored = [&] { return cookieHeader(cookies()->cookiesFor(url)); };
  Page page;
  page.view->loadUrl(url);
  ASSERT_TRUE(runUntil([&] { return page.client->count("finish") == 1; }));
  ASSERT_TRUE(runUntil([&] { return stored() == "page=1"; })) << "a page's cookie";

  Cookie answer;
  answer.name = "answer";
  answer.value = "2";
  cookies()->store(answer, url);
  const auto seen = [&] { return page.evaluate("document.cookie"); };
  EXPECT_TRUE(runUntil([&] { return contains(seen(), "answer=2"); })) << "an answer's cookie";
  page.evaluate("document.cookie = 'script=3; path=/'");
  EXPECT_TRUE(runUntil([&] { return contains(stored(), "script=3"); })) << "a script's cookie";
  page.evaluate("document.cookie = 'page=; path=/; max-age=0'");
  EXPECT_TRUE(runUntil([&] { return !contains(stored(), "page="); })) << "a removed cookie";
  EXPECT_TRUE(contains(stored(), "answer=2"));
}

TEST_F(WebNavigationTest, APageThatNeverFinishesFailsInTime) {
  // Accepts connections and never answers.
  const auto silent = gtk::GPtr<GSocketListener>::adopt(g_socket_listener_new());
  const auto port = g_socket_listener_add_any_inet_port(silent.get(), nullptr, nullptr);
  Page page;
  page.view->loadHtml("<html><body><img src='http://127.0.0.1:" + std::to_string(port) +
                          "/x.png'>still here</body></html>",
                      noBase);
  ASSERT_TRUE(runUntil([&] { return page.client->events.size() >= 2; }));
  EXPECT_THAT(page.client->events, ElementsAre("start", "fail com.CorvaneTAVO.transport -1001"));
  EXPECT_FALSE(page.view->isLoading());
}

TEST_F(WebNavigationTest, ReportsAFailedConnectionOnceAndKeepsThePage) {
  Page page;
  page.load("<html><body>creative</body></html>");
  page.client->events.clear();
  const Url closed = Url::parse(HostileServer{}.url("/"));
  page.view->loadUrl(closed);
  ASSERT_TRUE(runUntil([&] { return page.client->events.size() >= 2; }));
  EXPECT_EQ(page.evaluate("document.body.textContent"), "creative");
  EXPECT_THAT(page.client->events, ElementsAre("start", "fail com.CorvaneTAVO.transport -1004"));
}

}  // namespace
}  // namespace tavo::test
