// Every way off the screen: what the host hears, when the ad is gone, and that both happen once.

#include <tavo/MoviePlayerFactory.h>
#include <tavo/SdkErrors.h>

#include "AdManager/XAdManager.h"
#include "Unit/InterstitialFixture.h"
#include "UserInterface/WebView/BaseViews/XAdViewOnlyForSubClassEyesDelegate.h"

namespace tavo::test {
namespace {

enum class Ad { page, picture, video, nothingYet };

class InterstitialEndTest : public InterstitialTest {
 protected:
  struct Way {
    const char* name;
    Ad ad;
    void (*act)(InterstitialEndTest&);
    Lines told;
    double delay = 0;  // seconds until the ad is off the screen
  };

  static const std::vector<Way>& ways();

  void begin(Ad ad) {
    switch (ad) {
      case Ad::page:
        return showPage();
      case Ad::picture:
        return show(imageAnswer());
      case Ad::video:
        return showVideo("skipOffset='00:00:05'");
      case Ad::nothingYet:
        makeController();
        present();
        happened();
        return;
    }
  }

  Lines told() {
    auto lines = happened();
    std::erase_if(lines, [](const std::string& line) {
      return line.starts_with("GET ") || line.starts_with("HEAD ") || line.starts_with("quartile");
    });
    return lines;
  }

  void fail(int code) {
    if (!controller_) return;
    fromAdView(&XAdViewDelegate::xAdViewDidFailWithError,
               std::optional{Error{"test", code, "lost"}});
  }

