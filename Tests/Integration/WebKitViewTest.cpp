// The web module on the real engine: what pages can do to a host, and what they cannot.

#include <gio/gio.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Gtk/GPtr.h"
#include "Gtk/Http/GtkCookieStore.h"
#include "Gtk/Modules/GtkWebModule.h"
#include "Gtk/Scene/NativeView.h"
#include "Gtk/Services/GtkRunLoop.h"
#include "Scene/WebView.h"
#include "Support/HostileServer.h"
#include "Support/ScreenPointer.h"
#include "Support/TemporaryFolder.h"
#include "Values/Text.h"

namespace tavo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using namespace std::chrono_literals;

const Url noBase;

// Turns the host's loop until `done`, or for far longer than anything here takes.
bool runUntil(const std::function<bool()>& done) {
  const auto deadline = std::chrono::steady_clock::now() + 30s;
  // Wakes the loop so that the deadline is looked at.
  const guint waker = g_timeout_add(
      50, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
  while (!done() && std::chrono::steady_clock::now() < deadline) {
    g_main_context_iteration(nullptr, TRUE);
  }
  g_source_remove(waker);
  return done();
}

class Defaults : public UserDefaults {
 public:
  [[nodiscard]] std::optional<std::string> value(std::string_view key) const override {
    const auto found = values.find(key);
    return found == values.end() ? std::nullopt : std::optional{found->second};
  }
  void setValue(std::string_view key, std::optional<std::string> value) override {
    values.erase(std::string{key});
    if (value) values.emplace(key, *value);
  }
  void synchronize() override {}

  std::map<std::string, std::string, std::less<>> values;
};

class Messages : public Log {
 public:
  void write(std::string_view message) override { texts.emplace_back(message); }
  std::vector<std::string> texts;
};

// Writes down what it hears, one line each.
class Recorder : public WebViewClient {
 public:
  bool webViewShouldStartLoad(WebView& /*webView*/, const Navigation& navigation) override {
    navigations.push_back(navigation);
    if (navigation.url.scheme() == "mraid") commands.push_back(navigation.url.text());
    return navigation.url.scheme() != "mraid" && (!allows || allows(navigation));
  }
  void webViewDidStartLoad(WebView& /*webView*/) override { events.emplace_back("start"); }
  void webViewDidFinishLoad(WebView& /*webView*/) override { events.emplace_back("finish"); }
  void webViewDidFailLoad(WebView& /*webView*/, const Error& error) override {
    events.push_back("fail " + error.domain + ' ' + std::to_string(error.code));
  }
  void webViewProcessDidTerminate(WebView& /*webView*/, const Error& error) override {
    events.push_back("gone " + std::to_string(error.code));
  }

  [[nodiscard]] long count(const std::string& event) const {
    return std::count(events.begin(), events.end(), event);
  }

  std::function<bool(const Navigation&)> allows;
  std::vector<std::string> events;
  std::vector<std::string> commands;
  std::vector<Navigation> navigations;
};

test::PlainAnswer html(const std::string& text) {
  return {.body = "<html><body>" + text + "</body></html>", .contentType = "text/html"};
}

Url urlOf(const test::HostileServer& server, const std::string& path) {
  return Url::parse(server.url(path));
}

// The paths that were asked for, in order.
std::vector<std::string> paths(const test::HostileServer& server) {
  std::vector<std::string> paths;
  for (const auto& request : server.requests()) {
    const auto start = request.find(' ') + 1;
    paths.push_back(request.substr(start, request.find(' ', start) - start));
  }
  return paths;
}

const std::shared_ptr<gtk::GtkRunLoop>& loop() {
  static const auto loop = std::make_shared<gtk::GtkRunLoop>();
  return loop;
}

const std::shared_ptr<gtk::GtkCookieStore>& cookies() {
  static const test::TemporaryFolder folder;
  static const auto store =
      std::make_shared<gtk::GtkCookieStore>(loop(), folder.path("cookies.sqlite"));
  return store;
}

// One factory for all tests of this process, as in a host.
gtk::GtkWebModule& factory() {
  static gtk::GtkWebModule module{{.runLoop = loop(),
                                   .userDefaults = std::make_shared<Defaults>(),
                                   .log = std::make_shared<Messages>(),
                                   .cookies = cookies(),
                                   .limits = [] {
                                     Limits limits;
                                     limits.webProcessPing = Seconds{1.5};
                                     limits.webProcessWatch = Seconds{0.5};
                                     limits.pageTimeout = Seconds{6};
                                     return limits;
                                   }}};
  return module;
}

// The web processes that descend from this one, by their id here.
std::set<int> webProcesses() {
  std::map<int, int> parents;
  std::set<int> found;
  for (const auto& entry : std::filesystem::directory_iterator{"/proc"}) {
    std::ifstream file{entry.path() / "stat"};
    int id = 0;
    int parent = 0;
    std::string name;
    std::string state;
    if (!(file >> id >> name >> state >> parent)) continue;
    parents[id] = parent;
    if (name.starts_with("(WebKitWebProces")) found.insert(id);
  }
  std::erase_if(found, [&](int id) {
    while (id > 1 && id != getpid()) id = parents[id];
    return id != getpid();
  });
  return found;
}

// A web view and its client.
struct Page {
  explicit Page(const WebViewOptions& options = {}, Rect frame = {0, 0, 320, 50})
      : view{factory().create(frame, options)} {
    view->setClient(client);
  }

  void load(const std::string& html, const Url& base = noBase) {
    const auto before = client->count("finish");
    view->loadHtml(html, base);
    ASSERT_TRUE(runUntil([&] { return client->count("finish") > before; }));
  }

  std::string evaluate(const std::string& script) {
    std::optional<std::string> answer;
    view->evaluate(script, [&](const std::string& result) { answer = result; });
    EXPECT_TRUE(runUntil([&] { return answer.has_value(); }));
    return answer.value_or("no answer");
  }

  std::shared_ptr<Recorder> client = std::make_shared<Recorder>();
  std::shared_ptr<WebView> view;
};

class WebKitViewTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { ASSERT_TRUE(gtk_init_check()); }
};

