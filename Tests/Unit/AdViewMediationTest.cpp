#include <tavo/XGlobalConfiguration.h>

#include "Unit/AdViewFixture.h"
#include "Unit/FakeAdNetwork.h"
#include "UserInterface/WebView/BaseViews/AdViewMediation.h"
#include "UserInterface/WebView/BaseViews/XAdViewOnlyForSubClassEyesDelegate.h"

namespace tavo::test {
namespace {

const std::string switchedOff =
    "didFail 1008 Cannot mediate. Please enable mediation at slot level or application level.";

TEST(MediationTypeTest, DecidesByTypeSubTypeAndPlacement) {
  // One letter per sub-type 0 to 8: b banner, i interstitial, - none.
  struct Case {
    MobileAdTypes type;
    PlacementType placement;
    const char* expected;
  };
  const Case cases[] = {
      {MobileAdTypes::banner, PlacementType::inlined, "bbb---bb-"},
      {MobileAdTypes::banner, PlacementType::interstitial, "---------"},
      {MobileAdTypes::interstitial, PlacementType::interstitial, "i--ii---i"},
      {MobileAdTypes::interstitial, PlacementType::inlined, "---------"},
  };
  for (const auto& test : cases) {
    std::string found;
    for (int subType = 0; subType <= 8; ++subType) {
      const auto type =
          mediationTypeFor(test.type, static_cast<MobileAdSubTypes>(subType), test.placement);
      found += !type ? '-' : *type == MediationType::banner ? 'b' : 'i';
    }
    EXPECT_EQ(found, test.expected);
  }
}

class AdViewMediationTest : public AdViewTest {
 protected:
  AdViewMediationTest() {
    network_.install();
    slot_->mediationPlacementId = "place";
    slot_->mediationBannerWidth = 320;
    slot_->mediationBannerHeight = 50;
    makeBanner();
  }

  // Loads for an answer without an ad, which mediation follows where it is switched on.
  Lines loadNothing() { return loaded(noAdAnswer); }
  void makeInterstitial() {
    banner_->setMobileAdTypes(MobileAdTypes::interstitial);
    banner_->setPlacementType(PlacementType::interstitial);
    banner_->pDelegate.set(heard_);
  }

