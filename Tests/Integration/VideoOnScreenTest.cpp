#include <tavo/TapRecognizer.h>

#include "Integration/VideoOnScreen.h"
#include "Scene/Window.h"
#include "Services/Application.h"
#include "Services/WebViewFactory.h"
#include "Support/HostileServer.h"
#include "Support/Places.h"
#include "Support/WidgetTree.h"
#include "UserInterface/NativeView/XVASTVideoView.h"
#include "UserInterface/WebView/InAppBrowser/XInAppBrowser.h"

namespace tavo::test {
namespace {

class VideoOnScreenTest : public VideoOnScreen {
 protected:
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
  struct Case {
    const char* name;
    std::vector<Behaviour> media;
    testing::Matcher<Lines> told;
  };
  const PlainAnswer whole{.body = clip(), .contentType = "video/mp4"};
  PlainAnswer cut = whole;
  cut.body.resize(cut.body.size() / 2);
  const PlainAnswer picture{.body = bytesOf(sampleCampaigns() + "/image-banner/banner.png"),
                            .contentType = "video/mp4"};
  const PlainAnswer text{.body = "<html>not a video</html>", .contentType = "video/mp4"};
  const PlainAnswer gone{.status = 404};
  const CloseInBody hangsUp{.body = cut.body, .promisedBytes = whole.body.size()};
  const StallInBody stalls{.body = cut.body.substr(0, 20'000), .promisedBytes = whole.body.size()};
  PlainAnswer unknown = whole;
  unknown.body.replace(unknown.body.find("avc1"), 4, "zzzz");
  // A server that hangs up may be noticed before the first picture is shown, or after it.
  const auto brokenOff = testing::AnyOf(ElementsAre("didFail 2", "handedBack"),
                                        ElementsAre("didLoad", "didFail 4", "handedBack"));
  const Case cases[] = {
      {"probe-404", {gone}, ElementsAre("didFail 1012")},
      {"gone-after-probe", {whole, gone}, ElementsAre("didFail 2", "handedBack")},
      {"picture", {picture}, ElementsAre("didFail 2", "handedBack")},
      {"text", {text}, ElementsAre("didFail 2", "handedBack")},
      {"silent", {whole, NeverAnswer{}}, ElementsAre("didFail 3", "handedBack")},
      {"cut", {cut}, ElementsAre("didLoad", "didFail 4", "handedBack")},
      {"hangs-up", {whole, hangsUp}, brokenOff},
      {"stalls", {whole, stalls}, ElementsAre("didFail 3", "handedBack")},
      {"no-decoder", {unknown}, ElementsAre("didFail 2", "handedBack")},
      {"no-ranges", {whole}, ElementsAre("didLoad", "handedBack")},
  };
  HostileServer server;
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    told_.clear();
    const std::string path = std::string{"/"} + test.name + ".mp4";
    server.on(path, test.media);
    campaigns().add(test.name, campaigns().document(server.url(path)));
    host().load(test.name);
    ASSERT_TRUE(waitFor(std::string{test.name} == "probe-404" ? "didFail 1012" : "handedBack"));
    std::erase_if(told_, [](const std::string& line) { return line.starts_with("quartile"); });
    EXPECT_THAT(told_, test.told);
    EXPECT_EQ(buttonOn(*player_), nullptr);
    if (std::string{test.name} != "no-ranges") {
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
  const auto pressFullScreen = [] {
    const auto buttons = widgetsBelow<Gtk::Button>(host().window(), [](Gtk::Button& button) {
      return button.get_icon_name() == "view-fullscreen-symbolic" && button.get_mapped();
    });
    ASSERT_EQ(buttons.size(), 1U);
    g_signal_emit_by_name(buttons.front()->gobj(), "clicked");
  };
  pressFullScreen();
  EXPECT_TRUE(waitForPing("fullscreen"));
  EXPECT_EQ(player_->frame(), player_->window()->bounds());
  EXPECT_TRUE(host().runUntil([] {
    const double width = host().window().get_width();
    return isYellowAt(width * 1.5 / 7, host().window().get_height() / 2.0);
  })) << "in the middle of the window";
  host().keepPicture("full-screen");
  pressFullScreen();
  EXPECT_TRUE(waitForPing("exitFullscreen"));
  EXPECT_EQ(player_->frame(), (Rect{20, 0, 320, 180}));
  EXPECT_TRUE(waitForPicture());
}

TEST_F(VideoOnScreenTest, TheControlKeepsToTheCornerOfAPlayerThatChangesItsSize) {
  host().load("vast-preroll");
  ASSERT_TRUE(waitForControl(*player_));
  player_->pause();
  for (const Rect& place : {Rect{0, 0, 200, 112}, Rect{0, 0, 640, 360}}) {
    player_->setFrame(place);
    EXPECT_EQ(buttonOn(*player_)->frame(), (Rect{place.width - 49, 0, 44, 44}));
  }
}

TEST_F(VideoOnScreenTest, TheSkipIsToldThoughTheHostDropsTheSlotWhenThePrerollIsOver) {
  host().load("vast-preroll");
  ASSERT_TRUE(waitForControl(*player_));
  dropsSlot_ = true;
  buttonOn(*player_)->press();
  EXPECT_EQ(told_.back(), "didSkip");
  EXPECT_TRUE(waitForPing("skip"));
}

TEST_F(VideoOnScreenTest, AFilmThatEndsBehindTheLockIsHandedBackWhenTheUserIsBack) {
  auto& center = Runtime::current().notifications();
  host().load("vast-preroll");
  ASSERT_TRUE(waitFor("didLoad"));
  center.post(notifications::screenLocked);
  ASSERT_TRUE(waitForPing("complete"));
  EXPECT_FALSE(hasTold("handedBack"));
  center.post(notifications::willEnterForeground);
  EXPECT_TRUE(hasTold("handedBack"));
}

TEST_F(VideoOnScreenTest, TheCountdownStandsInTheMiddleAndBelow) {
  for (const unsigned position : {1U, 3U}) {
    SCOPED_TRACE(position);
    told_.clear();
    host().settings->countdownTimerPosition = position;
    host().load("vast-preroll");
    ASSERT_TRUE(waitFor("didLoad"));
    EXPECT_TRUE(waitForPicture());
    const Button* button = buttonOn(*player_);
    ASSERT_NE(button, nullptr);
    EXPECT_THAT(button->title(), HasSubstr("00:0"));
    host().keepPicture("countdown-" + std::to_string(position));
  }
}

TEST_F(VideoOnScreenTest, ClosingTheInterstitialCountsAsASkip) {
  loadInterstitial("vast-preroll");
  ASSERT_TRUE(waitFor("didLoad"));
  host().keepPicture("interstitial-countdown");
  ASSERT_TRUE(waitForControl(*host().banner()));
  host().keepPicture("interstitial-close");
  buttonOn(*host().banner())->press();
  EXPECT_TRUE(waitForPing("skip"));
  EXPECT_EQ(told_.back(), "dismissed");
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

TEST_F(VideoOnScreenTest, AnInterstitialThatFailsIsToldAsThatAndNothingElse) {
  HostileServer server;
  server.on("/text.mp4", PlainAnswer{.body = "no video", .contentType = "video/mp4"});
  campaigns().add("failing", campaigns().document(server.url("/text.mp4")));
  loadInterstitial("failing");
  ASSERT_TRUE(waitFor("didFail 2"));
  EXPECT_TRUE(host().waitForFrames());
  EXPECT_THAT(told_, ElementsAre("didFail 2"));
}

}  // namespace
}  // namespace tavo::test