TEST_F(WebKitViewTest, LoadsDetachedAtTheSizeOfItsFrame) {
  Page page{{}, {10, 20, 300, 250}};
  page.load("<html><head><script>first = innerWidth + 'x' + innerHeight</script></head></html>");
  EXPECT_THAT(page.client->events, ElementsAre("start", "finish"));
  EXPECT_EQ(page.evaluate("first"), "300x250");
  page.view->setFrame({0, 0, 640, 480});
  EXPECT_EQ(page.evaluate("innerWidth + 'x' + innerHeight"), "640x480");
}

TEST_F(WebKitViewTest, EvaluatesInOrderAndGivesResultsAsText) {
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

TEST_F(WebKitViewTest, AThousandCommandsArriveInOrder) {
  Page page;
  page.load("<html><body></body></html>");
  page.evaluate(R"js(for (let i = 0; i < 1000; i++) {
    const frame = document.createElement('iframe');
    frame.style.display = 'none';
    frame.src = 'mraid://Command?n=' + i;
    document.body.appendChild(frame);
    frame.remove();
  })js");
  ASSERT_TRUE(runUntil([&] { return page.client->commands.size() >= 1000; }));
  for (int n = 0; n < 1000; ++n) {
    ASSERT_EQ(page.client->commands[static_cast<std::size_t>(n)],
              "mraid://Command?n=" + std::to_string(n));
  }
}

