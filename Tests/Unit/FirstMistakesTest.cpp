// What somebody new to the library gets wrong ends in a sentence, and in nothing else.

#include <stdexcept>
#include <thread>

#include <tavo/XAdInterstitialViewController.h>
#include <tavo/XGlobalConfiguration.h>

#include "AdManager/HostMistakes.h"
#include "Unit/AdViewFixture.h"

namespace tavo::test {
namespace {

class FirstMistakes : public AdViewTest {
 protected:
  [[nodiscard]] Lines warnings() const { return platform_.log->messages(LogLevel::warning); }

  const std::string offline_ = "didFail 1003 Network connectivity not available";
};

TEST_F(FirstMistakes, AHostThatTriesAgainWhenItIsOfflineDoesNotRecurse) {
  makeBanner();
  platform_.network->setReachable(false);
  int depth = 0;
  int calls = 0;
  onCallback_ = [&](const std::string&) {
    EXPECT_EQ(++depth, 1);
    if (++calls < 50) load();
    --depth;
  };
  load();
  EXPECT_THAT(happened(), IsEmpty()) << "not inside the call";
  settle();
  EXPECT_EQ(happened(), Lines(50, offline_));
}

TEST_F(FirstMistakes, AServerOnThisMachineWithoutANetworkGetsAHint) {
  makeBanner();
  platform_.network->setReachable(false);
  banner_->loadWithDomainName("127.0.0.1:8080/ads", "page", "Bottom1");
  settle();
  EXPECT_THAT(warnings(), Contains(HasSubstr("assumeReachable")));
  for (const char* far : {"http://ads.example/x", "http://127ads.example/x", ""}) {
    EXPECT_EQ(hintWithoutNetwork(Url::fromText(far)), std::nullopt) << far;
  }
  for (const char* here : {"http://localhost:8080/x", "http://[::1]:8080/x"}) {
    EXPECT_NE(hintWithoutNetwork(Url::fromText(here)), std::nullopt) << here;
  }
}

TEST_F(FirstMistakes, ADomainWithASchemeGetsAHint) {
  makeBanner();
  banner_->loadWithDomainName("http://ads.example/x", "page", "Bottom1");
  EXPECT_THAT(warnings(), ElementsAre(HasSubstr("host and path only, \"ads.example/x\"")));
}

TEST_F(FirstMistakes, AnExceptionOfTheHostEndsInItsReport) {
  makeBanner();
  answer(imageAnswer());
  onCallback_ = [](const std::string&) { throw std::runtime_error{"no such widget"}; };
  load();
  EXPECT_NO_THROW(settle());
  EXPECT_THAT(happened(), Contains("didLoad"));
  EXPECT_THAT(warnings(), ElementsAre(HasSubstr("no such widget")));
  EXPECT_TRUE(banner_->isRefreshTimerRunning()) << "the library goes on";
}

TEST_F(FirstMistakes, ALibraryWithoutItsResourcesFailsEachPageAndSaysWhy) {
  makeBanner();
  platform_.bundle->files.clear();
  EXPECT_THAT(loaded(htmlAnswer()),
              ElementsAre(getAd, HasSubstr("didFail 1002 No HTML ads: the library's resources")));
  EXPECT_THAT(warnings(), Contains(HasSubstr("TAVO_RESOURCE_DIR")));
}

TEST_F(FirstMistakes, AViewThatOutlivesItsRuntimeGoesOnQuietly) {
  showBanner(imageAnswer());
  {
    const headless::HeadlessPlatform other;
    auto first = std::make_unique<Runtime>(other.platform());
    auto orphan = XAdView::create({0, 0, 320, 50});
    first.reset();
    orphan->loadWithDomainName("ads.example/x", "page", "Bottom1");
    other.runLoop->runPending();
  }
  EXPECT_THAT(loaded(imageAnswer()), Contains("didLoad"));
}

TEST(LastRuntimeTest, WhatIsOnItsWayArrivesWhenNoRuntimeIsLeft) {
  const headless::HeadlessPlatform platform;
  platform.http->answerWith("http://ads.example/x/sdk/page/@Bottom1", "application/json",
                            imageAnswer());
  platform.http->answerWith("http://cdn.example/a.png", "image/png", "image 640x100");
  auto runtime = std::make_unique<Runtime>(platform.platform());
  int loads = 0;
  const auto events = std::make_shared<XAdViewDelegate>(
      XAdViewDelegate{.xAdViewDidLoad = [&](XAdView&) { ++loads; }});
  const auto orphan = XAdView::create({0, 0, 320, 50});
  orphan->delegate.set(events);
  orphan->loadWithDomainName("ads.example/x", "page", "Bottom1");
  runtime.reset();
  platform.runLoop->runPending();
  EXPECT_EQ(loads, 1);
}

TEST_F(FirstMistakes, TheLogIsQuietUntilTheDebugSwitchIsOn) {
  showBanner(imageAnswer());
  EXPECT_THAT(warnings(), IsEmpty());
  EXPECT_THAT(platform_.log->messages(), Contains("Starting to load Ad..."));
  auto& settings = XGlobalConfiguration::sharedInstance();
  testing::internal::CaptureStderr();
  settings.enableDebugLogs = true;
  load();
  settings.enableDebugLogs = false;
  static_cast<void>(testing::internal::GetCapturedStderr());
  EXPECT_THAT(platform_.log->messages(LogLevel::shown), Contains("Starting to load Ad..."));
}

using FirstMistakesDeathTest = FirstMistakes;

TEST_F(FirstMistakesDeathTest, ACallFromAWrongThreadEndsAtOnceAndIsNamed) {
  makeBanner();
  const auto interstitial = XAdInterstitialViewController::create();
  auto orphan = XAdView::create({});
  View& root = *root_->view();
  const std::pair<const char*, std::function<void()>> calls[] = {
      {"XAdView::create", [] { (void)XAdView::create({}); }},
      {"XAdView::loadWithDomainName", [&] { load(); }},
      {"XAdView::~XAdView", [&] { orphan.reset(); }},
      {"View::addSubview", [&] { root.addSubview(banner_); }},
      {"View::setFrame", [&] { banner_->setFrame({}); }},
      {"XAdInterstitialViewController::loadWithDomainName",
       [&] { interstitial->loadWithDomainName("a", "b", "c"); }},
      {"ViewController::presentViewController",
       [&] { root_->presentViewController(interstitial, Animated::no); }},
      {"Runtime::Runtime", [&] { const Runtime second{platform_.platform()}; }}};
  for (const auto& [name, call] : calls) {
    EXPECT_DEATH(std::thread{call}.join(), std::string{name} + " was called on another thread");
  }
}

}  // namespace
}  // namespace tavo::test
