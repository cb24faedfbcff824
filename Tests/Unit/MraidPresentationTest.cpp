// What a creative's wishes do to the screen, to the host and to the creative itself, in order.

#include <tavo/Button.h>
#include <tavo/TapRecognizer.h>

#include "AdController/AdGenerator/XMRAIDEventEmitter.h"
#include "Runtime/NotificationCenter.h"
#include "Unit/AdViewFixture.h"
#include "UserInterface/ActivityIndicator/ActivityIndicator.h"
#include "UserInterface/WebView/BaseViews/XAdViewOnlyForSubClassEyesDelegate.h"
#include "UserInterface/WebView/BaseViews/XExpandedViewController.h"
#include "UserInterface/WebView/InAppBrowser/XInAppBrowser.h"

namespace tavo::test {
namespace {

const Rect footOfScreen{0, 430, 320, 50};

class MraidPresentationTest : public AdViewTest {
 protected:
  MraidPresentationTest() {
    platform_.bundle->files["/bundle/closebutton30png.png"] = "image 30x30";
  }

  // Shows an HTML ad whose script has said nothing yet.
  void showBeforeInit(const Rect& frame) {
    makeBanner(frame);
    answer(htmlAnswer());
    load();
    settle();
    page_ = platform_.webViews->last();
    recordsScripts_ = true;
    happened();
  }

  // Shows an HTML ad whose script has said "init", and forgets what has happened so far.
  void show(const Rect& frame = footOfScreen) {
    showBeforeInit(frame);
    creative("init");
    happened();
  }

  // The creative sends a command, a while after the one before.
  void creative(const std::string& command) {
    advance(1.1);
    page_->navigate(
        {Url::fromText("mraid://" + command), Url::parse("about:blank"), NavigationType::other});
    settle();
  }

  std::vector<std::string> afterCommand(const std::string& command) {
    creative(command);
    return happened();
  }

  void setResizeProperties(const std::string& position = "top-right") {
    creative("setResizeProperties?width=300&height=250&customClosePosition=" + position);
  }

