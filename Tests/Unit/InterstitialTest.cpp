// Interstitials from set-up to the screen, and what they pass on while they are there.

#include "AdController/AdGenerator/XMRAIDExpandProperties.h"
#include "AdController/AdGenerator/XMRAIDOrientationProperties.h"
#include "Runtime/NotificationCenter.h"
#include "Unit/InterstitialFixture.h"
#include "UserInterface/ActivityIndicator/ActivityIndicator.h"
#include "UserInterface/WebView/ExposableViews/MRAIDComplaint/XMRAIDBannerView.h"
#include "XMediation/XMediation.h"

namespace tavo::test {
namespace {

constexpr const char* orientationChanged = "XAdInterstitialOrientationDidChange";

TEST_F(InterstitialTest, SetUpMakesAnAdViewForTheWholeScreen) {
  platform_.application->orientation = InterfaceOrientation::landscapeLeft;
  makeController();
  EXPECT_EQ(controller_->xadView(), nullptr);
  const auto& screen = controller_->view();
  EXPECT_EQ(screen->frame(), (Rect{0, 0, 480, 320}));
  EXPECT_EQ(screen->autoresizingMask(), 63U);
  EXPECT_TRUE(screen->backgroundColor());
  const auto& adView = controller_->xadView();
  EXPECT_THAT(screen->subviews(), ElementsAre(adView));
  EXPECT_EQ(adView->frame(), screen->bounds());
  EXPECT_EQ(adView->placementType(), PlacementType::interstitial);
  EXPECT_EQ(adView->mobileAdTypes(), MobileAdTypes::interstitial);
  EXPECT_EQ(adView->autoresizingMask(), 63U);
  EXPECT_EQ(*controller_->orientationProp(), XMRAIDOrientationProperties{});
  EXPECT_EQ(controller_->orientationWhileLeaving, InterfaceOrientation::landscapeLeft);
}

TEST_F(InterstitialTest, APageFromRequestToScreen) {
  EXPECT_THAT(loadedController(htmlAnswer()),
              ElementsAre(getAd, "shouldDisplay?", getImpression, "didLoad"));
  EXPECT_TRUE(isOnScreen());
  EXPECT_TRUE(controller_->isMRAID());
  EXPECT_EQ(controller_->mobileAdSubTypes(), MobileAdSubTypes::richMediaInterstitial);
  EXPECT_TRUE(platform_.application->statusBarHidden);
  EXPECT_EQ(window_->subviews().back(), controller_->view());
  EXPECT_EQ(controller_->view()->frame(), window_->bounds());
  EXPECT_EQ(page().superview(), controller_->xadView().get());
  EXPECT_EQ(page().frame(), window_->bounds());
  const auto& button = controller_->closeButton();
  ASSERT_TRUE(button);
  EXPECT_EQ(button->frame(), (Rect{280, 8, 40, 40}));
  EXPECT_EQ(button->autoresizingMask(), 33U);
  EXPECT_EQ(button->image().width(), 30);
  EXPECT_EQ(buttonInCorner(), button.get());
  EXPECT_EQ(controller_->activityindicator(), nullptr) << "there is nothing to wait for";
}

TEST_F(InterstitialTest, AControllerThatIsUsedAgainHasItsButtonAndNoOldPage) {
  showPage();
  for (int time = 0; time < 2; ++time) {
    const std::weak_ptr<WebView> page = platform_.webViews->last();
    ASSERT_TRUE(buttonInCorner());
    EXPECT_FALSE(buttonInCorner()->image().empty());
    tapCloseButton();
    EXPECT_FALSE(isOnScreen());
    EXPECT_THAT(happened(), ElementsAre("dismissed"));
    loadController();
    settle();
    advance(0.2);
    EXPECT_TRUE(isOnScreen());
    EXPECT_TRUE(page.expired()) << "it does not run on";
    happened();
  }
}

TEST_F(InterstitialTest, AScreenThatWaitsForItsAdShowsAWheelThatTakesItsTouches) {
  makeController();
  answer(htmlAnswer());
  presentsOnLoad_ = false;
  loadController();
  present();
  ASSERT_TRUE(controller_->activityindicator());
  EXPECT_EQ(controller_->view()->subviews().back(), controller_->activityindicator());
  EXPECT_TRUE(controller_->activityindicator()->activityIndicator()->isAnimating());
  settle();
  EXPECT_EQ(controller_->activityindicator()->superview(), nullptr);
  EXPECT_EQ(buttonInCorner(), controller_->closeButton().get());
}

TEST_F(InterstitialTest, TheCreativeDecidesWhoDrawsTheCloseButton) {
  showPage();
  creative("setExpandProperties?useCustomClose=true");
  Button* hidden = buttonInCorner();
  ASSERT_TRUE(hidden);
  EXPECT_TRUE(hidden->image().empty());
  EXPECT_EQ(hidden->frame(), (Rect{280, 8, 40, 40}));
  tapCloseButton();
  EXPECT_THAT(happened(), ElementsAre("dismissed"));

  makeController();
  answer(htmlAnswer());
  loadController();
  (void)controller_->view();
  XMRAIDExpandProperties custom;
  custom.useCustomClose = true;
  controller_->expandPropertiesChnaged(custom);
  settle();
  EXPECT_EQ(buttonInCorner(), nullptr) << "said before the page was there";
  controller_->expandPropertiesChnaged({});
  ASSERT_TRUE(buttonInCorner());
  EXPECT_FALSE(buttonInCorner()->image().empty());
}

TEST_F(InterstitialTest, AHostThatRefusesAPageGetsItsButtonAndTheFailure) {
  mayRender_ = false;
  EXPECT_THAT(loadedController(htmlAnswer()),
              ElementsAre(getAd, "shouldDisplay?",
                          "didFail 1007 Rendering of ad interrupted by publisher."));
  EXPECT_TRUE(controller_->closeButton());
}

TEST_F(InterstitialTest, AnInterstitialIsNotLoadedAnewWhenTheNetworkReturns) {
  showPage();
  platform_.network->setReachable(false);
  platform_.network->setReachable(true);
  advance(5);
  EXPECT_THAT(happened(), IsEmpty());
  EXPECT_TRUE(isOnScreen());
}

TEST_F(InterstitialTest, RotationsAreToldToThePage) {
  showPage();
  startConversation();
  platform_.device->version = "4.2";
  platform_.application->orientation = InterfaceOrientation::landscapeRight;
  controller_->didRotateFromInterfaceOrientation(InterfaceOrientation::portrait);
  const auto told = happened();
  ASSERT_EQ(told.size(), 6U) << "the layout report and the script";
  EXPECT_THAT(told.back(), HasSubstr("return 90;"));
}

TEST_F(InterstitialTest, TheCreativesOrientationRulesCountUntilTheNextAd) {
  showPage();
  creative("setOrientationProperties?allowOrientationChange=false&forceOrientation=portrait");
  EXPECT_FALSE(controller_->shouldAutorotate());
  EXPECT_EQ(controller_->supportedInterfaceOrientations(), 2U);
  EXPECT_EQ(controller_->preferredInterfaceOrientationForPresentation(),
            InterfaceOrientation::portrait);
  EXPECT_FALSE(controller_->shouldAutorotateToInterfaceOrientation(InterfaceOrientation::portrait));
  controller_->forceRotateToInterfaceOrientation();
  EXPECT_TRUE(isOnScreen()) << "presented anew";
  EXPECT_EQ(page().superview(), controller_->xadView().get()) << "with the ad that it had";
  EXPECT_THAT(happened(), IsEmpty());
  loadController();
  EXPECT_TRUE(controller_->shouldAutorotate());
  settle();
}

TEST_F(InterstitialTest, ScreensInLandscapeAreAnnouncedToWhateverStandsOnThem) {
  std::vector<int> heard;
  std::vector<const void*> device;
  const auto interface =
      runtime_.notifications().subscribe(orientationChanged, [&](const Notification& notification) {
        heard.push_back(notification.userInfo.at("UIInterfaceOrientation"));
      });
  const auto rotated = runtime_.notifications().subscribe(
      notifications::deviceOrientationDidChange,
      [&](const Notification& notification) { device.push_back(notification.object); });
  showVideo();
  EXPECT_THAT(heard, IsEmpty());
  EXPECT_TRUE(controller_->shouldAutorotate());
  EXPECT_TRUE(controller_->shouldAutorotateToInterfaceOrientation(InterfaceOrientation::portrait));
  EXPECT_THAT(heard, ElementsAre(1, 1)) << "a video follows every rotation";
  EXPECT_THAT(device, IsEmpty());
  heard.clear();
  controller_->forceRotateToInterfaceOrientation();
  platform_.application->orientation = InterfaceOrientation::landscapeRight;
  controller_->forceRotateToInterfaceOrientation();
  EXPECT_THAT(heard, ElementsAre(3));
  EXPECT_THAT(device, IsEmpty()) << "it left as it came back";
  root_->dismissViewController(Animated::no);
  platform_.application->orientation = InterfaceOrientation::portrait;
  present();
  EXPECT_THAT(device, ElementsAre(controller_.get()));
}

TEST_F(InterstitialTest, EachReportIsPassedOnUnderItsOwnName) {
  showVideo();
  using Table = XAdViewDelegate;
  auto& adView = *controller_->xadView();
  for (auto report :
       {&Table::xAdViewDidClickOnAd, &Table::xAdViewDidEnterFullScreen,
        &Table::xAdViewDidExitFullScreen, &Table::xAdViewDidSkipVideo, &Table::xAdViewDidPauseVideo,
        &Table::xAdViewDidResume, &Table::xAdViewDidRewind, &Table::xAdViewWillOpenInInAppBrowser,
        &Table::xAdViewWillCloseInAppBrowser, &Table::xAdViewWillLeaveApplication}) {
    adView.delegate.tell(report, adView);
  }
  adView.delegate.tell(&Table::xAdViewDidFinishQuartile, adView, 2);
  EXPECT_THAT(happened(),
              ElementsAre("didClick", "didEnterFullScreen", "didExitFullScreen", "didSkip",
                          "didPause", "didResume", "didRewind", "willOpenBrowser",
                          "willCloseBrowser", "willLeave", "quartile 2"));
  EXPECT_FALSE(adView.delegate
                   .ask(&Table::xAdViewShouldHandleClickToAction, adView, ClickToAction::phone,
                        ClickToActionParameters{})
                   .value_or(true));
  adView.delegate.tell(&Table::xAdViewShouldHandleCustomURL, adView, Url::fromText("app://x"));
  EXPECT_THAT(happened(), ElementsAre("shouldHandle? 1", "customURL app://x"));
  controller_->delegate.set(nullptr);
  EXPECT_TRUE(adView.delegate
                  .ask(&Table::xAdViewShouldHandleClickToAction, adView, ClickToAction::phone,
                       ClickToActionParameters{})
                  .value_or(false));
  EXPECT_FALSE(controller_->isRequiredDelegateImplementedByPublisher());
}

TEST_F(InterstitialTest, WhoDoesNotHearOfTheEndDoesNotHearOfFullScreenQuirk) {
  makeController();
  hostTable_->xAdInterstitialDidExitFullScreen = {};
  (void)controller_->view();
  fromAdView(&XAdViewDelegate::xAdViewDidEnterFullScreen);
  EXPECT_THAT(happened(), IsEmpty());
}

TEST_F(InterstitialTest, ComingBackFromAnotherApplicationTheUserFindsTheButton) {
  showPage();
  fromAdView(&XAdViewDelegate::xAdViewWillLeaveApplication);
  EXPECT_EQ(controller_->closeButton(), nullptr);
  EXPECT_THAT(happened(), ElementsAre("willLeave"));
  const auto buttons = [this] {
    const auto& views = controller_->view()->subviews();
    return std::count_if(views.begin(), views.end(), [](const auto& view) {
      return dynamic_cast<const Button*>(view.get()) != nullptr;
    });
  };
  for (const bool isCustom : {false, true}) {
    XMRAIDExpandProperties properties;
    properties.useCustomClose = isCustom;
    controller_->expandPropertiesChnaged(properties);
    EXPECT_EQ(buttons(), 1) << "whatever the creative says, and when";
    ASSERT_TRUE(buttonInCorner());
    EXPECT_EQ(buttonInCorner()->image().empty(), isCustom);
  }
  tapCloseButton();
  EXPECT_THAT(happened(), ElementsAre("dismissed"));
}

TEST_F(InterstitialTest, AMediatedAdIsReportedWithoutTheController) {
  makeController();
  (void)controller_->view();
  controller_->xadView()->setIsMediationAdServed(true);
  fromAdView(&XAdViewDelegate::xAdViewDidLoad);
  EXPECT_THAT(happened(), ElementsAre("didLoad mediated"));
  EXPECT_FALSE(platform_.application->statusBarHidden);
  hostTable_->xAdInterstitialDidLoad = {};
  fromAdView(&XAdViewDelegate::xAdViewDidLoad);
  EXPECT_THAT(happened(), IsEmpty());
  EXPECT_EQ(platform_.log->messages().back(),
            "Required delegate xAdInterstitialDidLoad is not implemented.");
}

TEST_F(InterstitialTest, MediationNeedsAHostThatHearsOfLoadedInterstitials) {
  makeController();
  hostTable_->xAdInterstitialDidLoad = {};
  slot_->canMediate = 1;
  slot_->mediationPlacementId = "place";
  answer(noAdAnswer);
  loadController();
  settle();
  EXPECT_THAT(
      happened(),
      ElementsAre(getAd,
                  "didFail 1008 Failed to retrieve ad from TAVO. Cannot mediate as required "
                  "delegate xAdInterstitialDidLoad is not implemented.",
                  "didFail 1002 No ads available from TAVO server."));
}

}  // namespace
}  // namespace tavo::test
