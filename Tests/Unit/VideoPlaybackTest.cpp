#include "Communicator/Network/XNetworkManager.h"
#include "Runtime/NotificationCenter.h"
#include "Unit/VastFixture.h"
#include "UserInterface/NativeView/XMPMoviePlayer.h"

namespace tavo::test {
namespace {

std::string ping(const std::string& event) { return "GET http://t.example/inline/" + event; }
const std::string handedBack = "prerollDidFinish http://host.example/film.mp4";

using VideoPlaybackTest = VastTest;

TEST_F(VideoPlaybackTest, APrerollPlaysToItsEndAndReportsEachMilestoneOnce) {
  makePreroll();
  play();
  EXPECT_THAT(played(), IsEmpty()) << "the first picture has not come";
  advance(0.2);
  EXPECT_THAT(played(), ElementsAre(ping("start"), "didLoad"));
  advance(7);
  EXPECT_THAT(played(), IsEmpty());
  advance(1);
  EXPECT_THAT(played(), ElementsAre(ping("firstQuartile"), "quartile 0"));
  advance(21.4);
  EXPECT_THAT(played(),
              ElementsAre(ping("midpoint"), "quartile 1", ping("thirdQuartile"), "quartile 2"));
  advance(1);
  EXPECT_THAT(played(), ElementsAre(ping("complete"), handedBack));
  EXPECT_EQ(buttonOn(*host_), nullptr);
  EXPECT_TRUE(host_->tapRecognizers().empty());
  EXPECT_EQ(host_->controlStyle(), MovieControlStyle::embedded);
  advance(100);
  EXPECT_THAT(played(), IsEmpty());
  EXPECT_EQ(platform_.runLoop->activeTimers(), 0U);
}

TEST_F(VideoPlaybackTest, TheCountdownRunsToTheSkipPointAndTheSkipIsTold) {
  makePreroll();
  play({.linearAttributes = "skipOffset='00:00:05'"});
  advance(0.15);
  ASSERT_TRUE(buttonOn(*host_));
  EXPECT_EQ(buttonOn(*host_)->title(), "00:05");
  EXPECT_EQ(buttonOn(*host_)->frame(), (Rect{276, 0, 44, 44}));
  buttonOn(*host_)->setFrame({});
  post(notifications::deviceOrientationDidChange);
  EXPECT_EQ(buttonOn(*host_)->frame(), (Rect{276, 0, 44, 44})) << "also after a rotation";
  EXPECT_EQ(host_->controlStyle(), MovieControlStyle::none);
  deliverTap(*buttonOn(*host_), {1, 1});  // it takes no touch
  advance(1.1);
  EXPECT_EQ(buttonOn(*host_)->title(), "00:04");
  advance(4);
  EXPECT_EQ(buttonOn(*host_)->frame(), (Rect{271, 0, 44, 44}));
  EXPECT_EQ(host_->controlStyle(), MovieControlStyle::embedded);
  played();
  buttonOn(*host_)->press();
  settle();
  EXPECT_THAT(played(), ElementsAre(handedBack, ping("skip"), "didSkip"));
  EXPECT_EQ(buttonOn(*host_), nullptr);
  advance(60);
  EXPECT_THAT(played(), IsEmpty());
}

TEST_F(VideoPlaybackTest, AVideoThatWaitsIsSilentAndOneThatGoesBackTellsNoQuartileTwice) {
  makePreroll();
  play();
  advance(9);
  played();
  host_->pause();
  settle();
  EXPECT_THAT(played(), ElementsAre(ping("pause"), "didPause"));
  advance(60);
  EXPECT_THAT(played(), IsEmpty());
  host_->play();
  host_->seekByHand(1);
  settle();
  EXPECT_THAT(played(), ElementsAre(ping("rewind"), "didRewind", ping("resume"), "didResume"));
  advance(10);
  EXPECT_THAT(played(), IsEmpty());
}

TEST_F(VideoPlaybackTest, ATapPausesAndOpensTheClickThroughAndTheNextTapPlaysOn) {
  makePreroll();
  play();
  advance(5);
  played();
  deliverTap(*host_, {100, 100});
  settle();
  EXPECT_THAT(played(), ElementsAre("didClick", "willLeaveApplication", ping("pause"), "didPause"));
  EXPECT_THAT(platform_.application->openedUrls,
              ElementsAre(Url::parse("http://click.example/video")));
  deliverTap(*host_, {100, 100});
  settle();
  EXPECT_THAT(played(), ElementsAre(ping("resume"), "didResume"));
}

TEST_F(VideoPlaybackTest, VideosThatCannotBePlayedEndInAnErrorAndTheHostGoesOn) {
  struct Case {
    const char* name;
    headless::ScriptedMovie movie;
    double within;
    Lines told;
  };
  const Case cases[] = {
      {"a picture", {.hasVideo = false}, 1, {"didFail 2 The video cannot be played.", handedBack}},
      {"a silent server",
       {.arrives = false},
       8.1,
       {"didFail 3 No picture came in time.", handedBack}},
      {"a cut file",
       {.cutAt = 5},
       6,
       {ping("start"), "didLoad", "didFail 4 The data ended before the video did.", handedBack}},
      {"a stalled server",
       {.stallAt = 5},
       13.2,
       {ping("start"), "didLoad", "didFail 3 The video stands still.", handedBack}},
  };
  makePreroll();
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    (*platform_.moviePlayers->movies)[mediaUrl] = test.movie;
    play();
    advance(test.within);
    EXPECT_EQ(played(), test.told);
    EXPECT_EQ(host_->contentUrl().text(), contentUrl);
    EXPECT_EQ(buttonOn(*host_), nullptr);
  }
}

TEST_F(VideoPlaybackTest, TheHostsContentGoesOnWhereItWas) {
  makePreroll();
  host_->shouldAutoplay = false;
  host_->prepareToPlay();
  advance(0.2);
  host_->setCurrentPlaybackTime(42);
  play({.linearAttributes = "skipOffset='1%'"});
  advance(1);
  buttonOn(*host_)->press();
  EXPECT_EQ(host_->contentUrl().text(), contentUrl);
  EXPECT_EQ(host_->currentPlaybackTime(), 42);
  EXPECT_FALSE(host_->shouldAutoplay);
}

TEST_F(VideoPlaybackTest, AnAdWithoutAWayOutGetsOneAfterFifteenSeconds) {
  for (const bool preroll : {true, false}) {
    // Before the start, and long after the end.
    for (const std::string offset : {"-5%", "00:01:00"}) {
      SCOPED_TRACE(offset + (preroll ? " preroll" : " interstitial"));
      preroll ? makePreroll() : makeInterstitial();
      play({.linearAttributes = "skipOffset='" + offset + "'"});
      advance(14.9);
      View& video = preroll ? *host_ : *banner_->subviews().front();
      ASSERT_TRUE(buttonOn(video));
      EXPECT_FALSE(buttonOn(video)->isUserInteractionEnabled());
      advance(0.3);
      ASSERT_TRUE(buttonOn(video)->isUserInteractionEnabled());
      buttonOn(video)->press();
      settle();
      EXPECT_THAT(played(), Contains(preroll ? "didSkip" : "interstitialDismissed"));
    }
  }
}

TEST_F(VideoPlaybackTest, AQuartileIsToldAtItsTimeAlsoAfterAPause) {
  (*platform_.moviePlayers->movies)[mediaUrl] = {.duration = 31};
  makePreroll();
  play();
  advance(0.1 + 7.74);
  host_->pause();
  advance(60);
  host_->play();
  settle();
  played();
  advance(0.03);
  EXPECT_THAT(played(), ElementsAre(ping("firstQuartile"), "quartile 0"));
  EXPECT_THAT(host_->currentPlaybackTime(), AllOf(testing::Ge(7.75), testing::Lt(7.8)));
}

TEST_F(VideoPlaybackTest, ConnectivityThatGoesBeforeTheFirstPictureEndsTheAd) {
  makePreroll();
  play();
  platform_.network->setReachable(false);
  settle();
  EXPECT_THAT(played(), ElementsAre(handedBack));
  platform_.network->setReachable(true);
  play();
  advance(1);
  played();
  platform_.network->setReachable(false);
  settle();
  EXPECT_THAT(played(), IsEmpty()) << "what plays plays on";
  platform_.network->setReachable(true);
  platform_.http->forget(mediaUrl);
  platform_.http->answer(mediaUrl, {.delay = Seconds{1}});
  play();
  platform_.network->setReachable(false);
  advance(2);
  EXPECT_THAT(played(), ElementsAre(handedBack)) << "nor does it begin without one";
  EXPECT_EQ(host_->contentUrl().text(), contentUrl);
}

TEST_F(VideoPlaybackTest, LowMemoryEndsThePrerollAndHandsThePlayerBack) {
  makePreroll();
  play();
  advance(1);
  played();
  post(notifications::didReceiveMemoryWarning);
  EXPECT_THAT(played(), ElementsAre("didDismissOnMemoryWarning", handedBack));
}

TEST_F(VideoPlaybackTest, AScreenLockedForLongPutsTheAdToSleepUntilTheUserIsBack) {
  makePreroll();
  play();
  advance(1);
  host_->pause();
  settle();
  played();
  post(notifications::screenLocked);
  advance(29);
  post(notifications::willEnterForeground);  // back in time: the ad stays
  advance(60);
  EXPECT_THAT(played(), IsEmpty());
  EXPECT_EQ(host_->contentUrl().text(), mediaUrl);
  post(notifications::screenLocked);
  advance(31);
  EXPECT_EQ(host_->playbackState(), MoviePlaybackState::stopped);
  EXPECT_THAT(played(), IsEmpty());
  post(notifications::willEnterForeground);
  EXPECT_THAT(played(), ElementsAre(handedBack));
  EXPECT_EQ(platform_.runLoop->activeTimers(), 0U);
}

TEST_F(VideoPlaybackTest, AnAdThatEndsBehindTheLockHandsThePlayerBackLater) {
  makePreroll();
  play();
  advance(20);
  played();
  post(notifications::screenLocked);
  advance(15);
  EXPECT_THAT(played(), ElementsAre(ping("thirdQuartile"), "quartile 2", ping("complete")));
  post(notifications::willEnterForeground);
  EXPECT_THAT(played(), ElementsAre(handedBack));
}

TEST_F(VideoPlaybackTest, AnInterstitialIsClosedByItsButtonWhichCountsAsASkipQuirk) {
  makeInterstitial();
  play({.linearAttributes = "skipOffset='00:00:05'"});
  advance(0.2);
  EXPECT_THAT(played(), ElementsAre(ping("start"), "didLoad"));
  EXPECT_EQ(banner_->mobileAdSubTypes(), MobileAdSubTypes::vastInterstitial);
  ASSERT_EQ(banner_->subviews().size(), 1U);
  View& video = *banner_->subviews().front();
  ASSERT_TRUE(buttonOn(video));
  EXPECT_EQ(buttonOn(video)->title(), "00:05");
  advance(5.1);
  buttonOn(video)->press();
  settle();
  EXPECT_THAT(played(), ElementsAre("interstitialDismissed", ping("skip")));
  EXPECT_EQ(platform_.runLoop->activeTimers(), 0U);
}

TEST_F(VideoPlaybackTest, AnInterstitialLeavesFullScreenWhenItGoes) {
  for (const bool dropped : {false, true}) {
    makeInterstitial();
    play();
    advance(1);
    movie().setFullscreen(true);
    ASSERT_EQ(window_->subviews().back().get(), &movie());
    if (dropped) {
      drop();
    } else {
      post(notifications::didReceiveMemoryWarning);
    }
    settle();
    for (const auto& view : window_->subviews()) {
      EXPECT_EQ(dynamic_cast<MoviePlayer*>(view.get()), nullptr) << dropped;
    }
  }
}

TEST_F(VideoPlaybackTest, DroppingTheSlotGivesTheHostItsContentBackWithoutAWord) {
  makePreroll();
  play();
  advance(2);
  played();
  drop();
  advance(60);
  EXPECT_THAT(played(), IsEmpty());
  EXPECT_EQ(host_->contentUrl().text(), contentUrl);
  EXPECT_EQ(buttonOn(*host_), nullptr);
  EXPECT_EQ(platform_.runLoop->activeTimers(), 0U);
}

TEST_F(VideoPlaybackTest, AHostMayDropTheSlotInsideAnyCall) {
  for (const bool preroll : {true, false}) {
    for (const char* moment : {"didLoad", "quartile 1", "didPause", "didSkip", "prerollDidFinish",
                               "didFail", "interstitialDismissed"}) {
      SCOPED_TRACE(std::string{moment} + (preroll ? " preroll" : " interstitial"));
      dropsInside(moment);
      preroll ? makePreroll() : makeInterstitial();
      play({.linearAttributes = "skipOffset='00:00:01'"});
      const auto video = preroll ? host_ : platform_.moviePlayers->last();
      ASSERT_TRUE(video);
      advance(20);
      if (banner_) {
        video->pause();
        settle();
      }
      if (banner_) {
        video->play();
        const auto button = buttonOn(preroll ? *video : *banner_->subviews().front());
        ASSERT_TRUE(button);
        button->press();
      }
      advance(30);
      onCallback_ = {};
      drop();
      settle();
      EXPECT_EQ(platform_.runLoop->activeTimers(), 0U);
      if (host_) {
        EXPECT_EQ(host_->contentUrl().text(), contentUrl);
      }
      if (host_) host_->removeFromSuperview();
      host_.reset();
    }
  }
}

}  // namespace
}  // namespace tavo::test
