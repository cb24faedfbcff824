// What a creative's wishes do to the screen, to the host and to the creative itself, in order.

#include <tavo/Button.h>
#include <tavo/TapRecognizer.h>

#include "AdController/AdGenerator/XMRAIDEventEmitter.h"
#include "Unit/AdViewFixture.h"
#include "UserInterface/ActivityIndicator/ActivityIndicator.h"
#include "UserInterface/WebView/BaseViews/XAdViewOnlyForSubClassEyesDelegate.h"
#include "UserInterface/WebView/BaseViews/XExpandedViewController.h"
#include "UserInterface/WebView/InAppBrowser/XInAppBrowser.h"

namespace tavo::test {
namespace {

const std::string home = "x:0,y:0,width:320,height:50";
const std::string wholeScreen = "x:0,y:0,width:320,height:480";
const Lines toldDefault{"mraid.setState('default');"};
const Lines toldExpanded{"mraid.setState('expanded');"};
const Lines toldResized{"mraid.setState('resized');"};
const std::string lostPage = "didFail 1101 The page's process has ended.";

Lines refusal(const std::string& why, const std::string& action = "resize") {
  return {"mraid.fireErrorEvent('" + why + "','" + action + "');"};
}

Lines joined(const std::vector<Lines>& parts) {
  Lines all;
  for (const auto& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

// The layout report of a screen of 320 x 480.
Lines report(const std::string& current, bool viewable = true) {
  return {"mraid.setScreenSize({width:320,height:480});",
          "mraid.setMaxSize({width:320,height:480});",
          "mraid.setDefaultPosition({x:0,y:430,width:320,height:50 });",
          "mraid.setCurrentPosition({" + current + " });",
          std::string{"mraid.setViewable("} + (viewable ? "true" : "false") + ");"};
}

class MraidPresentationTest : public AdViewTest {
 protected:
  MraidPresentationTest() {
    platform_.bundle->files["/bundle/closebutton30png.png"] = "image 30x30";
  }

  // Shows an HTML ad whose script has said nothing yet.
  void showBeforeInit(const Rect& frame = {0, 430, 320, 50}) {
    recordsScripts_ = true;
    showBanner(htmlAnswer(), frame);
    page_ = platform_.webViews->last();
  }
  // Shows an HTML ad whose script has said "init", and forgets what has happened so far.
  void show(const Rect& frame = {0, 430, 320, 50}) {
    showBeforeInit(frame);
    creative("init");
    happened();
  }
  // The same, and it has expanded or resized.
  void showOpened(const char* opening) {
    show();
    creative("setResizeProperties?width=300&height=250");
    creative(opening);
    happened();
  }
  Lines after(const std::string& command) {
    creative(command);
    return happened();
  }
  // The window and the screen take this size.
  Lines afterReshape(const Size& size) {
    happened();
    window_->setFrame({0, 0, size.width, size.height});
    platform_.screen->rect = window_->frame();
    post(notifications::windowSizeDidChange);
    advance(0.001);
    return happened();
  }

  [[nodiscard]] bool isFullScreen() const { return root_->presentedViewController() != nullptr; }
  [[nodiscard]] bool isHome() const { return page_->superview() == banner_.get(); }

  std::shared_ptr<headless::HeadlessWebView> page_;
};

TEST_F(MraidPresentationTest, InitIsAnsweredWithTheLayout) {
  show();
  EXPECT_EQ(after("init"), report(home));
  EXPECT_EQ(banner_->eventEmitter()->state(), MRAIDState::normal);
  EXPECT_EQ(banner_->webViewInstance(), page_);
  EXPECT_EQ(after("updateCurrentPosition"), report(home));
  banner_->setHidden(true);
  EXPECT_EQ(after("updateCurrentPosition"), report(home, false));
}

// Whatever has taken the full screen away while the user was in the calendar.
TEST_F(MraidPresentationTest, AnExpandedAdTakesTheFullScreenAgainAfterTheCalendar) {
  showOpened("expand");
  banner_->createCalendarEvent(R"({"description":"party"})");
  settle();
  EXPECT_TRUE(banner_->calendarReExpand());
  root_->dismissViewController(Animated::no);
  EXPECT_FALSE(isFullScreen());
  platform_.composers->eventFinished(EventEditAction::cancelled, {});
  EXPECT_TRUE(isFullScreen());
  EXPECT_EQ(page_->convertTo(nullptr, page_->bounds()), (Rect{0, 0, 320, 480}));
  EXPECT_FALSE(banner_->calendarReExpand());
  creative("close");
  EXPECT_FALSE(isFullScreen());
  EXPECT_FALSE(platform_.application->statusBarHidden);
}

TEST_F(MraidPresentationTest, TheCloseButtonIsAsSharpAsTheScreenAndTakesAnotherPicture) {
  platform_.bundle->files["/bundle/closebutton30png@2x.png"] = "image 60x60";
  platform_.bundle->files["/bundle/mine.png"] = "image 20x10";
  platform_.application->statusBarHidden = true;
  showOpened("expand");
  const auto* button = dynamic_cast<const Button*>(window_->hitTest({305, 23}));
  ASSERT_NE(button, nullptr);
  EXPECT_EQ(button->image().width(), 60);
  EXPECT_EQ(button->frame(), (Rect{290, 8, 30, 30}));
  banner_->setCloseButtonImageWithImageNamed("mine");
  EXPECT_EQ(button->frame().size(), (Size{20, 10}));
  creative("close");
  EXPECT_TRUE(platform_.application->statusBarHidden) << "as it was before";
  EXPECT_EQ(banner_->resizeViewSuperview(), root_->view());
  banner_->addSubview(std::make_shared<Button>());
  banner_->removeCloseButtonFromSuperView();
  EXPECT_EQ(banner_->subviews().back(), page_);
}

TEST_F(MraidPresentationTest, APageThatExpandsBeforeItIsThereReturnsAtItsSize) {
  platform_.webViews->holdLoads = true;
  showBeforeInit();
  creative("init");
  creative("expand");
  EXPECT_EQ(page_->frame().size(), (Size{320, 480}));
  page_->finishLoad();
  settle();
  EXPECT_TRUE(isHome());
  EXPECT_EQ(page_->frame(), (Rect{0, 0, 320, 50}));
}

// Quirk: a creative hears of each new state twice, from the view and from the command.
TEST_F(MraidPresentationTest, ExpandingAndClosingByTheCreative) {
  show();
  EXPECT_EQ(after("expand"),
            joined({{"didExpand"}, toldExpanded, report(wholeScreen), toldExpanded}));
  EXPECT_TRUE(isFullScreen());
  EXPECT_TRUE(banner_->isAdExpanded());
  EXPECT_TRUE(platform_.application->statusBarHidden);
  EXPECT_EQ(page_->convertTo(nullptr, page_->bounds()), (Rect{0, 0, 320, 480}));
  EXPECT_EQ(after("expand"), toldExpanded) << "expanded already";
  EXPECT_EQ(after("resize"), refusal("Can not resize while view is Already expanded ."));
  EXPECT_EQ(after("close"), joined({{"didCollapse"}, report(home), toldDefault, toldDefault}));
  EXPECT_FALSE(isFullScreen());
  EXPECT_FALSE(banner_->isAdExpanded());
  EXPECT_FALSE(platform_.application->statusBarHidden);
  EXPECT_TRUE(isHome());
  EXPECT_EQ(page_->frame(), (Rect{0, 0, 320, 50}));
  EXPECT_EQ(after("expand").front(), "didExpand") << "and once more";
}

TEST_F(MraidPresentationTest, TheUserMayAlwaysLeaveAFullScreenAd) {
  show();
  for (const bool isDrawn : {false, true}) {
    for (const bool byKey : {false, true}) {
      creative(std::string{"setExpandProperties?useCustomClose="} + (isDrawn ? "false" : "true"));
      creative("expand");
      happened();
      const auto* button = dynamic_cast<const Button*>(window_->hitTest({305, 23}));
      ASSERT_NE(button, nullptr);
      EXPECT_EQ(button->image().empty(), !isDrawn);
      EXPECT_EQ(button->convertTo(nullptr, button->bounds()), (Rect{290, 8, 30, 30}));
      EXPECT_EQ(button->accessibilityLabel(), "Close Interstitial Ad");
      if (byKey) {
        EXPECT_TRUE(window_->topViewController()->cancelOperation());
      } else {
        deliverTap(*window_, {305, 23});
      }
      EXPECT_EQ(happened(), joined({toldDefault, report(home), {"didCollapse"}}))
          << "the creative before the host";
      EXPECT_FALSE(isFullScreen());
      EXPECT_TRUE(isHome());
    }
  }
}

TEST_F(MraidPresentationTest, ResizingAndClosingTellTheCreativeOnly) {
  show();
  EXPECT_EQ(after("resize"), refusal("Size required in resizeProperties."));
  creative("setResizeProperties?width=300&height=250");
  happened();
  EXPECT_EQ(after("resize"), joined({report("x:0,y:0,width:300,height:250"), toldResized}));
  View* container = page_->superview();
  EXPECT_EQ(container->frame(), (Rect{0, 230, 300, 250}));
  EXPECT_EQ(container->superview(), root_->view().get());
  creative("setResizeProperties?width=200&height=100");
  happened();
  EXPECT_EQ(after("resize"), joined({report("x:0,y:0,width:200,height:100"), toldResized}));
  EXPECT_EQ(container->frame(), (Rect{0, 380, 200, 100}));
  EXPECT_EQ(after("close"), joined({report(home), toldDefault, toldDefault}));
  EXPECT_EQ(container->superview(), nullptr);
  EXPECT_TRUE(isHome());
  EXPECT_EQ(page_->frame(), (Rect{0, 0, 320, 50}));
  EXPECT_EQ(after("close"), joined({report(home), toldDefault, toldDefault}));
  creative("resize");
  container = page_->superview();
  creative("expand");
  EXPECT_EQ(container->superview(), nullptr) << "an expansion leaves nothing of it behind";
  creative("close");
  EXPECT_TRUE(isHome());
  EXPECT_EQ(root_->view()->subviews().size(), 1U);
}

TEST_F(MraidPresentationTest, AResizeAwayFromTheEdgesStandsWhereItAskedTo) {
  show({100, 200, 120, 50});
  creative("setResizeProperties?width=150&height=60&offsetX=30&offsetY=-20");
  creative("resize");
  EXPECT_EQ(page_->superview()->frame(), (Rect{130, 180, 150, 60}));
  deliverTap(*window_, {279, 181});
  EXPECT_TRUE(isHome()) << "by the control in its corner";
}

TEST_F(MraidPresentationTest, BeforeInitOnlyAnExpansionIsFollowed) {
  showBeforeInit();
  creative("setResizeProperties?width=300&height=250");
  EXPECT_EQ(after("resize"), refusal("Can not resize while loading or hidden."));
  EXPECT_EQ(after("close"), toldDefault) << "the view undoes nothing and says nothing";
  EXPECT_EQ(after("expand").front(), "didExpand");
}

TEST_F(MraidPresentationTest, WithoutARootControllerTheCreativeBelievesItselfExpandedQuirk) {
  const auto standalone = std::make_shared<View>(Rect{0, 0, 320, 480});
  show();
  standalone->addSubview(banner_);
  window_->setRootViewController(nullptr);
  EXPECT_EQ(after("expand"),
            joined({{"didExpand"}, toldExpanded, report(wholeScreen), toldExpanded}));
  EXPECT_THAT(
      platform_.log->messages(),
      Contains("Unable to present modal view controller becuase rootViewController is nil.  "
               "Be sure to set the keyWindow's rootViewController or provide one with "
               "XAdViewPResentionController:."));
  EXPECT_TRUE(isHome()) << "and stays where it can be seen";
  EXPECT_EQ(after("close").back(), toldDefault.front());
}

TEST_F(MraidPresentationTest, AnInterstitialThatClosesLeavesItToItsController) {
  show();
  banner_->setPlacementType(PlacementType::interstitial);
  Lines told;
  const auto note = [&](const auto& properties) { told.push_back(properties.description()); };
  const auto events =
      std::make_shared<XAdViewOnlyForSubClassEyesDelegate>(XAdViewOnlyForSubClassEyesDelegate{
          .expandPropertiesChnaged = note,
          .setOrientationPropertiesWith = note,
          .XInterstitialAdDidClose = [&](XAdView&) { told.emplace_back("closed"); }});
  banner_->pDelegate.set(events);
  creative("setExpandProperties?width=1&height=2");
  creative("setOrientationProperties?forceOrientation=portrait");
  EXPECT_EQ(happened(), report("x:0,y:430,width:320,height:50"));
  EXPECT_EQ(after("close"), toldDefault);
  EXPECT_THAT(told,
              ElementsAre("{width:1,height:2,useCustomClose:false}",
                          "{allowOrientationChange:true,forceOrientation:'portrait'}", "closed"));
}

TEST_F(MraidPresentationTest, AnOpenedAdFollowsItsWindow) {
  showOpened("expand");
  platform_.application->orientation = InterfaceOrientation::landscapeLeft;
  window_->setFrame({0, 0, 480, 320});
  post(notifications::deviceOrientationDidChange);
  EXPECT_THAT(happened(), IsEmpty()) << "a little later";
  advance(0.001);
  EXPECT_EQ(happened().front(), "mraid.setScreenSize({width:480,height:320});");
  platform_.application->orientation = InterfaceOrientation::portrait;
  EXPECT_THAT(afterReshape({300, 400}),
              Contains("mraid.setCurrentPosition({x:0,y:0,width:300,height:400 });"));
  EXPECT_EQ(page_->frame(), (Rect{0, 0, 300, 400}));
  window_->topViewController()->didRotateFromInterfaceOrientation(InterfaceOrientation::portrait);
  EXPECT_EQ(happened().size(), 5U) << "and no script";
  platform_.device->version = "4.3";
  window_->topViewController()->didRotateFromInterfaceOrientation(InterfaceOrientation::portrait);
  EXPECT_THAT(happened().back(), HasSubstr("'orientationchange'"));
}

TEST_F(MraidPresentationTest, AResizedAdFollowsItsWindow) {
  showOpened("resize");
  View* container = page_->superview();
  banner_->setFrame({0, 750, 320, 50});
  EXPECT_THAT(afterReshape({500, 800}), Contains("mraid.setMaxSize({width:500,height:800});"));
  EXPECT_EQ(container->frame(), (Rect{0, 550, 300, 250}));
  banner_->setFrame({0, 270, 320, 50});
  EXPECT_THAT(afterReshape({480, 320}), Contains(toldResized.front()));
  EXPECT_EQ(container->frame(), (Rect{0, 70, 300, 250}));
  banner_->setFrame({0, 50, 200, 50});
  EXPECT_THAT(afterReshape({200, 100}), Contains(toldDefault.front())) << "no room for it";
  EXPECT_EQ(container->superview(), nullptr);
  EXPECT_TRUE(isHome());
}

TEST_F(MraidPresentationTest, NothingStandsOnTheScreenForASlotThatIsNotSeen) {
  showOpened("resize");
  banner_->setHidden(true);
  banner_->didDisappearFromScreen();
  EXPECT_TRUE(isHome());
  happened();
  EXPECT_EQ(after("resize"), refusal("Can not resize while the ad is not on the screen."));
  banner_->setHidden(false);
  creative("resize");
  EXPECT_FALSE(isHome());
  banner_->setFrame({0, 900, 320, 50});
  banner_->didMoveOnScreen();
  advance(0.001);
  EXPECT_TRUE(isHome()) << "scrolled away";
}

TEST_F(MraidPresentationTest, AnAdDoesNotExpandUnderWhatCoversTheScreen) {
  show();
  root_->presentViewController(std::make_shared<ViewController>(), Animated::no);
  EXPECT_EQ(after("expand"),
            refusal("Can not expand while something else covers the screen.", "expand"));
  EXPECT_EQ(banner_->eventEmitter()->state(), MRAIDState::normal);
  root_->dismissViewController(Animated::no);
  EXPECT_EQ(after("expand").front(), "didExpand");
}

TEST_F(MraidPresentationTest, OnlyAnExpansionEndsInACollapse) {
  for (const bool expands : {true, false}) {
    SCOPED_TRACE(expands);
    slot_->shouldOpenClickThroughURLInAppBrowser = expands;
    show();
    if (expands) creative("expand");
    banner_->openUrlInBrowser(Url::fromText("http://shop.example/"));
    settle();
    if (auto* browser = dynamic_cast<XInAppBrowser*>(window_->topViewController())) {
      browser->closeButtonItemClicked();
    }
    recordsScripts_ = false;
    happened();
    page_->terminateProcess();
    EXPECT_EQ(happened(), expands ? (Lines{"didCollapse", lostPage}) : Lines{lostPage});
    banner_->removeFromSuperview();
  }
}

TEST_F(MraidPresentationTest, AForcedOrientationPresentsAnew) {
  show();
  creative("setOrientationProperties?allowOrientationChange=false&forceOrientation=landscape");
  creative("expand");
  const auto* controller = window_->topViewController();
  EXPECT_FALSE(controller->shouldAutorotate());
  EXPECT_EQ(controller->supportedInterfaceOrientations(), landscapeOrientations);
  happened();
  EXPECT_EQ(after("setOrientationProperties?forceOrientation=portrait"), report(wholeScreen));
  EXPECT_TRUE(isFullScreen());
  EXPECT_EQ(page_->window(), window_.get());
}

TEST_F(MraidPresentationTest, ALockReportsTheBrowserAboveAnOpenedAdAsClosedQuirk) {
  slot_->shouldOpenClickThroughURLInAppBrowser = true;
  showOpened("resize");
  recordsScripts_ = false;
  post(notifications::screenLocked);
  EXPECT_THAT(happened(), IsEmpty()) << "there is no browser";
  recognizeTap(*page_);
  creative("open?url=http%3A%2F%2Fshop.example%2F");
  ASSERT_TRUE(banner_->appBrowserOpen());
  happened();
  post(notifications::screenLocked);
  EXPECT_THAT(happened(), ElementsAre("willCloseBrowser"));
  EXPECT_TRUE(banner_->appBrowserOpen());
}

// What ends an opened ad, and what keeps it.
TEST_F(MraidPresentationTest, AnOpenedAdIsKeptUntilItClosesAndLeavesNothingBehind) {
  slot_->bannerRefreshInterval = 30;
  for (const char* opening : {"expand", "resize"}) {
    SCOPED_TRACE(opening);
    showOpened(opening);
    advance(100);
    EXPECT_THAT(happened(), IsEmpty()) << "it is not replaced";
    creative("close");
    happened();
    advance(30);
    EXPECT_FALSE(happened().empty());
    banner_->removeFromSuperview();

    showOpened(opening);
    page_->terminateProcess();
    EXPECT_EQ(happened().back(), lostPage);
    EXPECT_FALSE(isFullScreen());
    EXPECT_EQ(root_->view()->subviews().size(), 1U);
    advance(30);
    EXPECT_FALSE(happened().empty()) << "the next ad is asked for";
    banner_->removeFromSuperview();

    showOpened(opening);
    page_.reset();
    banner_->removeFromSuperview();
    EXPECT_THAT(happened(), IsEmpty());
    EXPECT_FALSE(isFullScreen());
    EXPECT_TRUE(root_->view()->subviews().empty());
    EXPECT_EQ(window_->subviews().size(), 1U);
    EXPECT_FALSE(platform_.application->statusBarHidden);
    EXPECT_EQ(platform_.webViews->last(), nullptr) << "the page is gone";
    EXPECT_EQ(platform_.runLoop->activeTimers(), 0U);
  }
}

TEST_F(MraidPresentationTest, AHostMayDropTheViewInsideEachReport) {
  for (const bool byButton : {false, true}) {
    for (const char* last : {"didExpand", "didCollapse"}) {
      SCOPED_TRACE(last);
      show();
      dropsInside(last);
      creative("expand");
      if (byButton) {
        deliverTap(*window_, {305, 23});
      } else {
        creative("close");
      }
      EXPECT_EQ(banner_, nullptr);
      EXPECT_FALSE(isFullScreen());
      onCallback_ = {};
      page_.reset();
    }
  }
}

TEST_F(MraidPresentationTest, ExpandedControllersKeepTheirOrientation) {
  XExpandedViewController controller{runtime_.environment()};
  EXPECT_TRUE(controller.shouldAutorotate());
  EXPECT_EQ(controller.supportedInterfaceOrientations(), allOrientations);
  EXPECT_EQ(controller.view()->frame(), (Rect{0, 0, 320, 480}));
  controller.allowRotation = false;
  const std::pair<int, OrientationMask> cases[] = {{0, 2U},  {1, 2U},  {2, 2U},
                                                   {3, 24U}, {4, 24U}, {9, 30U}};
  for (const auto& [orientation, mask] : cases) {
    SCOPED_TRACE(orientation);
    controller.forceRotateToInterfaceOrientation(static_cast<InterfaceOrientation>(orientation));
    EXPECT_EQ(controller.supportedInterfaceOrientations(), mask);
    EXPECT_EQ(controller.preferredInterfaceOrientationForPresentation(),
              controller.forcedOrientation);
    EXPECT_TRUE(controller.shouldAutorotateToInterfaceOrientation(controller.forcedOrientation));
  }
  EXPECT_FALSE(controller.shouldAutorotateToInterfaceOrientation(InterfaceOrientation::portrait));
}

TEST_F(MraidPresentationTest, TheActivityIndicatorTurnsAboveTheMiddleQuirk) {
  EXPECT_EQ(ActivityIndicator::create(nullptr), nullptr);
  auto parent = std::make_shared<View>(Rect{0, 0, 320, 480});
  const auto indicator = ActivityIndicator::create(parent);
  EXPECT_EQ(indicator->activityIndicator()->frame(), (Rect{135, 210, 50, 50}));
  parent->setFrame({0, 0, 200, 100});
  indicator->show();
  EXPECT_EQ(indicator->superview(), parent.get());
  EXPECT_EQ(indicator->frame(), parent->frame());
  EXPECT_EQ(indicator->activityIndicator()->frame(), (Rect{75, 20, 50, 50}));
  EXPECT_TRUE(indicator->activityIndicator()->isAnimating());
  indicator->hide();
  EXPECT_EQ(indicator->superview(), nullptr);
  EXPECT_FALSE(indicator->activityIndicator()->isAnimating());
  parent.reset();
  indicator->show();
  EXPECT_EQ(indicator->superview(), nullptr);
}

}  // namespace
}  // namespace tavo::test