TEST_F(WebKitViewTest, PagesThatForbidFramesSendCommandsAsMessages) {
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

TEST_F(WebKitViewTest, DocumentStartScriptRunsFirstWhateverTheBase) {
  test::HostileServer server;
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

// What a hostile page tries, and what it must find out.
TEST_F(WebKitViewTest, AnswersTheQuestionsOfAPageWithoutAPerson) {
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

TEST_F(WebKitViewTest, NeverShowsAFile) {
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

TEST_F(WebKitViewTest, SchemesWithoutAHandlerAreAskedAboutAndKeepThePage) {
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

TEST_F(WebKitViewTest, RefusesDownloads) {
  test::HostileServer server;
  server.on("/zip", test::PlainAnswer{.body = "PK", .contentType = "application/zip"});
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

TEST_F(WebKitViewTest, TellsTheMainFrameFromOthers) {
  test::HostileServer server;
  server.on("/frame", html("frame"));
  server.on("/next", html("next"));
  server.on("/hop", test::Redirect{"/next"});
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

TEST_F(WebKitViewTest, AsksAboutLinksIntoNewWindowsAndShowsAllowedOnesInPlace) {
  test::HostileServer server;
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

TEST_F(WebKitViewTest, EndsAScriptThatLoops) {
  for (const char* loop : {"for (;;);", "for (;;) alert('again')"}) {
    Page other{{.ownProcess = true}};
    other.load("<html><body>other</body></html>");
    Page page{{.ownProcess = true}};
    page.load("<html><body></body></html>");
    std::vector<std::string> results;
    for (const auto* script : {loop, "1 + 1"}) {
      page.view->evaluate(script, [&](const std::string& result) { results.push_back(result); });
    }
    ASSERT_TRUE(runUntil([&] { return page.client->count("gone 1101") == 1; })) << loop;
    EXPECT_TRUE(runUntil([&] { return results.size() == 2; }));
    EXPECT_THAT(results, ElementsAre("", ""));
    EXPECT_EQ(other.evaluate("document.body.textContent"), "other");
    EXPECT_THAT(other.client->events, ElementsAre("start", "finish"));
    page.load("<html><body>again</body></html>");
    EXPECT_EQ(page.evaluate("document.body.textContent"), "again");
    EXPECT_THAT(page.client->events,
                ElementsAre("start", "finish", "gone 1101", "start", "finish"));
  }
}

TEST_F(WebKitViewTest, EndsAScriptThatLoopsWhenNobodyAsks) {
  for (const char* script : {"for (;;);", "setTimeout(() => { for (;;); }, 50)"}) {
    Page page{{.ownProcess = true}};
    page.view->loadHtml("<html><body><script>" + std::string{script} + "</script></body></html>",
                        noBase);
    EXPECT_TRUE(runUntil([&] { return page.client->count("gone 1101") == 1; })) << script;
  }
}

TEST_F(WebKitViewTest, ADeadProcessIsToldOnceAndTouchesNoOtherPage) {
  Page other{{.ownProcess = true}};
  other.load("<html><body>other</body></html>");
  const auto before = webProcesses();
  Page page{{.ownProcess = true}};
  page.load("<html><body></body></html>");
  for (const int id : webProcesses()) {
    if (!before.contains(id)) kill(id, SIGKILL);
  }
  ASSERT_TRUE(runUntil([&] { return page.client->count("gone 1101") == 1; }));
  EXPECT_FALSE(dynamic_cast<gtk::NativeView&>(*page.view).isReadyToShow());
  EXPECT_EQ(page.evaluate("1 + 1"), "");
  EXPECT_EQ(other.evaluate("document.body.textContent"), "other");
  EXPECT_THAT(other.client->events, ElementsAre("start", "finish"));
  EXPECT_THAT(page.client->events, ElementsAre("start", "finish", "gone 1101"));
}

TEST_F(WebKitViewTest, APageThatKeepsDyingIsNotStartedForEver) {
  const int owner = 0;
  std::vector<std::string> ends;
  for (int n = 0; n < 5; ++n) {
    Page page{{.owner = &owner, .ownProcess = true}};
    const auto before = webProcesses();
    page.view->loadHtml("<html><body></body></html>", noBase);
    ASSERT_TRUE(runUntil([&] {
      return page.client->count("finish") == 1 ||
             page.client->count("fail WebKitErrorDomain 1101") == 1;
    }));
    for (const int id : webProcesses()) {
      if (!before.contains(id)) kill(id, SIGKILL);
    }
    if (page.client->count("finish") == 1) {
      ASSERT_TRUE(runUntil([&] { return page.client->count("gone 1101") == 1; }));
    }
    ends.push_back(page.client->events.back());
  }
  EXPECT_THAT(ends, ElementsAre("gone 1101", "gone 1101", "gone 1101", "gone 1101",
                                "fail WebKitErrorDomain 1101"));
}

TEST_F(WebKitViewTest, SlotsShareAProcessAndOwnProcessesAreNotShared) {
  Page first;
  first.load("<html><body>first</body></html>");
  const auto before = webProcesses();
  Page second;
  second.load("<html><body>second</body></html>");
  EXPECT_EQ(webProcesses(), before);
  Page own{{.ownProcess = true}};
  own.load("<html><body>own</body></html>");
  EXPECT_GT(webProcesses().size(), before.size());
}

TEST_F(WebKitViewTest, ATapIsSeenBeforeWhatThePageDoesWithIt) {
  test::ScreenPointer pointer;
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
  GtkWidget* window = gtk_window_new();
  gtk_window_set_decorated(GTK_WINDOW(window), FALSE);
  gtk_window_set_default_size(GTK_WINDOW(window), 320, 200);
  gtk_window_set_child(GTK_WINDOW(window), dynamic_cast<gtk::NativeView&>(*page.view).widget());
  gtk_window_present(GTK_WINDOW(window));
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
  gtk_window_set_child(GTK_WINDOW(window), nullptr);
  gtk_window_destroy(GTK_WINDOW(window));
  EXPECT_EQ(page.evaluate("innerWidth"), "320");
}

TEST_F(WebKitViewTest, CookiesOfPagesAndRequestsAreTheSame) {
  test::HostileServer server;
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

TEST_F(WebKitViewTest, APageRefreshesItselfAFewTimesOnly) {
  test::HostileServer server;
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

TEST_F(WebKitViewTest, RecyclingDropsEverythingOfTheAnswerBefore) {
  test::HostileServer server;
  server.on("/one", html("one"));
  const int owner = 0;
  GtkWidget* widget = nullptr;
  {
    Page first{{.owner = &owner}};
    first.view->addDocumentStartScript("window.injected = 1");
    first.load("<html><body></body></html>", urlOf(server, "/"));
    first.evaluate("location.href = '/one'");
    ASSERT_TRUE(runUntil([&] { return first.client->count("finish") == 2; }));
    EXPECT_EQ(first.evaluate("injected"), "1");
    first.evaluate(
        "name = 'secret'; history.pushState({}, '', '/two'); kept = 5;"
        "setInterval(() => location.href = 'mraid://late', 1)");
    widget = dynamic_cast<gtk::NativeView&>(*first.view).widget();
  }
  Page second{{.owner = &owner}};
  ASSERT_EQ(dynamic_cast<gtk::NativeView&>(*second.view).widget(), widget);
  EXPECT_FALSE(dynamic_cast<gtk::NativeView&>(*second.view).isReadyToShow());
  second.load("<html><body>second</body></html>");
  EXPECT_TRUE(dynamic_cast<gtk::NativeView&>(*second.view).isReadyToShow());
  EXPECT_EQ(
      second.evaluate("[typeof injected, typeof kept, name, document.body.textContent].join()"),
      "undefined,undefined,,second");
  EXPECT_FALSE(second.view->canGoBack());
  second.evaluate("history.go(-1); history.go(-2); history.back()");
  EXPECT_EQ(second.evaluate("document.body.textContent"), "second");
  EXPECT_THAT(second.client->commands, IsEmpty());
  EXPECT_THAT(second.client->events, ElementsAre("start", "finish"));
}

// Also in the first view of the process, and in one that another owner's pages were in.
TEST_F(WebKitViewTest, HistoryBeginsWithTheOwnersFirstPage) {
  test::HostileServer server;
  for (const char* name : {"one", "two"}) server.on(std::string{"/"} + name, html(name));
  const int owner = 0;
  for (int use = 0; use < 3; ++use) {
    SCOPED_TRACE(use);
    Page page{{.owner = &owner, .ownProcess = true}};
    const auto shows = [&](const char* text) {
      return runUntil([&] { return page.evaluate("document.body.textContent") == text; });
    };
    page.view->loadUrl(urlOf(server, "/one"));
    ASSERT_TRUE(runUntil([&] { return page.client->count("finish") == 1; }));
    EXPECT_FALSE(page.view->canGoBack());
    page.evaluate("location.href = '/two'");
    ASSERT_TRUE(runUntil([&] { return page.client->count("finish") == 2; }));
    EXPECT_TRUE(page.view->canGoBack());
    page.view->goBack();
    ASSERT_TRUE(shows("one"));
    EXPECT_FALSE(page.view->canGoBack());
    EXPECT_TRUE(page.view->canGoForward());
    page.view->goBack();
    page.evaluate("history.back(); setTimeout(() => window.asked = 1)");
    ASSERT_TRUE(runUntil([&] { return page.evaluate("window.asked") == "1"; }));
    page.evaluate("'The question about the step back is answered.'");
    EXPECT_TRUE(shows("one"));
    page.view->goForward();
    EXPECT_TRUE(shows("two"));
    EXPECT_THAT(page.client->events, Not(testing::Contains(HasSubstr("fail"))));
  }
}

TEST_F(WebKitViewTest, AViewIsNotSharedWhileItIsInUse) {
  const int owner = 0;
  Page first{{.owner = &owner}};
  Page second{{.owner = &owner}};
  EXPECT_NE(dynamic_cast<gtk::NativeView&>(*first.view).widget(),
            dynamic_cast<gtk::NativeView&>(*second.view).widget());
}

TEST_F(WebKitViewTest, ALoadThatIsReplacedReportsOnlyTheNewOne) {
  Page page;
  for (int n = 0; n < 5; ++n) {
    page.view->loadHtml("<html><body>" + std::to_string(n) + "</body></html>", noBase);
  }
  ASSERT_TRUE(
      runUntil([&] { return page.client->count("finish") >= 1 && !page.view->isLoading(); }));
  EXPECT_EQ(page.evaluate("document.body.textContent"), "4");
  EXPECT_EQ(page.client->count("finish"), 1);
  EXPECT_EQ(page.client->events.back(), "finish");
}

TEST_F(WebKitViewTest, APageThatNeverFinishesFailsInTime) {
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

TEST_F(WebKitViewTest, ReportsAFailedConnectionOnceAndKeepsThePage) {
  Page page;
  page.load("<html><body>creative</body></html>");
  page.client->events.clear();
  const Url closed = Url::parse(test::HostileServer{}.url("/"));
  page.view->loadUrl(closed);
  ASSERT_TRUE(runUntil([&] { return page.client->events.size() >= 2; }));
  EXPECT_EQ(page.evaluate("document.body.textContent"), "creative");
  EXPECT_THAT(page.client->events, ElementsAre("start", "fail com.CorvaneTAVO.transport -1004"));
}

}  // namespace
}  // namespace tavo
