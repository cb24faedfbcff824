#include "Support/Testing.h"
#include "UserInterface/WebView/BaseViews/EndPlan.h"
#include "UserInterface/WebView/BaseViews/InterstitialCloseButton.h"
#include "UserInterface/WebView/BaseViews/InterstitialOrientation.h"
#include "UserInterface/WebView/BaseViews/RefreshPolicy.h"
#include "UserInterface/WebView/BaseViews/RotationScript.h"

namespace tavo::test {
namespace {

using Sub = MobileAdSubTypes;

TEST(InterstitialCloseButton, WhichButtonEachKindOfAdMayHave) {
  struct Case {
    Sub subType;
    bool drawn;
    bool invisible;
    bool redirect;
    bool afterLoad;
  };
  const Case cases[] = {
      {Sub::unknown, false, false, true, false},
      {Sub::image, false, false, true, true},
      {Sub::richMediaBanner, true, true, true, false},
      {Sub::richMediaInterstitial, true, true, true, false},
      {Sub::vastInterstitial, false, false, false, false},
      {Sub::vastBanner, false, false, true, false},
      {Sub::redirectImageBanner, false, false, true, true},
      {Sub::redirectHtmlBanner, false, false, true, false},
      {Sub::redirectInterstitial, false, false, true, true},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(static_cast<int>(test.subType));
    EXPECT_EQ(mayAddCloseButton({.subType = test.subType}), test.drawn);
    EXPECT_FALSE(mayAddCloseButton({.exists = true, .subType = test.subType}));
    EXPECT_FALSE(mayAddCloseButton({.useCustomClose = true, .subType = test.subType}));
    for (const bool exists : {false, true}) {
      const CloseButtonFacts facts{
          .exists = exists, .useCustomClose = exists, .subType = test.subType};
      EXPECT_EQ(mayAddCloseButtonWithoutImage(facts), test.invisible);
      EXPECT_EQ(mayAddCloseButtonForRedirect(facts), test.redirect);
    }
    EXPECT_EQ(isClosedLikeRedirect(test.subType), test.afterLoad);
  }
}

TEST(InterstitialCloseButton, WhatFollowsWhenTheCreativeSaysWhoDrawsIt) {
  struct Case {
    bool exists;
    bool useCustomClose;
    CloseButtonChange change;
  };
  for (const auto& [exists, useCustomClose, change] :
       {Case{false, false, CloseButtonChange::add}, Case{false, true, CloseButtonChange::none},
        Case{true, false, CloseButtonChange::none}, Case{true, true, CloseButtonChange::hide}}) {
    EXPECT_EQ(changeForExpandProperties({.exists = exists, .useCustomClose = useCustomClose}),
              change);
  }
  EXPECT_EQ(interstitialCloseButtonPlace(360, false), (CloseButtonPlace{{320, 8, 40, 40}}));
  EXPECT_EQ(interstitialCloseButtonPlace(360, true), (CloseButtonPlace{{310, 0, 50, 50}, 5}));
}

TEST(InterstitialCloseButton, TheKeyboardMayWhatTheButtonMay) {
  EXPECT_EQ(wayToLeave({}), LeaveWay::close) << "still loading";
  EXPECT_EQ(wayToLeave({.hasVideo = true}), LeaveWay::close) << "nothing to watch yet";
  EXPECT_EQ(wayToLeave({.adLoaded = true}), LeaveWay::close) << "a page or a picture";
  EXPECT_EQ(wayToLeave({.adLoaded = true, .hasVideo = true}), LeaveWay::stay);
  EXPECT_EQ(wayToLeave({.adLoaded = true, .hasVideo = true, .videoCloseDisplayed = true}),
            LeaveWay::closeVideo);
}

// What differs from a plain departure: animated, with the status bar back and one report.
TEST(InterstitialEnd, EachCauseHasItsPlan) {
  using Plan = EndPlan;
  const std::pair<EndCause, Plan> cases[] = {
      {EndCause::userClosed, {.creative = Plan::Creative::told, .content = Plan::Content::removed}},
      {EndCause::creativeClosed, {.content = Plan::Content::removed}},
      {EndCause::videoDismissed, {}},
      {EndCause::failed,
       {.statusBar = Plan::StatusBar::showWhenOnScreen, .report = Plan::Report::none}},
      {EndCause::lowMemory,
       {.memory = Plan::Memory::released, .report = Plan::Report::bothIfLowMemoryIsHeard}},
      {EndCause::adDismissedOnLowMemory, {.report = Plan::Report::lowMemoryThenDismissed}},
      {EndCause::adReleased,
       {.scope = Plan::Scope::whileOnScreen, .departure = Plan::Departure::animatedUnlessCovered}},
      {EndCause::deviceLocked,
       {.scope = Plan::Scope::whileOnScreen, .departure = Plan::Departure::atOnce}}};
  for (const auto& [cause, plan] : cases) {
    EXPECT_EQ(planEnd(cause), plan) << static_cast<int>(cause);
  }
}

TEST(InterstitialOrientation, WhatEachRecordPermits) {
  using Force = ForceOrientation;
  using Interface = InterfaceOrientation;
  struct Case {
    OrientationRules rules;
    bool autorotates;
    OrientationMask supported;
    Interface preferred;  // the screen is held upside down
  };
  const auto rule = [](bool allow, Force force) {
    return XMRAIDOrientationProperties{allow, force};
  };
  const Interface held = Interface::portraitUpsideDown;
  const Case cases[] = {
      {std::nullopt, false, 30, held},
      {rule(true, Force::none), true, 30, held},
      {rule(true, Force::portrait), true, 30, held},
      {rule(true, Force::landscape), true, 30, held},
      {rule(false, Force::none), false, 30, held},
      {rule(false, Force::portrait), false, 2, Interface::portrait},
      {rule(false, Force::landscape), false, 24, Interface::landscapeLeft},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.rules ? test.rules->description() : "none");
    EXPECT_EQ(mayAutorotate(test.rules), test.autorotates);
    EXPECT_EQ(supportedOrientations(test.rules), test.supported);
    EXPECT_EQ(preferredOrientation(test.rules, held), test.preferred);
  }
}

TEST(InterstitialOrientation, ForcedOrientationsAreComparedByNumberQuirk) {
  struct Case {
    ForceOrientation force;
    std::array<bool, 5> permitted;  // by the interface orientation's number
  };
  for (const auto& test : {Case{ForceOrientation::portrait, {true, false, false, false, false}},
                           Case{ForceOrientation::landscape, {false, true, false, false, false}},
                           Case{ForceOrientation::none, {false, false, true, false, false}}}) {
    for (int number = 0; number < 5; ++number) {
      const auto orientation = static_cast<InterfaceOrientation>(number);
      EXPECT_EQ(mayAutorotateTo(orientation, XMRAIDOrientationProperties{false, test.force}),
                test.permitted.at(static_cast<std::size_t>(number)))
          << static_cast<int>(test.force) << " to " << number;
      EXPECT_TRUE(mayAutorotateTo(orientation, XMRAIDOrientationProperties{true, test.force}));
      EXPECT_FALSE(mayAutorotateTo(orientation, std::nullopt));
    }
  }
}

TEST(RotationScript, TellsOldSystemsTheAngleAndNewOnesNothing) {
  const std::pair<int, const char*> cases[] = {{0, "180"}, {1, "0"},   {2, "180"},
                                               {3, "90"},  {4, "-90"}, {9, "0"}};
  for (const auto& [orientation, angle] : cases) {
    EXPECT_EQ(rotationScript(static_cast<InterfaceOrientation>(orientation), "4.3"),
              std::string{"window.__defineGetter__('orientation',function(){return "} + angle +
                  ";});(function(){var event = document.createEvent('Events'); event.initEvent("
                  "'orientationchange',true, false); window.dispatchEvent(event);})();");
  }
  EXPECT_EQ(rotationScript(InterfaceOrientation::portrait, "5.0"), "");
  EXPECT_EQ(rotationScript(InterfaceOrientation::portrait, "12.1"), "");
}

TEST(RefreshPolicy, WhatKeepsATimerAndWhatArmsOne) {
  struct Case {
    const char* name;
    std::function<void(RefreshFacts&)> change;
    bool keeps;
    bool arms;
  };
  const Case cases[] = {
      {"a banner after its first answer", [](auto&) {}, true, true},
      {"not seen", [](auto& f) { f.visible = false; }, false, false},
      {"behind the lock", [](auto& f) { f.deviceLocked = true; }, false, true},
      {"an interstitial", [](auto& f) { f.type = MobileAdTypes::interstitial; }, false, false},
      {"a film", [](auto& f) { f.subType = MobileAdSubTypes::vastBanner; }, false, false},
      {"a page that was led to", [](auto& f) { f.subType = MobileAdSubTypes::redirectHtmlBanner; },
       true, true},
      {"an interval of zero", [](auto& f) { f.interval = 0; }, false, false},
      {"a negative one", [](auto& f) { f.interval = -1; }, true, false},
      {"a tick before the first answer", [](auto& f) { f.timerFired = f.firstAdRequest = true; },
       true, true},
      {"a tick", [](auto& f) { f.timerFired = true; }, true, false}};
  for (const auto& test : cases) {
    RefreshFacts facts{.visible = true, .interval = 30, .firstAdRequest = false};
    test.change(facts);
    EXPECT_EQ(mayKeepRefreshing(facts), test.keeps) << test.name;
    EXPECT_EQ(mustArmRefresh(facts), test.arms) << test.name;
  }
}

}  // namespace
}  // namespace tavo::test
