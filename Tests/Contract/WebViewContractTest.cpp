#include <gtk/gtk.h>

#include "Gtk/Modules/GtkWebModule.h"
#include "Gtk/Services/GtkLog.h"
#include "Gtk/Services/GtkRunLoop.h"
#include "Gtk/Services/GtkUserDefaults.h"
#include "Headless/HeadlessRunLoop.h"
#include "Headless/HeadlessWebViewFactory.h"
#include "Services/WebViewFactory.h"
#include "Support/HostLoop.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace tavo::test {
namespace {

const std::string markup = "<html><head></head><body>creative</body></html>";
const std::string readMarkup = "document.documentElement.outerHTML";

class HeadlessWebRig {
 public:
  WebViewFactory& factory() { return factory_; }
  void runUntil(const std::function<bool()>& done) {
    for (int step = 0; step < 1000 && !done(); ++step) loop_->advance(Seconds{0.1});
  }

 private:
  std::shared_ptr<headless::HeadlessRunLoop> loop_ = std::make_shared<headless::HeadlessRunLoop>();
  headless::HeadlessWebViewFactory factory_{loop_};
};

// One engine for all tests of the process, as in a host.
class GtkWebRig {
 public:
  WebViewFactory& factory() { return engine().module; }
  void runUntil(const std::function<bool()>& done) { test::runUntil(done); }

 private:
  struct Engine {
    test::TemporaryFolder folder;
    std::shared_ptr<gtk::GtkRunLoop> loop = std::make_shared<gtk::GtkRunLoop>();
    gtk::GtkWebModule module{
        {.runLoop = loop,
         .userDefaults = std::make_shared<gtk::GtkUserDefaults>(folder.path("defaults.ini")),
         .log = std::make_shared<gtk::GtkLog>(),
         .cookies = std::make_shared<gtk::GtkCookieStore>(loop, folder.path("cookies.sqlite")),
         .limits = {}}};
  };
  static Engine& engine() {
    static const bool toolkit = gtk_init_check() != FALSE;
    EXPECT_TRUE(toolkit);
    static auto& engine = *new Engine;
    return engine;
  }
};

// Writes down what it hears, and whether it was inside a call to the web view.
class Recorder : public WebViewClient {
 public:
  bool webViewShouldStartLoad(WebView& /*webView*/, const Navigation& navigation) override {
    asked.push_back(navigation);
    return allows;
  }
  void webViewDidStartLoad(WebView& /*webView*/) override { note("start"); }
  void webViewDidFinishLoad(WebView& webView) override {
    note(webView.isLoading() ? "finish while loading" : "finish");
    if (atFinish) atFinish();
  }
  void webViewDidFailLoad(WebView& /*webView*/, const Error& error) override {
    note("fail " + std::to_string(error.code));
  }
  void webViewProcessDidTerminate(WebView& /*webView*/, const Error& /*error*/) override {
    note("gone");
  }

  bool allows = true;
  bool insideCall = false;
  std::function<void()> atFinish;
  std::vector<std::string> events;
  std::vector<Navigation> asked;

 private:
  void note(const std::string& event) { events.push_back(insideCall ? event + " inside" : event); }
};

template <typename Rig>
class WebViewContractTest : public testing::Test {
 protected:
  void SetUp() override {
    view_ = rig_.factory().create({0, 0, 320, 50}, {});
    ASSERT_NE(view_, nullptr);
    view_->setClient(client_);
  }

  void call(const std::function<void(WebView&)>& operation) {
    client_->insideCall = true;
    operation(*view_);
    client_->insideCall = false;
  }
  void load() {
    const auto before = client_->events.size();
    call([](WebView& view) { view.loadHtml(markup, {}); });
    runUntilEvents(before + 2);
  }
  void runUntilEvents(std::size_t count) {
    rig_.runUntil([&] { return client_->events.size() >= count; });
  }
  // Everything that was to come has come when the page has answered.
  std::string settle(const std::string& script = "void 0") {
    std::optional<std::string> answer;
    view_->evaluate(script, [&](const std::string& result) { answer = result; });
    EXPECT_FALSE(answer.has_value()) << "answered inside the call";
    rig_.runUntil([&] { return answer.has_value(); });
    return answer.value_or("no answer");
  }