  FakeAdNetwork network_;
  const std::shared_ptr<const XAdViewOnlyForSubClassEyesDelegate> heard_ =
      std::make_shared<XAdViewOnlyForSubClassEyesDelegate>(XAdViewOnlyForSubClassEyesDelegate{
          .isRequiredDelegateImplementedByPublisher = [] { return true; }});
};

TEST_F(AdViewMediationTest, AServersInstructionIsCarriedOutWhateverTheSwitchesSay) {
  slot_->canMediate = 0;
  answer(R"({"Ad":[{"AdType":"text/html","ImpUrl":"http://track.example/i",)"
         R"("Text":"<ClientSideMediation placementId='7' width='300' height='250'/>"}]})");
  load();
  settle();
  EXPECT_THAT(happened(), ElementsAre(getAd)) << "no impression of ours, no failure";
  EXPECT_THAT(network_.lines, IsSupersetOf({"placementId 7", "adSize 300 250", "root set"}));
  EXPECT_TRUE(banner_->isMediationAdServed());
  EXPECT_THAT(banner_->subviews(), ElementsAre(network_.ads.at(0).view));
  network_.say(0, &CVAdDelegate::adDidReceiveAd);
  EXPECT_TRUE(banner_->isRefreshTimerRunning());
  network_.say(0, &CVAdDelegate::adWasClicked);
  network_.say(0, &CVAdDelegate::adWillPresent);
  network_.say(0, &CVAdDelegate::adDidPresent);
  network_.say(0, &CVAdDelegate::adWillLeaveApplication);
  EXPECT_THAT(happened(),
              ElementsAre("didLoad", "didClick", "willOpenBrowser", "willLeaveApplication"));
}

TEST_F(AdViewMediationTest, AFailedRequestMayBeMediatedAndStillFails) {
  slot_->canMediate = 1;
  EXPECT_THAT(loadNothing(), ElementsAre(getAd, "didFail 1002 No ads available from TAVO server."));
  EXPECT_THAT(network_.lines, IsSupersetOf({"placementId place", "adSize 320 50"}));
  network_.fail(0);
  EXPECT_THAT(happened(), ElementsAre("didFail 3 no fill"));
  EXPECT_TRUE(banner_->subviews().empty());
}

TEST_F(AdViewMediationTest, ASlotThatSaysNoOverrulesTheApplicationInTheCheckOnly) {
  XGlobalConfiguration::sharedInstance().canMediate = 1;
  slot_->canMediate = 0;
  EXPECT_THAT(loadNothing(), ElementsAre(getAd, switchedOff));
  EXPECT_EQ(network_.made, 0);
}

TEST_F(AdViewMediationTest, ALoadThatWasReplacedIsNotHeardOfAgain) {
  slot_->canMediate = 1;
  loadNothing();
  const auto late = network_.ads.at(0).delegate.lock();
  answer(imageAnswer());
  load();
  late->adRequestFailedWithError(*network_.ads.at(0).object, {"network", 3, "no fill"});
  settle();
  EXPECT_THAT(happened(), ElementsAre(getAd, "GET http://cdn.example/a.png",
                                      "GET http://track.example/i", "didLoad"));
  EXPECT_TRUE(network_.ads.at(0).life.expired());
}

TEST_F(AdViewMediationTest, AReleasedOrDestroyedViewHearsNothing) {
  slot_->canMediate = 1;
  for (const bool destroys : {false, true}) {
    SCOPED_TRACE(destroys);
    loadNothing();
    const auto ad = network_.ads.back();
    const auto late = ad.delegate.lock();
    banner_->releaseMemory();
    if (destroys) drop();
    late->adDidReceiveAd(*ad.object);
    late->adWasClicked(*ad.object);
    late->adRequestFailedWithError(*ad.object, {});
    settle();
    EXPECT_TRUE(happened().empty());
    EXPECT_TRUE(ad.life.expired());
  }
}

TEST_F(AdViewMediationTest, TwoSlotsHearOfTheirOwnAds) {
  slot_->canMediate = 1;
  const auto first = banner_;
  loadNothing();
  makeBanner();
  std::vector<const XAdView*> told;
  const auto events = std::make_shared<XAdViewDelegate>(
      XAdViewDelegate{.xAdViewDidLoad = [&](XAdView& view) { told.push_back(&view); }});
  first->delegate.set(events);
  banner_->delegate.set(events);
  loadNothing();
  network_.say(0, &CVAdDelegate::adDidReceiveAd);
  network_.say(1, &CVAdDelegate::adDidReceiveAd);
  EXPECT_THAT(told, ElementsAre(first.get(), banner_.get()));
}

TEST_F(AdViewMediationTest, AnInterstitialHasNoBannersChoiceOfBrowser) {
  slot_->canMediate = 1;
  slot_->shouldOpenClickThroughURLInAppBrowser = true;
  loadNothing();
  EXPECT_THAT(network_.lines, IsSupersetOf({"nativeBrowser 0"}));
  network_.lines.clear();
  makeInterstitial();
  loadNothing();
  EXPECT_THAT(network_.lines, IsSupersetOf({"nativeBrowser 1"}));
}

TEST_F(AdViewMediationTest, ATickThatLoadsNothingLeavesTheMediatedLoadAlone) {
  slot_->canMediate = 1;
  slot_->bannerRefreshInterval = 30;
  answer(imageAnswer());
  load();
  settle();
  answer(noAdAnswer);
  advance(30.1);
  ASSERT_EQ(network_.ads.size(), 1U);
  happened();
  banner_->setHidden(true);
  advance(30);
  network_.say(0, &CVAdDelegate::adDidReceiveAd);
  EXPECT_THAT(happened(), ElementsAre("didLoad"));
}

TEST_F(AdViewMediationTest, AnInterstitialOutsideAWindowIsPresentedOverTheApplications) {
  slot_->canMediate = 1;
  makeInterstitial();
  banner_->removeFromSuperview();
  loadNothing();
  network_.lines.clear();
  network_.say(0, &CVAdDelegate::adDidReceiveAd);
  EXPECT_THAT(network_.lines, ElementsAre("display"));
  EXPECT_THAT(happened(), ElementsAre("didLoad"));
}

TEST_F(AdViewMediationTest, PrerollsAreNotMediated) {
  slot_->canMediate = 1;
  banner_->setMoviePlayerInstance(platform_.moviePlayers->create({}));
  EXPECT_THAT(loadNothing(),
              ElementsAre(getAd,
                          "didFail 1008 Failed to retrieve ad from TAVO. Cannot mediate for "
                          "Preroll ads.",
                          "didFail 1002 No ads available from TAVO server."));
}

}  // namespace
}  // namespace tavo::test