  // Everything that could end an interstitial, once more.
  void endAgain() {
    const auto held = controller_;
    if (held->xadView()) {
      const auto adView = held->xadView();
      adView->pDelegate.tell(&XAdViewOnlyForSubClassEyesDelegate::XInterstitialAdDidClose, *adView);
      fromAdView(&XAdViewDelegate::interstitialAdDismissed);
      fromAdView(&XAdViewDelegate::xAdViewDidDismissOnMemoryWarning);
    }
    held->closeInterstitialAd();
    for (const auto name : {notifications::screenLocked, notifications::didReceiveMemoryWarning,
                            notifications::didEnterBackground}) {
      post(name);
    }
    advance(60);
  }
};

const std::vector<InterstitialEndTest::Way>& InterstitialEndTest::ways() {
  using T = InterstitialEndTest;
  const Lines dismissed{"dismissed"};
  const Lines memory{"didDismissOnMemoryWarning", "dismissed"};
  static const std::vector<Way> all{
      {"its button", Ad::page, [](T& t) { t.tapCloseButton(); }, dismissed},
      {"a picture's button", Ad::picture, [](T& t) { t.tapCloseButton(); }, dismissed},
      {"a video's button", Ad::video, [](T& t) { t.advance(6), t.tapCloseButton(); }, dismissed},
      {"the host", Ad::page, [](T& t) { t.controller_->closeInterstitialAd(); }, dismissed},
      {"the creative", Ad::page, [](T& t) { t.creative("close"); }, dismissed},
      {"the end of the video", Ad::video, [](T& t) { t.advance(31); }, dismissed},
      {"Escape", Ad::page, [](T& t) { t.controller_->cancelOperation(); }, dismissed},
      {"Escape on a picture", Ad::picture, [](T& t) { t.controller_->cancelOperation(); },
       dismissed},
      {"Escape on a video", Ad::video, [](T& t) { t.advance(6), t.controller_->cancelOperation(); },
       dismissed},
      {"Escape before the ad", Ad::nothingYet, [](T& t) { t.controller_->cancelOperation(); },
       dismissed},
      {"the lock", Ad::page, [](T& t) { t.post(notifications::screenLocked); }, dismissed},
      {"the background", Ad::picture, [](T& t) { t.post(notifications::didEnterBackground); },
       dismissed},
      {"released memory", Ad::page, [](T& t) { t.controller_->releaseMemory(); }, dismissed},
      {"low memory", Ad::page, [](T& t) { t.post(notifications::didReceiveMemoryWarning); },
       memory},
      {"low memory in a video", Ad::video,
       [](T& t) { t.post(notifications::didReceiveMemoryWarning); }, memory},
      {"the ad view's low memory", Ad::page,
       [](T& t) { t.fromAdView(&XAdViewDelegate::xAdViewDidDismissOnMemoryWarning); }, memory},
      {"an error", Ad::page, [](T& t) { t.fail(-1005); }, {"didFail -1005 lost"}, 1.0},
      {"a lost page",
       Ad::page,
       [](T& t) { t.page().terminateProcess(), t.settle(); },
       {"didFail 1101 The page's process has ended."},
       1.0},
      {"no ad",
       Ad::nothingYet,
       [](T& t) {
         t.answer(noAdAnswer);
         t.loadController();
         t.settle();
       },
       {"didFail 1002 No ads available from TAVO server."},
       1.0},
      {"no ad received",
       Ad::nothingYet,
       [](T& t) { t.controller_->xAdViewDidReceiveNoAd(*t.controller_->xadView()); },
       {"didFail 1002 No Ad received from server."},
       1.0},
      {"the manager's error",
       Ad::page,
       [](T& t) {
         t.controller_->adManagerDidFailWithError(makeError(SdkError::vastInvalid, "bad"));
       },
       {"didFail 1011 bad"},
       3.0},
      {"the manager's error and then another",
       Ad::page,
       [](T& t) {
         t.controller_->adManagerDidFailWithError(std::nullopt);
         t.fail(7);
       },
       {"didFail none", "didFail 7 lost"},
       1.0},
  };
  return all;
}

TEST_F(InterstitialEndTest, EveryWayIsToldOnceAndRestoresTheHost) {
  for (const auto& way : ways()) {
    SCOPED_TRACE(way.name);
    begin(way.ad);
    ASSERT_TRUE(isOnScreen());
    way.act(*this);
    EXPECT_THAT(told(), ElementsAreArray(way.told));
    if (way.delay > 0) {
      EXPECT_TRUE(isOnScreen());
      advance(way.delay - 0.01);
      EXPECT_TRUE(isOnScreen());
      advance(0.02);
    }
    EXPECT_FALSE(isOnScreen());
    EXPECT_FALSE(platform_.application->statusBarHidden);
    EXPECT_EQ(window_->subviews().size(), 1U);
    EXPECT_FALSE(controller_->isBeingDismissed());
    endAgain();
    EXPECT_THAT(told(), IsEmpty());
  }
}

// What a host may get rid of inside a call, and inside which one.
TEST_F(InterstitialEndTest, AHostMayDropEverythingInsideEveryCall) {
  enum class Dropped { table, controller, both };
  for (const auto& way : ways()) {
    for (const auto dropped : {Dropped::table, Dropped::controller, Dropped::both}) {
      SCOPED_TRACE(std::string{way.name} + " " + std::to_string(static_cast<int>(dropped)));
      onCallback_ = {};
      begin(way.ad);
      onCallback_ = [&](const std::string&) {
        if (dropped != Dropped::controller) hostTable_.reset();
        if (dropped != Dropped::table) controller_.reset();
      };
      const std::weak_ptr<ViewController> watched = controller_;
      way.act(*this);
      advance(60);
      EXPECT_FALSE(isOnScreen());
      EXPECT_EQ(watched.expired(), dropped != Dropped::table);
    }
  }
  onCallback_ = {};
}

TEST_F(InterstitialEndTest, NothingIsLeftOfAControllerThatItsHostDroppedWhileItLoaded) {
  for (const auto& body : {htmlAnswer(), imageAnswer(), vastAnswer(VastDocument{}.text())}) {
    SCOPED_TRACE(body);
    onCallback_ = {};
    makeController();
    answer(body);
    loadController();
    const std::weak_ptr<ViewController> watched = controller_;
    onCallback_ = [&](const std::string& line) {
      if (line == "didLoad" || line == "shouldDisplay?") controller_.reset();
    };
    settle();
    advance(60);
    EXPECT_TRUE(watched.expired());
    EXPECT_FALSE(isOnScreen());
  }
}

TEST_F(InterstitialEndTest, EscapeIsNoWayAroundTheCountdownOfAVideo) {
  showVideo("skipOffset='00:00:05'");
  for (int second = 0; second < 4; ++second) {
    EXPECT_TRUE(controller_->cancelOperation()) << "the host must not hear the key either";
    advance(1);
  }
  EXPECT_TRUE(isOnScreen());
  EXPECT_THAT(told(), IsEmpty());
  advance(2);
  EXPECT_TRUE(controller_->cancelOperation());
  EXPECT_FALSE(isOnScreen());
  EXPECT_THAT(told(), ElementsAre("dismissed"));
}

TEST_F(InterstitialEndTest, ACancelledLoadIsNeitherToldNorAnEnd) {
  showPage();
  fail(-999);
  advance(10);
  EXPECT_TRUE(isOnScreen());
  EXPECT_THAT(told(), IsEmpty());
}

TEST_F(InterstitialEndTest, AnAdThatCannotPlayFailsAndGoesWithoutAnotherWord) {
  makeController();
  (*platform_.moviePlayers->movies)[mediaUrl] = {.hasVideo = false};
  answer(vastAnswer(VastDocument{}.text()));
  loadController();
  present();
  settle();
  EXPECT_TRUE(isOnScreen());
  advance(20);
  EXPECT_THAT(told(), ElementsAre(StartsWith("didFail ")));
  EXPECT_FALSE(isOnScreen());
}

TEST_F(InterstitialEndTest, TheCreativeHearsThatItIsHiddenBeforeItGoes) {
  showPage();
  startConversation();
  tapCloseButton();
  const auto lines = happened();
  ASSERT_EQ(lines.size(), 7U);
  EXPECT_EQ(lines.front(), "mraid.setState('hidden');");
  EXPECT_EQ(lines.back(), "dismissed");
}

TEST_F(InterstitialEndTest, WhatTheAdHasPresentedGoesWithIt) {
  const std::pair<const char*, std::function<void()>> cases[] = {
      {"the creative", [this] { creative("close"); }},
      {"the lock", [this] { post(notifications::screenLocked); }},
      {"an error", [this] { fail(1), advance(1.1); }},
      {"the end of a video", [this] { fromAdView(&XAdViewDelegate::interstitialAdDismissed); }}};
  for (const auto& [name, act] : cases) {
    SCOPED_TRACE(name);
    showPage();
    const auto above = std::make_shared<ViewController>();
    controller_->presentViewController(above, Animated::no);
    ASSERT_EQ(above->presentingViewController(), controller_.get());
    act();
    EXPECT_FALSE(isOnScreen());
    EXPECT_EQ(above->presentingViewController(), nullptr);
    EXPECT_EQ(window_->subviews().size(), 1U);
  }
}

TEST_F(InterstitialEndTest, AHostThatDoesNotHearOfLowMemoryHearsNothingOfItQuirk) {
  showPage();
  hostTable_->xAdInterstitialDidDismissOnMemoryWarning = {};
  post(notifications::didReceiveMemoryWarning);
  EXPECT_FALSE(isOnScreen());
  EXPECT_THAT(told(), IsEmpty());
}

TEST_F(InterstitialEndTest, ReleasedMemoryIsReallyFree) {
  showVideo();
  const std::weak_ptr<XAdView> adView = controller_->xadView();
  const std::weak_ptr<MoviePlayer> movie = platform_.moviePlayers->last();
  controller_->adManager = XAdManager::create(runtime_.environment(), {}, nullptr);
  controller_->viewController = std::make_shared<ViewController>();
  post(notifications::didReceiveMemoryWarning);
  EXPECT_TRUE(adView.expired());
  EXPECT_TRUE(movie.expired());
  EXPECT_EQ(controller_->slotConfiguration, nullptr);
  EXPECT_EQ(controller_->adManager, nullptr);
  EXPECT_EQ(controller_->viewController, nullptr);
  EXPECT_EQ(controller_->orientationProp(), nullptr);
  EXPECT_EQ(platform_.runLoop->activeTimers(), 0U);
  happened();
  loadController();
  settle();
  advance(0.2);
  EXPECT_TRUE(isOnScreen()) << "and a later load begins anew";
}

TEST_F(InterstitialEndTest, AnOldFailureDoesNotTakeTheNextAdAway) {
  showPage();
  fail(1);
  advance(0.5);
  loadController();
  settle();
  advance(5);
  EXPECT_TRUE(isOnScreen());
}

TEST_F(InterstitialEndTest, AWindowThatGoesTakesItsInterstitialAlong) {
  showPage();
  platform_.application->allWindows.clear();
  window_.reset();
  root_.reset();
  EXPECT_EQ(controller_->presentingViewController(), nullptr);
  controller_->closeInterstitialAd();
  EXPECT_THAT(told(), ElementsAre("dismissed"));
}

}  // namespace
}  // namespace tavo::test
