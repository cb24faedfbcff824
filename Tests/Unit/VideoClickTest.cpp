// Where a click on a video leads when the slot keeps its pages inside the application.

#include "ClickThrough/AppStore.h"
#include "Runtime/NotificationCenter.h"
#include "Unit/VastFixture.h"
#include "UserInterface/WebView/InAppBrowser/XInAppBrowser.h"

namespace tavo::test {
namespace {

constexpr const char* clickUrl = "http://click.example/video";
const std::string asked = std::string{"GET "} + clickUrl;
const std::string handedBack = "prerollDidFinish http://host.example/film.mp4";

class VideoClickTest : public VastTest {
 protected:
  VideoClickTest() {
    slot_->shouldOpenClickThroughURLInAppBrowser = true;
    platform_.http->answerWith(clickUrl, "text/html", "<p></p>");
    AppStoreConfiguration::sharedInstance() = {.hosts = {"store.example", "shop.example"},
                                               .productPagePrefix = "http://store.example/id"};
  }

  void startPreroll() {
    makePreroll();
    play();
    advance(5);
    played();
  }
  // Taps the video; returns what that led to, without the pause of the video.
  Lines click() {
    deliverTap(movie(), {100, 100});
    settle();
    return withoutPause(played());
  }
  Lines withoutPause(Lines lines) {
    std::erase_if(lines, [](const std::string& line) {
      return line == "didPause" || line == "GET http://t.example/inline/pause";
    });
    return lines;
  }
  [[nodiscard]] headless::HeadlessMoviePlayer& movie() {
    return host_ ? *host_ : VastTest::movie();
  }
  // The page in front of everything; null when there is none.
  [[nodiscard]] std::shared_ptr<XInAppBrowser> browser() const {
    auto* top = window_->topViewController();
    if (dynamic_cast<XInAppBrowser*>(top) == nullptr) return nullptr;
    return std::static_pointer_cast<XInAppBrowser>(top->shared_from_this());
  }
};

TEST_F(VideoClickTest, APageIsShownAboveThePrerollWhichWaits) {
  slot_->dismissVideoOnClickThrough = false;
  startPreroll();
  EXPECT_THAT(click(), ElementsAre("didClick", asked, "willOpenBrowser"));
  ASSERT_TRUE(browser());
  EXPECT_EQ(browser()->URL().text(), clickUrl);
  EXPECT_THAT(platform_.application->openedUrls, IsEmpty());
  browser()->actionButtonItemClicked();
  EXPECT_THAT(played(), ElementsAre("willLeaveApplication"));
  browser()->closeButtonItemClicked();
  EXPECT_FALSE(browser());
  EXPECT_THAT(played(), ElementsAre("willCloseBrowser"));
  EXPECT_EQ(host_->playbackState(), MoviePlaybackState::paused);
  EXPECT_THAT(click(), ElementsAre("GET http://t.example/inline/resume", "didResume"));
  slot_->dismissVideoOnClickThrough = true;
  click();
  browser()->closeButtonItemClicked();
  settle();
  EXPECT_THAT(played(), ElementsAre("willCloseBrowser", handedBack)) << "a video that ends with it";
}

TEST_F(VideoClickTest, AVideoThatEndsTakesThePageWithIt) {
  startPreroll();
  click();
  ASSERT_TRUE(browser());
  post(notifications::didReceiveMemoryWarning);
  EXPECT_FALSE(browser());
}

TEST_F(VideoClickTest, AnInterstitialPresentsFromTheFront) {
  makeInterstitial();
  const auto above = std::make_shared<ViewController>();
  root_->presentViewController(above, Animated::no);
  above->view()->addSubview(banner_);
  play();
  advance(5);
  played();
  EXPECT_THAT(click(), ElementsAre("didClick", asked, "willOpenBrowser"));
  EXPECT_NE(dynamic_cast<XInAppBrowser*>(above->presentedViewController()), nullptr);
}

TEST_F(VideoClickTest, AStorePageOpensTheSheetAfterAMoment) {
  platform_.http->forget(clickUrl);
  platform_.http->answer(clickUrl,
                         {.status = 302, .headers = {{"Location", "http://store.example/id42"}}});
  platform_.http->answerWith("http://store.example/id42", "text/html", "<p></p>");
  startPreroll();
  click();
  EXPECT_EQ(root_->presentedViewController(), nullptr);
  advance(0.5);
  ASSERT_NE(root_->presentedViewController(), nullptr);
  played();
  platform_.composers->storeFinished();
  settle();
  EXPECT_EQ(root_->presentedViewController(), nullptr);
  EXPECT_THAT(played(), ElementsAre(handedBack));
}

TEST_F(VideoClickTest, WhatIsStillToComeOfAClickStaysAwayOnceTheAdIsOver) {
  for (const char* way : {"http://slow.example/", "http://store.example/id42"}) {
    for (const bool preroll : {true, false}) {
      SCOPED_TRACE(std::string{way} + (preroll ? " preroll" : " interstitial"));
      platform_.http->forget(clickUrl);
      platform_.http->answer(clickUrl, {.status = 302, .headers = {{"Location", way}}});
      platform_.http->answer("http://slow.example/", {.delay = Seconds{0.3}});
      platform_.http->answerWith("http://store.example/id42", "text/html", "<p></p>");
      preroll ? makePreroll() : makeInterstitial();
      if (!preroll) host_.reset();
      play();
      advance(5);
      click();
      advance(0.1);
      runtime_.notifications().post(notifications::didReceiveMemoryWarning);
      advance(2);
      EXPECT_EQ(root_->presentedViewController(), nullptr);
    }
  }
}

TEST_F(VideoClickTest, QuirkOneVersionHidesTheStatusBar) {
  platform_.application->openableSchemes.clear();  // no browser of the system is needed
  platform_.device->version = "7.0";
  startPreroll();
  EXPECT_THAT(click(), ElementsAre("didClick", asked, "willOpenBrowser"));
  EXPECT_TRUE(browser());
  EXPECT_TRUE(platform_.application->statusBarHidden) << "only of this version";
}

TEST_F(VideoClickTest, AnAddressThatNothingCanShowOpensNothing) {
  for (const char* address : {"", "tel:5550100"}) {
    makePreroll();
    play({.click = address});
    advance(5);
    click();
    EXPECT_EQ(window_->topViewController(), root_.get()) << address;
  }
}

TEST_F(VideoClickTest, WithoutRoomNothingIsShown) {
  startPreroll();
  const auto other = std::make_shared<ViewController>();
  root_->presentViewController(other, Animated::no);
  EXPECT_THAT(click(), ElementsAre("didClick", asked));
  EXPECT_EQ(window_->topViewController(), other.get());
}

TEST_F(VideoClickTest, AHostMayDropTheSlotInsideEveryReport) {
  for (const char* moment : {"didClick", "willOpenBrowser", "willCloseBrowser"}) {
    SCOPED_TRACE(moment);
    startPreroll();
    dropsInside(moment);
    click();
    if (browser()) browser()->closeButtonItemClicked();
    settle();
    onCallback_ = {};
    EXPECT_EQ(banner_, nullptr);
    EXPECT_EQ(host_->contentUrl().text(), contentUrl);
    EXPECT_FALSE(browser());
    host_->removeFromSuperview();
    host_.reset();
  }
}

}  // namespace
}  // namespace tavo::test
