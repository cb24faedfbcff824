#include <string_view>

#include <tavo/TapRecognizer.h>

#include "Integration/VideoOnScreen.h"
#include "Scene/Window.h"
#include "Services/Application.h"
#include "Services/RunLoop.h"
#include "Services/WebViewFactory.h"
#include "Support/FakeLogind.h"
#include "Support/HostileServer.h"
#include "Support/Places.h"
#include "Support/WidgetTree.h"
#include "UserInterface/NativeView/XVASTVideoView.h"
#include "UserInterface/WebView/InAppBrowser/XInAppBrowser.h"

namespace tavo::test {
namespace {

class VideoOnScreenTest : public VideoOnScreen {
 protected:
  // Before the host asks for its session.
  static void SetUpTestSuite() {
    const std::string display = Glib::getenv("DISPLAY");  // which the bus takes away
    bus_ = std::make_unique<PrivateBus>();
    Glib::setenv("DISPLAY", display);
    logind_ = std::make_unique<FakeLogind>(*bus_);
  }
  // The screen is locked, or open again, and the library has heard of it.
  static void sayAndHear(const char* signal, std::string_view notification) {
    bool heard = false;
    const Subscription subscription = Runtime::current().notifications().subscribe(
        std::string{notification}, [&](const Notification&) { heard = true; });
    EXPECT_TRUE(host().runUntil([&] {
      bus_->emit("org.freedesktop.login1.Session", signal, g_variant_new("()"),
                 FakeLogind::sessionPath);
      bus_->waitForSignals();
      return heard;
    }));
  }
  inline static std::unique_ptr<PrivateBus> bus_;
  inline static std::unique_ptr<FakeLogind> logind_;