  Rig rig_;
  std::shared_ptr<Recorder> client_ = std::make_shared<Recorder>();
  std::shared_ptr<WebView> view_;
};

using Rigs = testing::Types<HeadlessWebRig, GtkWebRig>;
TYPED_TEST_SUITE(WebViewContractTest, Rigs);

TYPED_TEST(WebViewContractTest, ReportsALoadOnceAndInALaterTurn) {
  this->load();
  EXPECT_EQ(this->settle(readMarkup), markup);
  EXPECT_THAT(this->client_->events, ElementsAre("start", "finish"));
  EXPECT_EQ(this->view_->url(), Url::parse("about:blank"));
}

TYPED_TEST(WebViewContractTest, AReplacedLoadIsNotReported) {
  this->call([](WebView& view) {
    view.loadHtml("<html><head></head><body>first</body></html>", {});
    view.loadHtml(markup, {});
  });
  this->runUntilEvents(2);
  EXPECT_EQ(this->settle(readMarkup), markup);
  EXPECT_THAT(this->client_->events, ElementsAre("start", "finish"));
}

TYPED_TEST(WebViewContractTest, AStoppedLoadFailsAsCancelled) {
  this->call([](WebView& view) {
    view.loadHtml(markup, {});
    view.stopLoading();
  });
  this->runUntilEvents(1);
  this->settle();
  EXPECT_THAT(this->client_->events, ElementsAre("fail -999"));
  EXPECT_FALSE(this->view_->isLoading());
  this->load();
  EXPECT_THAT(this->client_->events, ElementsAre("fail -999", "start", "finish"));
}

TYPED_TEST(WebViewContractTest, StoppingNothingIsNotReported) {
  this->load();
  this->call([](WebView& view) { view.stopLoading(); });
  this->settle();
  EXPECT_THAT(this->client_->events, ElementsAre("start", "finish"));
}

TYPED_TEST(WebViewContractTest, ARefusedRequestIsAskedOnceAndNotReported) {
  this->client_->allows = false;
  const Url target = Url::parse("http://127.0.0.1:9/");
  this->view_->loadUrl(target);
  this->rig_.runUntil([&] { return !this->client_->asked.empty(); });
  this->settle();
  ASSERT_EQ(this->client_->asked.size(), 1U);
  EXPECT_EQ(this->client_->asked[0].url, target);
  EXPECT_EQ(this->client_->asked[0].mainDocumentUrl, target);
  EXPECT_EQ(this->client_->asked[0].type, NavigationType::other);
  EXPECT_THAT(this->client_->events, IsEmpty());
  EXPECT_FALSE(this->view_->isLoading());
}

TYPED_TEST(WebViewContractTest, AnswersScriptsInOrderInALaterTurn) {
  this->load();
  std::vector<std::string> answers;
  for (const auto& script : {readMarkup, std::string{"void 0"}, readMarkup}) {
    this->view_->evaluate(script, [&](const std::string& result) { answers.push_back(result); });
  }
  this->view_->evaluate("void 0");
  EXPECT_THAT(answers, IsEmpty());
  this->rig_.runUntil([&] { return answers.size() == 3; });
  EXPECT_THAT(answers, ElementsAre(markup, "", markup));
}

TYPED_TEST(WebViewContractTest, AScriptIsAnsweredWithoutAPageAndWithoutAView) {
  EXPECT_EQ(this->settle(), "");
  std::optional<std::string> answer;
  this->view_->evaluate("void 0", [&](const std::string& result) { answer = result; });
  this->view_.reset();
  this->rig_.runUntil([&] { return answer.has_value(); });
  EXPECT_EQ(answer, "");
}

TYPED_TEST(WebViewContractTest, AClientThatIsGoneHearsNothing) {
  const std::weak_ptr<Recorder> client = this->client_;
  this->view_->loadHtml(markup, {});
  this->client_.reset();
  EXPECT_TRUE(client.expired());
  this->rig_.runUntil([&] { return !this->view_->isLoading(); });
  EXPECT_EQ(this->settle(readMarkup), markup);
}

TYPED_TEST(WebViewContractTest, AViewThatIsGoneReportsNothing) {
  this->view_->loadHtml(markup, {});
  this->view_ = this->rig_.factory().create({0, 0, 320, 50}, {});
  this->view_->loadHtml(markup, {});
  this->rig_.runUntil([&] { return !this->view_->isLoading(); });
  EXPECT_THAT(this->client_->events, IsEmpty());
}

TYPED_TEST(WebViewContractTest, AViewMayGoInTheMiddleOfAReport) {
  this->client_->atFinish = [this] { this->view_.reset(); };
  this->view_->loadHtml(markup, {});
  this->runUntilEvents(2);
  EXPECT_THAT(this->client_->events, ElementsAre("start", "finish"));
  EXPECT_EQ(this->view_, nullptr);
}

TYPED_TEST(WebViewContractTest, TheUserAgentIsNeverEmpty) {
  EXPECT_FALSE(this->rig_.factory().userAgent().empty());
}

}  // namespace
}  // namespace tavo::test
