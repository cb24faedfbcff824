#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "Gtk/Scene/MovieSlot.h"
#include "Scene/TapRecognizer.h"
#include "Services/MoviePlayerFactory.h"
#include "Services/WebViewFactory.h"
#include "Support/GtkHost.h"
#include "Support/HostileServer.h"
#include "Support/StandInHandlers.h"
#include "UserInterface/NativeView/XVASTVideoView.h"
#include "UserInterface/WebView/InAppBrowser/XInAppBrowser.h"

namespace tavo::test {
namespace {

using adserver::RequestKind;
using testing::ElementsAre;
using testing::HasSubstr;
using Lines = std::vector<std::string>;

StandInHandlers handlers;  // pages are shown where the system has a handler for them

constexpr Color yellowBar{1, 1, 0, 1};  // the second of seven in the clip

std::string bytesOf(const std::string& path) {
  std::ifstream file{path, std::ios::binary};
  std::ostringstream bytes;
  bytes << file.rdbuf();
  return bytes.str();
}

std::string clip() { return bytesOf(std::string{TAVO_CAMPAIGNS} + "/vast-preroll/clip.mp4"); }

// The sample campaigns, and one for each place that a video may come from.
class Campaigns {
 public:
  Campaigns() {
    std::filesystem::copy(TAVO_CAMPAIGNS, folder_.path("all"),
                          std::filesystem::copy_options::recursive);
  }
  [[nodiscard]] std::string path() const { return folder_.path("all"); }

  // A campaign whose video is at `media`.
  void add(const std::string& name, const std::string& media) const {
    const std::filesystem::path place = path() + "/" + name;
    std::filesystem::create_directories(place);
    std::string document = bytesOf(path() + "/vast-preroll/creative.xml");
    const std::string sample = "${server}/assets/vast-preroll/clip.mp4";
    document.replace(document.find(sample), sample.size(), media);
    std::ofstream{place / "creative.xml"} << document;
    std::ofstream{place / "answer.json"}
        << R"({"Ad":[{"AdType":"text/xml","Text":"${creative.xml}"}]})";
  }

 private:
  TemporaryFolder folder_;
};

const Campaigns& campaigns() {
  static const Campaigns all;
  return all;
}

// One host for the whole process: a window with a player of the host's, and its ad slot.
GtkHost& host() {
  static GtkHost only{campaigns().path()};
  return only;
}

class VideoOnScreenTest : public testing::Test {
 protected:
  VideoOnScreenTest() {
    host().makeBanner();
    *host().settings = {};
    player_ = Runtime::current().platform().moviePlayers->create({0, 0, 320, 180});
    slot_ = std::make_unique<gtk::MovieSlot>(player_);
    host().column().prepend(*slot_);
    EXPECT_TRUE(host().runUntil([this] { return slot_->get_mapped(); }));
    listen();
    host().banner()->setMoviePlayerInstance(player_);
    host().server().record().clear();
  }
  ~VideoOnScreenTest() override {
    host().column().remove(*slot_);
    slot_.reset();
  }

  void listen() {
    const auto noteQuartile = [this](XAdView&, int quartile) {
      told_.push_back("quartile " + std::to_string(quartile));
    };
    events_ = std::make_shared<XAdViewDelegate>(XAdViewDelegate{
        .xAdViewDidLoad = [this](XAdView&) { told_.emplace_back("didLoad"); },
        .xAdViewDidFailWithError =
            [this](XAdView&, const std::optional<Error>& error) {
              told_.push_back("didFail " + std::to_string(error ? error->code : 0));
            },
        .xAdViewPrerollDidFinishWithPlayer =
            [this](XAdView&, const std::shared_ptr<MoviePlayer>& player) {
              told_.emplace_back(player == player_ ? "handedBack" : "handedBack another");
            },
        .xAdViewDidFinishQuartile = noteQuartile,
        .xAdViewDidPauseVideo = [this](XAdView&) { told_.emplace_back("didPause"); },
        .xAdViewDidResume = [this](XAdView&) { told_.emplace_back("didResume"); },
        .xAdViewDidSkipVideo = [this](XAdView&) { told_.emplace_back("didSkip"); },
        .interstitialAdDismissed = [this](XAdView&) { told_.emplace_back("dismissed"); }});
    host().banner()->delegate.set(events_);
  }

  [[nodiscard]] bool hasTold(const std::string& line) const {
    return std::find(told_.begin(), told_.end(), line) != told_.end();
  }
  bool waitFor(const std::string& line) {
    return host().runUntil([&] { return hasTold(line); });
  }
  [[nodiscard]] static Lines pings() {
    Lines all;
    for (const auto& request : host().server().record().requests(RequestKind::Tracking)) {
      all.push_back(request.detail);
    }
    return all;
  }
  [[nodiscard]] static bool waitForPing(const std::string& event) {
    return host().runUntil([&] {
      const auto all = pings();
      return std::find(all.begin(), all.end(), event) != all.end();
    });
  }
  // The button on the video; null while there is none.
  [[nodiscard]] static Button* buttonOn(const View& video) {
    for (const auto& view : video.subviews()) {
      if (auto* button = dynamic_cast<Button*>(view.get())) return button;
    }
    return nullptr;
  }
  static bool waitForControl(const View& video) {
    return host().runUntil([&] {
      const Button* button = buttonOn(video);
      return button != nullptr && button->isUserInteractionEnabled();
    });
  }
  // For a person to look at, where the environment names a folder.
  static void keepPicture(const std::string& name) {
    const char* folder = std::getenv("TAVO_SHOTS");
    if (folder == nullptr) return;
    EXPECT_TRUE(host().runUntil([&] {
      return adplayer::Screenshot{host().window()}.save(std::string{folder} + "/" + name + ".png");
    }));
  }
  bool waitForPicture() {
    return host().runUntil([this] {
      double x = 0;
      double y = 0;
      if (!slot_->translate_coordinates(host().window(), 68, 60, x, y)) return false;
      const Color pixel =
          adplayer::Screenshot{host().window()}.pixel(static_cast<int>(x), static_cast<int>(y));
      return std::abs(pixel.red - yellowBar.red) < 0.1F &&
             std::abs(pixel.green - yellowBar.green) < 0.1F && pixel.blue < 0.15F;
    });
  }

