// Servers whose certificates nobody has signed: nothing is read from them, nothing hangs, and the
// host hears why.

#include <algorithm>

#include <tavo/MoviePlayer.h>
#include <tavo/MoviePlayerFactory.h>
#include <tavo/gtk/AdWindow.h>

#include "Services/HttpClient.h"
#include "Services/WebViewFactory.h"
#include "Support/GtkHost.h"
#include "Support/Places.h"
#include "Support/TlsServer.h"
#include "Support/WebPage.h"
#include "UserInterface/WebView/InAppBrowser/XInAppBrowser.h"

namespace tavo::test {
namespace {

const std::string noTrust = "fail " + std::string{transportErrorDomain} + " -1004";

class FilmEnd : public MoviePlayerClient {
 public:
  void movieDurationAvailable(MoviePlayer&) override { ++pictures; }
  void moviePlaybackStateDidChange(MoviePlayer&) override {}
  void moviePlaybackDidFinish(MoviePlayer&, MovieFinishReason,
                              const std::optional<Error>& error) override {
    code = error ? error->code : 0;
  }
  void movieDidEnterFullscreen(MoviePlayer&) override {}
  void movieDidExitFullscreen(MoviePlayer&) override {}
  int pictures = 0;
  std::optional<int> code;
};

class CertificateTest : public testing::Test {
 protected:
  ~CertificateTest() override {
    EXPECT_GT(server_.connections(), 0);
    EXPECT_EQ(server_.requests(), 0);
  }
  static GtkHost& host() {
    static GtkHost only{sampleCampaigns()};
    return only;
  }
  static const Platform& platform() { return Runtime::current().platform(); }

  static bool showsLock(const View& view) {
    if (view.accessibilityLabel() == "Secure connection") return !view.isHidden();
    return std::ranges::any_of(view.subviews(),
                               [](const auto& below) { return showsLock(*below); });
  }

  TlsServer server_;
};

TEST_F(CertificateTest, ARequestIsNotSent) {
  host();
  std::optional<HttpResult> result;
  const auto exchange = platform().http->send({.url = Url::parse(server_.url("/ads"))},
                                              [&](const HttpResult& end) { result = end; });
  ASSERT_TRUE(host().runUntil([&] { return result.has_value(); }));
  ASSERT_TRUE(result->error);
  EXPECT_EQ(result->error->code, static_cast<int>(TransportError::cannotConnect));
}

TEST_F(CertificateTest, APageIsNotShownNorIsWhatItWouldTake) {
  host();
  for (const PageKind kind : {PageKind::creative, PageKind::browser}) {
    const auto view = platform().webViews->create({0, 0, 320, 50}, {.kind = kind});
    const auto client = std::make_shared<Recorder>();
    view->setClient(client);
    view->loadUrl(Url::parse(server_.url("/page")));
    ASSERT_TRUE(host().runUntil(
        [&] { return !client->events.empty() && client->events.back() != "start"; }));
    EXPECT_EQ(client->events.back(), noTrust);
  }
  const auto view = platform().webViews->create({0, 0, 320, 50}, {});
  const auto client = std::make_shared<Recorder>();
  view->setClient(client);
  view->loadHtml("<script>said = ''; fetch('" + server_.url("/data") +
                     "').then(() => { said = 'read' }, () => { said = 'refused' })</script>",
                 noBase);
  ASSERT_TRUE(host().runUntil([&] { return askPage(view.get(), "said") != ""; }));
  EXPECT_EQ(askPage(view.get(), "said"), "refused");
}

TEST_F(CertificateTest, AFilmIsNotPlayed) {
  host();
  const auto player = platform().moviePlayers->create({0, 0, 320, 180});
  const auto end = std::make_shared<FilmEnd>();
  player->addClient(end);
  player->setContentUrl(Url::parse(server_.url("/film.mp4")));
  player->play();
  ASSERT_TRUE(host().runUntil([&] { return end->code.has_value(); }));
  EXPECT_EQ(*end->code, static_cast<int>(MovieError::notPlayable));
  EXPECT_EQ(end->pictures, 0);
}

TEST_F(CertificateTest, TheInAppBrowserSaysWhy) {
  const auto root = gtk::rootViewControllerOf(host().window());
  const auto events = std::make_shared<XInAppBrowserDelegate>();
  const auto browser = XInAppBrowser::create(Runtime::current().environment(), events);
  root->presentViewController(browser, Animated::no);
  browser->setURL(Url::parse(server_.url("/landing")));
  const auto page = [&] { return askPage(browser->webView().get(), "document.body.innerText"); };
  EXPECT_TRUE(host().runUntil([&] { return page().find("cannot be shown") != std::string::npos; }));
  EXPECT_THAT(page(), testing::HasSubstr("certificate"));
  EXPECT_FALSE(showsLock(*browser->view()));
  host().keepPicture("certificate");
  root->dismissViewController(Animated::no);
}

}  // namespace
}  // namespace tavo::test
