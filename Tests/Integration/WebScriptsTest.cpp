// Scripts on the real engine: evaluations, commands and what is injected.

#include "Support/WebPage.h"

namespace tavo::test {
namespace {

class WebScriptsTest : public WebPageTest {};

TEST_F(WebScriptsTest, LoadsDetachedAtTheSizeOfItsFrame) {
  Page page{{}, {10, 20, 300, 250}};
  page.load("<html><head><script>first = innerWidth + 'x' + innerHeight</script></head></html>");
  EXPECT_THAT(page.client->events, ElementsAre("start", "finish"));
  EXPECT_EQ(page.evaluate("first"), "300x250");
  page.view->setFrame({0, 0, 640, 480});
  EXPECT_EQ(page.evaluate("innerWidth + 'x' + innerHeight"), "640x480");
}

TEST_F(WebScriptsTest, EvaluatesInOrderAndGivesResultsAsText) {
  Page page;
  page.load("<html><body>hi</body></html>");
  std::vector<std::string> results;
  const std::vector<std::string> scripts{"1 + 1",      "'a' + 'b'",
                                         "undefined",  "null",
                                         "true",       "[1, 2]",
                                         "throw 'no'", "x = 5",
                                         "x * 2.5",    "({})",
                                         "'\\u00e4'",  "syntax error",
                                         "'second'",   "document.body.innerHTML"};
  for (const auto& script : scripts) {
    page.view->evaluate(script, [&](const std::string& result) { results.push_back(result); });
  }
  EXPECT_THAT(results, IsEmpty());
  EXPECT_TRUE(runUntil([&] { return results.size() == scripts.size(); }));
  EXPECT_THAT(results, ElementsAre("2", "ab", "", "", "true", "1,2", "", "5", "12.5",
                                   "[object Object]", "\xC3\xA4", "", "second", "hi"));
}

TEST_F(WebScriptsTest, PagesThatForbidFramesSendCommandsAsMessages) {
  Page page;
  page.load(R"html(<html><head>
    <meta http-equiv="Content-Security-Policy" content="frame-src 'none'">
    <script>
      function post(text) { webkit.messageHandlers.mraid.postMessage(text); }
      document.addEventListener('securitypolicyviolation', () => post('mraid://violation'));
      post('mraid://Open?url=a b"c'); post('https://example.com/'); post({}); post(7);
    </script></head><body><iframe src="mraid://lost"></iframe></body></html>)html");
  ASSERT_TRUE(runUntil([&] { return page.client->commands.size() >= 2; }));
  EXPECT_THAT(page.client->commands,
              ElementsAre("mraid://Open?url=a%20b%22c", "mraid://violation"));
}

TEST_F(WebScriptsTest, DocumentStartScriptRunsFirstWhateverTheBase) {
  HostileServer server;
  for (const Url& base : {noBase, urlOf(server, "/ads/"), Url::parse("file:///etc/")}) {
    Page page;
    page.view->addDocumentStartScript("window.order = ['start']");
    page.load(
        "<html><head><script>order.push('head')</script></head><body>"
        "<iframe srcdoc=\"<script>parent.order.push('frame ' + typeof order)</script>\"></iframe>"
        "</body></html>",
        base);
    EXPECT_EQ(page.evaluate("order.join()"), "start,head,frame undefined") << base.text();
    EXPECT_EQ(page.evaluate("document.baseURI"), base.isHttp() ? base.text() : "about:blank");
  }
}

TEST_F(WebScriptsTest, WatchedPagesTellTheirConsoleErrorsAndFetches) {
  HostileServer server;
  server.on("/pixel.png", PlainAnswer{.status = 404, .body = "no", .contentType = "image/png"});
  std::vector<std::string> seen;
  const auto observer = std::make_shared<InspectionObserver>(
      InspectionObserver{.inspectionDidSee = [&](const InspectionEvent& event) {
        seen.push_back(std::string{nameOf(event.kind)} + ": " + event.text + " @" +
                       std::string{event.field("line")} + std::string{event.field("status")});
      }});
  Page unwatched;
  inspection()->observer.set(observer);
  inspection()->pageProbe = "tell('probed ' + (window === top));";
  Page page;
  page.load(
      "<html><head><script>console.warn('a', {b: 1});\n\nfail()</script></head>"
      "<body><img src='/pixel.png'></body></html>",
      urlOf(server, "/ad/"));
  unwatched.load("<script>console.log('unseen')</script>");
  inspection()->pageProbe.clear();
  EXPECT_TRUE(runUntil([&] { return seen.size() >= 6; }));
  EXPECT_THAT(seen, testing::UnorderedElementsAre(
                        "probe: probed true @", "console: a {\"b\":1} @1",
                        "scriptError: ReferenceError: Can't find variable: fail @3",
                        "scriptError: img did not load: " + server.url("/pixel.png") + " @",
                        "resource: GET " + server.url("/pixel.png") + " -> 404 @404",
                        testing::HasSubstr("resource: GET " + server.url("/ad/"))));
}

}  // namespace
}  // namespace tavo::test
