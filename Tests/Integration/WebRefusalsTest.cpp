// What pages on the real engine ask for and do not get.

#include "Support/WebPage.h"

namespace tavo::test {
namespace {

class WebRefusalsTest : public WebPageTest {};

TEST_F(WebRefusalsTest, AnswersTheQuestionsOfAPageWithoutAPerson) {
  Page page;
  page.load("<html><body></body></html>", Url::parse("http://127.0.0.1:9/"));
  EXPECT_EQ(page.evaluate("alert('a'); alert('b'); 'went on'"), "went on");
  EXPECT_EQ(page.evaluate("confirm('sure?')"), "false");
  EXPECT_EQ(page.evaluate("String(prompt('name?', 'x'))"), "null");
  EXPECT_EQ(page.evaluate("String(window.open('https://example.com/'))"), "null");
  EXPECT_EQ(page.evaluate("print(); 'went on'"), "went on");
  EXPECT_EQ(page.evaluate("typeof document.documentElement.requestFullscreen"), "undefined");
  page.evaluate(
      "got = 'waiting'; Notification.requestPermission().then((answer) => { got = answer })");
  EXPECT_TRUE(runUntil([&] { return page.evaluate("got") != "waiting"; }));
  EXPECT_EQ(page.evaluate("got"), "denied");
  EXPECT_THAT(page.client->events, ElementsAre("start", "finish"));
}

TEST_F(WebRefusalsTest, NeverShowsAFile) {
  Page page;
  page.load("<html><body>creative</body></html>");
  page.evaluate("location.href = 'file:///etc/passwd'");
  page.evaluate(
      "f = document.createElement('iframe'); f.src = 'file:///etc/passwd';"
      "document.body.append(f)");
  EXPECT_EQ(page.evaluate("document.body.textContent + String(f.contentDocument)"), "creativenull");
  page.view->loadUrl(Url::parse("file:///etc/passwd"));
  ASSERT_TRUE(runUntil([&] { return page.client->events.size() == 3; }));
  EXPECT_THAT(page.client->events, ElementsAre("start", "finish", "fail WebKitErrorDomain 101"));
  EXPECT_EQ(page.evaluate("location.href"), "about:blank");
}

TEST_F(WebRefusalsTest, SchemesWithoutAHandlerAreAskedAboutAndKeepThePage) {
  for (const bool allowed : {false, true}) {
    for (const char* target : {"tel:123", "foo:bar"}) {
      Page page;
      page.load("<html><body>creative</body></html>");
      page.client->navigations.clear();
      page.client->allows = [allowed](const Navigation&) { return allowed; };
      page.evaluate("location.href = '" + std::string{target} + "'");
      ASSERT_TRUE(runUntil([&] { return !page.client->navigations.empty(); })) << target;
      EXPECT_EQ(page.client->navigations[0].mainDocumentUrl, Url::parse(target));
      EXPECT_EQ(page.evaluate("document.body.textContent"), "creative");
      EXPECT_EQ(page.client->count("fail WebKitErrorDomain 101"), allowed ? 1 : 0);
      EXPECT_EQ(page.client->count("finish"), 1);
    }
  }
}

TEST_F(WebRefusalsTest, RefusesDownloads) {
  HostileServer server;
  server.on("/zip", PlainAnswer{.body = "PK", .contentType = "application/zip"});
  auto attachment = html("kept");
  attachment.headers.emplace_back("Content-Disposition", "attachment; filename=a.html");
  server.on("/attachment", attachment);
  for (const char* path : {"/zip", "/attachment"}) {
    Page page;
    page.load("<html><body>creative</body></html>", urlOf(server, "/"));
    page.evaluate("location.href = '" + server.url(path) + "'");
    ASSERT_TRUE(runUntil([&] { return page.client->count("fail WebKitErrorDomain 101") == 1; }))
        << path;
    EXPECT_EQ(page.evaluate("document.body.textContent"), "creative");
    page.evaluate(
        "var a = document.createElement('a'); a.href = 'data:application/zip,PK';"
        "a.download = 'x.zip'; document.body.appendChild(a); a.click()");
    EXPECT_EQ(page.evaluate("document.body.textContent"), "creative");
    EXPECT_EQ(page.client->count("finish"), 1);
  }
}

TEST_F(WebRefusalsTest, APageRefreshesItselfAFewTimesOnly) {
  HostileServer server;
  server.on("/again", html("<script>onload = () => setTimeout(() => {"
                           "location.reload(); setTimeout(() => { refused = 'yes' }, 100) })"
                           "</script>"));
  const auto allowed = static_cast<long>(Limits{}.pageRefreshes);
  Page page;
  page.view->loadUrl(urlOf(server, "/again"));
  ASSERT_TRUE(runUntil([&] { return page.client->count("finish") == 1 + allowed; }));
  // Each page that reloads loses its timer; the last one keeps it.
  EXPECT_TRUE(runUntil([&] { return page.evaluate("refused") == "yes"; }));
  EXPECT_EQ(paths(server).size(), static_cast<std::size_t>(1 + allowed));
  EXPECT_EQ(page.client->count("finish"), 1 + allowed);
}

}  // namespace
}  // namespace tavo::test