  // In place of the banner, without its controller.
  static void loadInterstitial(const std::string& campaign) {
    const auto& banner = host().banner();
    banner->setMoviePlayerInstance(nullptr);
    banner->setFrame({0, 0, 320, 240});
    host().slot().queue_resize();
    banner->setMobileAdTypes(MobileAdTypes::interstitial);
    host().load(campaign);
  }
  static MoviePlayer& film() {
    const auto view =
        std::dynamic_pointer_cast<XVASTVideoView>(host().banner()->subviews().front());
    return *view->mpMoviePlayer()->moviePlayerController();
  }
  // Where the position of the only bar in the window stands.
  static double barPosition() {
    const auto bars = widgetsBelow<Gtk::Scale>(host().window());
    EXPECT_EQ(bars.size(), 1U);
    return bars.empty() ? -1 : bars.front()->get_value();
  }
};

TEST_F(VideoOnScreenTest, APrerollPlaysAndTheServerHearsEachMilestoneOnceAndInOrder) {
  player_->setContentUrl(Url::parse("http://127.0.0.1:1/film.mp4"));
  host().load("vast-preroll");
  ASSERT_TRUE(waitFor("didLoad"));
  host().runUntil([this] { return player_->currentPlaybackTime() > 1; });
  host().keepPicture("playing");
  EXPECT_TRUE(waitForPicture());
  ASSERT_TRUE(waitFor("handedBack"));
  EXPECT_TRUE(waitForPing("complete"));
  EXPECT_THAT(told_,
              ElementsAre("didLoad", "quartile 0", "quartile 1", "quartile 2", "handedBack"));
  EXPECT_THAT(pings(), ElementsAre("inline-impression", "impression", "start", "firstQuartile",
                                   "midpoint", "thirdQuartile", "complete"));
  EXPECT_EQ(player_->contentUrl().text(), "http://127.0.0.1:1/film.mp4");
  EXPECT_EQ(barPosition(), 0) << "of the host's film, not of the ad";
  const auto agent = Runtime::current().platform().webViews->userAgent();
  const auto media = host().server().record().requests(RequestKind::Asset);
  ASSERT_GE(media.size(), 2U);
  EXPECT_EQ(media.front().method, "HEAD");
  for (const auto& request : media) EXPECT_EQ(request.header("User-Agent"), agent);
}

TEST_F(VideoOnScreenTest, PauseResumeAndSkip) {
  host().load("vast-preroll");
  ASSERT_TRUE(waitFor("didLoad"));
  player_->pause();
  ASSERT_TRUE(waitFor("didPause"));
  player_->play();
  ASSERT_TRUE(waitFor("didResume"));
  ASSERT_TRUE(waitForControl(*player_));
  EXPECT_GE(player_->currentPlaybackTime(), 2);
  host().keepPicture("skip-button");
  buttonOn(*player_)->press();
  EXPECT_TRUE(waitForPing("skip"));
  EXPECT_EQ(told_.back(), "didSkip");
  const auto all = pings();
  for (const char* event : {"start", "pause", "resume", "skip"}) {
    EXPECT_EQ(std::count(all.begin(), all.end(), event), 1) << event;
  }
  EXPECT_EQ(std::count(all.begin(), all.end(), "complete"), 0);
}

TEST_F(VideoOnScreenTest, AClickOpensThePageAboveTheVideoAndClosingItEndsTheAd) {
  host().settings->shouldOpenClickThroughURLInAppBrowser = true;
  host().load("vast-preroll");
  ASSERT_TRUE(waitFor("didLoad"));
  recognizeTap(*player_);
  const auto browser = [] {
    auto* root = host().banner()->getRootViewController();
    return dynamic_cast<XInAppBrowser*>(root->presentedViewController());
  };
  ASSERT_TRUE(host().runUntil([&] { return browser() != nullptr; }));
  EXPECT_TRUE(browser()->cancelOperation());
  EXPECT_EQ(browser(), nullptr);
  EXPECT_TRUE(waitFor("handedBack"));
}

// Each of these answers the probe as if all were well.
TEST_F(VideoOnScreenTest, ServersAndFilesThatAreNoGoodEndTheAdInTime) {
  using Case = std::tuple<const char*, std::vector<Behaviour>, testing::Matcher<Lines>>;
  const PlainAnswer whole{.body = clip(), .contentType = "video/mp4"};
  const CloseInBody hangsUp{.body = whole.body.substr(0, whole.body.size() / 2),
                            .promisedBytes = whole.body.size()};
  // A server that hangs up may be noticed before the first picture is shown, or after it.
  const auto brokenOff = testing::AnyOf(ElementsAre("didFail 2", "handedBack"),
                                        ElementsAre("didLoad", "didFail 4", "handedBack"));
  const Case cases[] = {
      {"gone-after-probe",
       {whole, PlainAnswer{.status = 404}},
       ElementsAre("didFail 2", "handedBack")},
      {"hangs-up", {whole, hangsUp}, brokenOff},
      {"no-ranges", {whole}, ElementsAre("didLoad", "handedBack")},
  };
  HostileServer server;
  for (const auto& [name, media, told] : cases) {
    SCOPED_TRACE(name);
    told_.clear();
    const std::string path = std::string{"/"} + name + ".mp4";
    server.on(path, media);
    campaigns().add(name, campaigns().document(server.url(path)));
    host().load(name);
    ASSERT_TRUE(waitFor("handedBack"));
    std::erase_if(told_, [](const std::string& line) { return line.starts_with("quartile"); });
    EXPECT_THAT(told_, told);
    EXPECT_EQ(buttonOn(*player_), nullptr);
    if (std::string{name} != "no-ranges") {
      EXPECT_THAT(pings(), Not(Contains("complete")));
    }
  }
  EXPECT_TRUE(waitForPing("complete"));
}

TEST_F(VideoOnScreenTest, OnlyTheWebIsPlayed) {
  class Listener : public MoviePlayerClient {
   public:
    void movieDurationAvailable(MoviePlayer&) override { played = true; }
    void moviePlaybackStateDidChange(MoviePlayer&) override {}
    void moviePlaybackDidFinish(MoviePlayer&, MovieFinishReason reason,
                                const std::optional<Error>&) override {
      failed = reason == MovieFinishReason::playbackError;
    }
    void movieDidEnterFullscreen(MoviePlayer&) override {}
    void movieDidExitFullscreen(MoviePlayer&) override {}
    bool played = false;
    bool failed = false;
  };
  const auto listener = std::make_shared<Listener>();
  player_->addClient(listener);
  const std::string file = std::string{"file://"} + sampleCampaigns() + "/vast-preroll/clip.mp4";
  for (const std::string& url : {file, std::string{"v4l2:///dev/video0"}}) {
    listener->failed = false;
    player_->setContentUrl(Url::parse(url));
    player_->play();
    EXPECT_TRUE(host().runUntil([&] { return listener->failed; })) << url;
    EXPECT_FALSE(listener->played) << url;
  }
}

TEST_F(VideoOnScreenTest, FullScreenIsEnteredAndLeftByTheBar) {
  host().load("vast-preroll");
  ASSERT_TRUE(waitForControl(*player_));
  player_->pause();
  ASSERT_TRUE(waitFor("didPause"));
  const auto press = [](const char* icon) {
    const auto buttons = widgetsBelow<Gtk::Button>(host().window(), [icon](Gtk::Button& button) {
      return button.get_icon_name() == icon && button.get_mapped();
    });
    ASSERT_EQ(buttons.size(), 1U);
    g_signal_emit_by_name(buttons.front()->gobj(), "clicked");
  };
  press("view-fullscreen-symbolic");
  EXPECT_TRUE(waitForPing("fullscreen"));
  EXPECT_EQ(player_->frame(), player_->window()->bounds());
  EXPECT_TRUE(host().runUntil([] {
    const double width = host().window().get_width();
    return isYellowAt(width * 1.5 / 7, host().window().get_height() / 2.0);
  })) << "in the middle of the window";
  host().keepPicture("full-screen");
  press("view-restore-symbolic");
  EXPECT_TRUE(waitForPing("exitFullscreen"));
  EXPECT_EQ(player_->frame(), (Rect{20, 0, 320, 180}));
  EXPECT_TRUE(waitForPicture());
}

TEST_F(VideoOnScreenTest, AHostMayDropTheSlotInsideEachReport) {
  const Url film = Url::parse("http://127.0.0.1:1/film.mp4");
  for (const char* moment :
       {"didLoad", "didPause", "didResume", "quartile 0", "didSkip", "handedBack"}) {
    SCOPED_TRACE(moment);
    player_->setContentUrl(film);
    host().makeBanner();
    host().banner()->delegate.set(events_);
    host().banner()->setMoviePlayerInstance(player_);
    told_.clear();
    dropsInside_ = moment;
    host().load("vast-preroll");
    ASSERT_TRUE(waitFor("didLoad"));
    if (std::string_view{moment}.starts_with("didP") || std::string_view{moment} == "didResume") {
      player_->pause();
      ASSERT_TRUE(waitFor("didPause"));
      player_->play();
    }
    EXPECT_TRUE(host().runUntil([&] {
      Button* const skip = buttonOn(*player_);
      if (skip != nullptr && skip->isUserInteractionEnabled()) skip->press();
      return hasTold(moment);
    }));
    EXPECT_TRUE(host().runUntil([&] { return player_->contentUrl() == film; }));
  }
}

// Most of these bytes are of the table that says where the film's pictures are.
TEST_F(VideoOnScreenTest, FilmsWithWrongBytesEndTheAdAndNotTheHost) {
  HostileServer server;
  std::uint32_t number = 12345;
  const auto random = [&] { return (number = number * 1664525 + 1013904223) >> 8U; };
  for (int round = 0; round < 6; ++round) {
    PlainAnswer film{.body = clip(), .contentType = "video/mp4"};
    const std::size_t table = film.body.find("moov");
    for (int byte = 0; byte < 4 << round; ++byte) {
      film.body[table + 8 + random() % 1500] = static_cast<char>(random());
    }
    const std::string name = "broken-" + std::to_string(round);
    server.on("/" + name, film);
    campaigns().add(name, campaigns().document(server.url("/" + name)));
    told_.clear();
    host().load(name);
    EXPECT_TRUE(host().runUntil([&] { return hasTold("handedBack") || hasTold("didFail 1012"); }))
        << name;
  }
}

TEST_F(VideoOnScreenTest, AFilmThatEndsBehindTheLockIsHandedBackWhenTheUserIsBack) {
  host().load("vast-preroll");
  ASSERT_TRUE(waitFor("didLoad"));
  sayAndHear("Lock", notifications::screenLocked);
  ASSERT_TRUE(waitForPing("complete"));
  EXPECT_FALSE(hasTold("handedBack"));
  sayAndHear("Unlock", notifications::willEnterForeground);
  EXPECT_TRUE(hasTold("handedBack"));
}

TEST_F(VideoOnScreenTest, AnInterstitialInFullScreenIsClosedWhereItsControlIsSeen) {
  loadInterstitial("vast-preroll");
  ASSERT_TRUE(waitForControl(*host().banner()));
  film().setFullscreen(true);
  ASSERT_TRUE(waitForPing("fullscreen"));
  host().keepPicture("interstitial-full-screen");
  EXPECT_TRUE(host().runUntil(
      [] { return pressButtonAt(host().window(), host().window().get_width() - 27, 22); }));
  EXPECT_EQ(told_.back(), "dismissed");
  EXPECT_TRUE(waitForPing("skip"));
}

TEST_F(VideoOnScreenTest, TwoWrappersAreCountedByAll) {
  host().load("vast-wrapped");
  ASSERT_TRUE(waitFor("handedBack"));
  EXPECT_TRUE(waitForPing("second-complete"));
  EXPECT_THAT(pings(),
              UnorderedElementsAre("first-impression", "second-impression", "inline-impression",
                                   "impression", "start", "first-start", "second-start",
                                   "firstQuartile", "midpoint", "thirdQuartile", "complete",
                                   "first-complete", "second-complete"));
}

TEST_F(VideoOnScreenTest, AChainWithoutEndIsGivenUpWhileTheHostLivesOn) {
  const auto wrapper = [](const std::string& next) {
    return "<VAST version='3.0'><Ad><Wrapper><VASTAdTagURI><![CDATA[" + next +
           "]]></VASTAdTagURI></Wrapper></Ad></VAST>";
  };
  HostileServer server;
  server.on("/next", EndlessChain{.document = wrapper("${next}")});
  campaigns().add("endless", wrapper(server.url("/next")));
  int turns = 0;
  const Timer alive = Runtime::current().platform().runLoop->every(Seconds{0.02}, [&] { ++turns; });
  host().load("endless");
  EXPECT_TRUE(host().runUntil([this] { return !told_.empty(); }));
  EXPECT_THAT(told_, ElementsAre("didFail 1012"));
  EXPECT_EQ(why_, "Invalid URL. Unable to parse XML.");
  EXPECT_GT(server.requests().size(), 10U);
  EXPECT_GT(turns, 30) << "of the 150 that there is time for";
}

}  // namespace
}  // namespace tavo::test