  std::shared_ptr<MoviePlayer> player_;
  std::unique_ptr<gtk::MovieSlot> slot_;
  Lines told_;
  std::shared_ptr<const XAdViewDelegate> events_;
};

TEST_F(VideoOnScreenTest, APrerollPlaysAndTheServerHearsEachMilestoneOnceAndInOrder) {
  player_->setContentUrl(Url::parse("http://127.0.0.1:1/film.mp4"));
  host().load("vast-preroll");
  ASSERT_TRUE(waitFor("didLoad"));
  host().runUntil([this] { return player_->currentPlaybackTime() > 1; });
  keepPicture("playing");
  EXPECT_TRUE(waitForPicture());
  ASSERT_TRUE(waitFor("handedBack"));
  EXPECT_TRUE(waitForPing("complete"));
  EXPECT_THAT(told_,
              ElementsAre("didLoad", "quartile 0", "quartile 1", "quartile 2", "handedBack"));
  EXPECT_THAT(pings(), ElementsAre("inline-impression", "impression", "start", "firstQuartile",
                                   "midpoint", "thirdQuartile", "complete"));
  EXPECT_EQ(player_->contentUrl().text(), "http://127.0.0.1:1/film.mp4");
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
  keepPicture("skip-button");
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

TEST_F(VideoOnScreenTest, WrappersCountTheVideoToo) {
  host().load("vast-wrapped");
  ASSERT_TRUE(waitFor("handedBack"));
  EXPECT_TRUE(waitForPing("second-complete"));
  EXPECT_THAT(pings(), testing::UnorderedElementsAre("first-impression", "second-impression",
                                                     "inline-impression", "impression", "start",
                                                     "first-start", "second-start", "firstQuartile",
                                                     "midpoint", "thirdQuartile", "complete",
                                                     "first-complete", "second-complete"));
}

TEST_F(VideoOnScreenTest, AWrapperThatLeadsNowhereFails) {
  host().load("vast-missing-target");
  ASSERT_TRUE(waitFor("didFail 1012"));
  EXPECT_THAT(told_, ElementsAre("didFail 1012"));
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
  const PlainAnswer picture{
      .body = bytesOf(std::string{TAVO_CAMPAIGNS} + "/image-banner/banner.png"),
      .contentType = "video/mp4"};
  const PlainAnswer text{.body = "<html>not a video</html>", .contentType = "video/mp4"};
  const PlainAnswer gone{.status = 404};
  const CloseInBody hangsUp{.body = cut.body, .promisedBytes = whole.body.size()};
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
  };
  HostileServer server;
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    told_.clear();
    const std::string path = std::string{"/"} + test.name + ".mp4";
    server.on(path, test.media);
    campaigns().add(test.name, server.url(path));
    host().load(test.name);
    ASSERT_TRUE(waitFor(std::string{test.name} == "probe-404" ? "didFail 1012" : "handedBack"));
    std::erase_if(told_, [](const std::string& line) { return line.starts_with("quartile"); });
    EXPECT_THAT(told_, test.told);
    EXPECT_EQ(buttonOn(*player_), nullptr);
  }
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
  const std::string file = std::string{"file://"} + TAVO_CAMPAIGNS + "/vast-preroll/clip.mp4";
  for (const std::string& url : {file, std::string{"v4l2:///dev/video0"}}) {
    listener->failed = false;
    player_->setContentUrl(Url::parse(url));
    player_->play();
    EXPECT_TRUE(host().runUntil([&] { return listener->failed; })) << url;
    EXPECT_FALSE(listener->played) << url;
  }
}

TEST_F(VideoOnScreenTest, TheCountdownStandsInSixPlaces) {
  for (unsigned position = 0; position < 6; ++position) {
    SCOPED_TRACE(position);
    told_.clear();
    host().settings->countdownTimerPosition = position;
    host().load("vast-preroll");
    ASSERT_TRUE(waitFor("didLoad"));
    EXPECT_TRUE(waitForPicture());
    const Button* button = buttonOn(*player_);
    ASSERT_NE(button, nullptr);
    EXPECT_THAT(button->title(), HasSubstr("00:0"));
    keepPicture("countdown-" + std::to_string(position));
  }
}

TEST_F(VideoOnScreenTest, ClosingTheInterstitialCountsAsASkip) {
  const auto& banner = host().banner();
  banner->setMoviePlayerInstance(nullptr);
  banner->setFrame({0, 0, 320, 240});
  host().slot().queue_resize();
  banner->setMobileAdTypes(MobileAdTypes::interstitial);
  host().load("vast-preroll");
  ASSERT_TRUE(waitFor("didLoad"));
  ASSERT_EQ(banner->subviews().size(), 1U);
  const View& video = *banner->subviews().front();
  keepPicture("interstitial-countdown");
  ASSERT_TRUE(waitForControl(video));
  keepPicture("interstitial-close");
  buttonOn(video)->press();
  EXPECT_TRUE(waitForPing("skip"));
  EXPECT_EQ(told_.back(), "dismissed");
}

}  // namespace
}  // namespace tavo::test