  // The layout report of a screen of 320 x 480.
  static std::vector<std::string> report(const std::string& current, bool viewable = true) {
    return {"mraid.setScreenSize({width:320,height:480});",
            "mraid.setMaxSize({width:320,height:480});",
            "mraid.setDefaultPosition({x:0,y:430,width:320,height:50 });",
            "mraid.setCurrentPosition({" + current + " });",
            std::string{"mraid.setViewable("} + (viewable ? "true" : "false") + ");"};
  }
  static std::vector<std::string> joined(std::vector<std::vector<std::string>> parts) {
    std::vector<std::string> all;
    for (const auto& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
  }

  [[nodiscard]] View* frontView() const { return window_->subviews().back().get(); }
  [[nodiscard]] bool isFullScreen() const { return root_->presentedViewController() != nullptr; }

  std::shared_ptr<headless::HeadlessWebView> page_;
};

const std::string home = "x:0,y:0,width:320,height:50";
const std::string wholeScreen = "x:0,y:0,width:320,height:480";
const std::vector<std::string> toldDefault{"mraid.setState('default');"};
const std::vector<std::string> toldExpanded{"mraid.setState('expanded');"};

TEST_F(MraidPresentationTest, InitIsAnsweredWithTheLayout) {
  show();
  EXPECT_EQ(afterCommand("init"), report(home));
  EXPECT_EQ(banner_->eventEmitter()->state(), MRAIDState::normal);
  EXPECT_EQ(banner_->webViewInstance(), page_);
  EXPECT_EQ(afterCommand("updateCurrentPosition"), report(home));
  banner_->setHidden(true);
  EXPECT_EQ(afterCommand("updateCurrentPosition"), report(home, false));
}

// Whatever has taken the full screen away while the user was in the calendar.
TEST_F(MraidPresentationTest, AnExpandedAdTakesTheFullScreenAgainAfterTheCalendar) {
  show();
  creative("expand");
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

// Quirk: a creative hears of each new state twice, from the view and from the command.
TEST_F(MraidPresentationTest, ExpandingAndClosingByTheCreative) {
  show();
  EXPECT_EQ(afterCommand("expand"),
            joined({{"didExpand"}, toldExpanded, report(wholeScreen), toldExpanded}));
  EXPECT_TRUE(isFullScreen());
  EXPECT_TRUE(banner_->isAdExpanded());
  EXPECT_TRUE(platform_.application->statusBarHidden);
  EXPECT_EQ(page_->convertTo(nullptr, page_->bounds()), (Rect{0, 0, 320, 480}));
  EXPECT_EQ(afterCommand("expand"), toldExpanded) << "expanded already";
  EXPECT_EQ(afterCommand("close"),
            joined({{"didCollapse"}, report(home), toldDefault, toldDefault}));
  EXPECT_FALSE(isFullScreen());
  EXPECT_FALSE(banner_->isAdExpanded());
  EXPECT_FALSE(platform_.application->statusBarHidden);
  EXPECT_EQ(page_->superview(), banner_.get());
  EXPECT_EQ(page_->frame(), (Rect{0, 0, 320, 50}));
  EXPECT_EQ(afterCommand("expand").front(), "didExpand") << "and once more";
}

TEST_F(MraidPresentationTest, TheCloseButtonTellsTheCreativeBeforeTheHost) {
  show();
  creative("expand");
  happened();
  deliverTap(*window_, {319 - 15, 8 + 15});
  EXPECT_EQ(happened(), joined({toldDefault, report(home), {"didCollapse"}}));
  EXPECT_FALSE(isFullScreen());
  EXPECT_EQ(page_->superview(), banner_.get());
}

TEST_F(MraidPresentationTest, ACustomCloseIsInvisibleButWorks) {
  struct Case {
    const char* command;
    bool drawn;
  };
  show();
  for (const auto& [command, drawn] : {Case{"setExpandProperties?useCustomClose=true", false},
                                       Case{"setExpandProperties?useCustomClose=false", true}}) {
    SCOPED_TRACE(command);
    creative(command);
    creative("expand");
    happened();
    const auto* button = dynamic_cast<const Button*>(window_->hitTest({305, 23}));
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->image().empty(), !drawn);
    EXPECT_EQ(button->convertTo(nullptr, button->bounds()), (Rect{290, 8, 30, 30}));
    EXPECT_EQ(button->accessibilityLabel(), "Close Interstitial Ad");
    deliverTap(*window_, {305, 23});
    EXPECT_EQ(happened().back(), "didCollapse");
  }
}

TEST_F(MraidPresentationTest, TheUserMayAlwaysLeaveAFullScreenAd) {
  show();
  creative("setExpandProperties?useCustomClose=true");
  creative("expand");
  happened();
  EXPECT_TRUE(window_->topViewController()->cancelOperation());
  EXPECT_EQ(happened(), joined({toldDefault, report(home), {"didCollapse"}}));
  EXPECT_FALSE(isFullScreen());
}

TEST_F(MraidPresentationTest, ResizingAndClosingTellTheCreativeOnly) {
  show();
  setResizeProperties();
  happened();
  const std::vector<std::string> toldResized{"mraid.setState('resized');"};
  EXPECT_EQ(afterCommand("resize"), joined({report("x:0,y:0,width:300,height:250"), toldResized}));
  View* container = page_->superview();
  EXPECT_EQ(container->frame(), (Rect{0, 230, 300, 250}));
  EXPECT_EQ(container->superview(), root_->view().get());
  creative("setResizeProperties?width=200&height=100");
  happened();
  EXPECT_EQ(afterCommand("resize"), joined({report("x:0,y:0,width:200,height:100"), toldResized}));
  EXPECT_EQ(container->frame(), (Rect{0, 380, 200, 100}));
  EXPECT_EQ(afterCommand("close"), joined({report(home), toldDefault, toldDefault}));
  EXPECT_EQ(container->superview(), nullptr);
  EXPECT_EQ(page_->superview(), banner_.get());
  EXPECT_EQ(page_->frame(), (Rect{0, 0, 320, 50}));
  EXPECT_EQ(afterCommand("close"), joined({report(home), toldDefault, toldDefault}));
}

TEST_F(MraidPresentationTest, TheControlOfAResizedAdClosesItAtEachPosition) {
  const std::pair<const char*, Point> cases[] = {
      {"top-left", {1, 231}},      {"top-center", {150, 231}}, {"top-right", {299, 231}},
      {"center", {150, 355}},      {"bottom-left", {1, 479}},  {"bottom-center", {150, 479}},
      {"bottom-right", {299, 479}}};
  show();
  for (const auto& [position, place] : cases) {
    SCOPED_TRACE(position);
    setResizeProperties(position);
    creative("resize");
    happened();
    const auto* control = dynamic_cast<const Button*>(window_->hitTest(place));
    ASSERT_NE(control, nullptr);
    EXPECT_FALSE(control->accessibilityLabel().empty());
    deliverTap(*window_, place);
    EXPECT_EQ(happened(), joined({report(home), toldDefault}));
  }
}

TEST_F(MraidPresentationTest, RefusedResizesChangeNothing) {
  show();
  EXPECT_THAT(afterCommand("resize"),
              ElementsAre("mraid.fireErrorEvent('Size required in resizeProperties.','resize');"));
  setResizeProperties();
  creative("expand");
  happened();
  EXPECT_THAT(afterCommand("resize"),
              ElementsAre("mraid.fireErrorEvent('Can not resize while view is Already expanded "
                          ".','resize');"));
  EXPECT_TRUE(isFullScreen());
  creative("close");
  happened();
  banner_->setPlacementType(PlacementType::interstitial);
  EXPECT_THAT(afterCommand("resize"),
              ElementsAre("mraid.fireErrorEvent('Cannot Resize Ad when PlacementType is "
                          "Interstitial','expand');"));
}

TEST_F(MraidPresentationTest, BeforeInitOnlyAnExpansionIsFollowed) {
  showBeforeInit(footOfScreen);
  setResizeProperties();
  EXPECT_THAT(
      afterCommand("resize"),
      ElementsAre("mraid.fireErrorEvent('Can not resize while loading or hidden.','resize');"));
  EXPECT_EQ(afterCommand("close"), toldDefault) << "the view undoes nothing and says nothing";
  EXPECT_EQ(afterCommand("expand").front(), "didExpand");
}

TEST_F(MraidPresentationTest, AResizedAdThatExpandsLeavesNothingBehind) {
  show();
  setResizeProperties();
  creative("resize");
  View* container = page_->superview();
  creative("expand");
  EXPECT_EQ(container->superview(), nullptr);
  creative("close");
  EXPECT_EQ(page_->superview(), banner_.get());
  EXPECT_EQ(root_->view()->subviews().size(), 1U);
}

TEST_F(MraidPresentationTest, WithoutARootControllerTheCreativeBelievesItselfExpandedQuirk) {
  const auto standalone = std::make_shared<View>(Rect{0, 0, 320, 480});
  show();
  standalone->addSubview(banner_);
  window_->setRootViewController(nullptr);
  EXPECT_EQ(afterCommand("expand"),
            joined({{"didExpand"}, toldExpanded, report(wholeScreen), toldExpanded}));
  EXPECT_THAT(platform_.log->messages(),
              Contains("Unable to present modal view controller becuase "
                       "rootViewController is nil.  Be sure to set the keyWindow's "
                       "rootViewController or provide one with "
                       "XAdViewPResentionController:."));
  EXPECT_EQ(page_->superview(), banner_.get()) << "and stays where it can be seen";
  EXPECT_EQ(afterCommand("close").back(), "mraid.setState('default');");
}

TEST_F(MraidPresentationTest, AnInterstitialThatClosesLeavesItToItsController) {
  show();
  banner_->setPlacementType(PlacementType::interstitial);
  std::vector<std::string> told;
  const auto events =
      std::make_shared<XAdViewOnlyForSubClassEyesDelegate>(XAdViewOnlyForSubClassEyesDelegate{
          .expandPropertiesChnaged =
              [&](const XMRAIDExpandProperties& properties) {
                told.push_back(properties.description());
              },
          .setOrientationPropertiesWith =
              [&](const XMRAIDOrientationProperties& properties) {
                told.push_back(properties.description());
              },
          .XInterstitialAdDidClose = [&](XAdView&) { told.emplace_back("closed"); }});
  banner_->pDelegate.set(events);
  creative("setExpandProperties?width=1&height=2");
  creative("setOrientationProperties?forceOrientation=portrait");
  EXPECT_EQ(happened(), report("x:0,y:430,width:320,height:50"));
  EXPECT_EQ(afterCommand("close"), toldDefault);
  EXPECT_THAT(told,
              ElementsAre("{width:1,height:2,useCustomClose:false}",
                          "{allowOrientationChange:true,forceOrientation:'portrait'}", "closed"));
}

TEST_F(MraidPresentationTest, RotationIsReportedALittleLater) {
  show();
  platform_.application->orientation = InterfaceOrientation::landscapeLeft;
  window_->setFrame({0, 0, 480, 320});
  runtime_.notifications().post(
      {.name = std::string{notifications::deviceOrientationDidChange}, .userInfo = {}});
  EXPECT_THAT(happened(), IsEmpty());
  advance(0.001);
  const auto told = happened();
  ASSERT_EQ(told.size(), 5U);
  EXPECT_EQ(told.front(), "mraid.setScreenSize({width:480,height:320});");
}

TEST_F(MraidPresentationTest, AnExpandedAdFollowsItsWindow) {
  show();
  creative("expand");
  happened();
  window_->setFrame({0, 0, 300, 400});
  platform_.screen->rect = {0, 0, 300, 400};
  advance(0.001);
  EXPECT_THAT(happened(), Contains("mraid.setCurrentPosition({x:0,y:0,width:300,height:400 });"));
  EXPECT_EQ(page_->frame(), (Rect{0, 0, 300, 400}));
  window_->topViewController()->didRotateFromInterfaceOrientation(InterfaceOrientation::portrait);
  EXPECT_EQ(happened().size(), 5U) << "and no script";
  platform_.device->version = "4.3";
  platform_.application->orientation = InterfaceOrientation::landscapeRight;
  window_->topViewController()->didRotateFromInterfaceOrientation(InterfaceOrientation::portrait);
  EXPECT_EQ(happened().back(),
            "window.__defineGetter__('orientation',function(){return 90;});"
            "(function(){var event = document.createEvent('Events'); "
            "event.initEvent('orientationchange',true, false); window.dispatchEvent(event);})();");
}

TEST_F(MraidPresentationTest, AResizedAdFollowsItsWindow) {
  show();
  setResizeProperties();
  creative("resize");
  View* container = page_->superview();
  const auto reshape = [this](const Size& size, const Rect& banner) {
    happened();
    window_->setFrame({0, 0, size.width, size.height});
    platform_.screen->rect = window_->frame();
    banner_->setFrame(banner);
    runtime_.notifications().post(notifications::windowSizeDidChange);
    advance(0.001);
    return happened();
  };
  EXPECT_THAT(reshape({500, 800}, {0, 750, 320, 50}),
              Contains("mraid.setMaxSize({width:500,height:800});"));
  EXPECT_EQ(container->frame(), (Rect{0, 550, 300, 250}));
  EXPECT_THAT(reshape({480, 320}, {0, 270, 320, 50}), Contains("mraid.setState('resized');"));
  EXPECT_EQ(container->frame(), (Rect{0, 70, 300, 250}));
  EXPECT_THAT(reshape({200, 100}, {0, 50, 200, 50}), Contains(toldDefault.front()))
      << "there is no room for it";
  EXPECT_EQ(container->superview(), nullptr);
  EXPECT_EQ(page_->superview(), banner_.get());
}

TEST_F(MraidPresentationTest, NothingStandsOnTheScreenForASlotThatIsNotSeen) {
  show();
  setResizeProperties();
  creative("resize");
  banner_->setHidden(true);
  banner_->didDisappearFromScreen();
  EXPECT_EQ(page_->superview(), banner_.get());
  happened();
  EXPECT_THAT(afterCommand("resize"),
              ElementsAre("mraid.fireErrorEvent('Can not resize while the ad is not on the "
                          "screen.','resize');"));
  banner_->setHidden(false);
  creative("resize");
  EXPECT_NE(page_->superview(), banner_.get());
  banner_->setFrame({0, 900, 320, 50});
  banner_->didMoveOnScreen();
  advance(0.001);
  EXPECT_EQ(page_->superview(), banner_.get()) << "scrolled away";
}

TEST_F(MraidPresentationTest, AnAdDoesNotExpandUnderWhatCoversTheScreen) {
  show();
  root_->presentViewController(std::make_shared<ViewController>(), Animated::no);
  EXPECT_THAT(afterCommand("expand"),
              ElementsAre("mraid.fireErrorEvent('Can not expand while something else covers the "
                          "screen.','expand');"));
  EXPECT_EQ(banner_->eventEmitter()->state(), MRAIDState::normal);
  root_->dismissViewController(Animated::no);
  EXPECT_EQ(afterCommand("expand").front(), "didExpand");
}

TEST_F(MraidPresentationTest, OnlyAnExpansionEndsInACollapse) {
  const std::string lost = "didFail 1101 The page's process has ended.";
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
    if (expands) {
      EXPECT_THAT(happened(), ElementsAre("didCollapse", lost));
    } else {
      EXPECT_THAT(happened(), ElementsAre(lost)) << "the page had opened outside";
    }
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
  creative("setOrientationProperties?forceOrientation=portrait");
  EXPECT_EQ(happened(), report(wholeScreen));
  EXPECT_TRUE(isFullScreen());
  EXPECT_EQ(page_->window(), window_.get());
}

TEST_F(MraidPresentationTest, WhileItIsOpenedAnAdIsNotReplaced) {
  slot_->bannerRefreshInterval = 30;
  for (const char* opening : {"expand", "resize"}) {
    SCOPED_TRACE(opening);
    show();
    setResizeProperties();
    creative(opening);
    happened();
    advance(100);
    EXPECT_THAT(happened(), IsEmpty());
    creative("close");
    happened();
    advance(30);
    EXPECT_FALSE(happened().empty());
    banner_->removeFromSuperview();
  }
}

TEST_F(MraidPresentationTest, ALockReportsTheBrowserAboveAnOpenedAdAsClosedQuirk) {
  const auto lock = [this] {
    recordsScripts_ = false;
    happened();
    runtime_.notifications().post(
        {.name = std::string{notifications::screenLocked}, .userInfo = {}});
    return happened();
  };
  show();
  slot_->shouldOpenClickThroughURLInAppBrowser = true;
  setResizeProperties();
  creative("resize");
  EXPECT_THAT(lock(), IsEmpty()) << "there is no browser";
  recognizeTap(*page_);
  creative("open?url=http%3A%2F%2Fshop.example%2F");
  settle();
  ASSERT_TRUE(banner_->appBrowserOpen());
  EXPECT_THAT(lock(), ElementsAre("willCloseBrowser"));
  EXPECT_TRUE(banner_->appBrowserOpen());
}

TEST_F(MraidPresentationTest, ReleasingTakesEverythingOffTheScreen) {
  for (const char* opening : {"expand", "resize"}) {
    SCOPED_TRACE(opening);
    show();
    setResizeProperties();
    creative(opening);
    happened();
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

TEST_F(MraidPresentationTest, TheDeathOfAnOpenedPageClosesItAndLeavesTheSlotAlive) {
  slot_->bannerRefreshInterval = 30;
  for (const auto& [opening, heard] : {std::pair{"expand", 2U}, std::pair{"resize", 1U}}) {
    SCOPED_TRACE(opening);
    show();
    setResizeProperties();
    creative(opening);
    happened();
    page_->terminateProcess();
    const auto told = happened();
    EXPECT_EQ(told.size(), heard);
    EXPECT_EQ(told.back(), "didFail 1101 The page's process has ended.");
    EXPECT_FALSE(isFullScreen());
    EXPECT_EQ(root_->view()->subviews().size(), 1U);
    advance(30);
    EXPECT_FALSE(happened().empty()) << "the next ad is asked for";
    banner_->removeFromSuperview();
    page_.reset();
  }
}

TEST_F(MraidPresentationTest, AHostMayDropTheViewInsideEachReport) {
  for (const bool byButton : {false, true}) {
    SCOPED_TRACE(byButton);
    for (const char* last : {"didExpand", "didCollapse"}) {
      SCOPED_TRACE(last);
      show();
      onCallback_ = [&](const std::string& line) {
        if (line != last || !banner_) return;
        banner_->removeFromSuperview();
        banner_.reset();
      };
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
