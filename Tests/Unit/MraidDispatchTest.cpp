// The commands of a creative, from the URL that it navigates to up to what the ad view and the page
// hear of it.

#include <tavo/Runtime.h>

#include "AdController/AdGenerator/CommandBudget.h"
#include "AdController/AdGenerator/CreativeHtml.h"
#include "AdController/AdGenerator/ExpandGeometry.h"
#include "AdController/AdGenerator/MraidStatement.h"
#include "AdController/AdGenerator/NavigationPolicy.h"
#include "AdController/AdGenerator/XWebViewAgent.h"
#include "Unit/RecordingAdView.h"
#include "Unit/TransportFixture.h"

namespace tavo::test {
namespace {

class MraidDispatchTest : public TransportTest {
 protected:
  explicit MraidDispatchTest(const Limits& limits = {}) : TransportTest{limits} {
    platform_.webViews->onScript = [this](const std::string& script) { lines_.push_back(script); };
    agent_ = XWebViewAgent::create(runtime_.environment(), {0, 0, 320, 50}, {}, events_);
    page_ = platform_.webViews->last();
    agent_->loadHTMLString("<html><head></head>ad</html>", {}, adView_);
  }

  void finishLoad() {
    platform_.runLoop->runPending();
    lines_.clear();
  }

  // The page navigates to `url`; what has happened when all is done.
  Lines after(const std::string& url) {
    const auto before = lines_;
    EXPECT_FALSE(navigate(url)) << "a command must not load";
    EXPECT_EQ(lines_, before) << "the engine has its answer before it runs";
    platform_.runLoop->runPending();
    return std::exchange(lines_, {});
  }

  bool navigate(const std::string& url) {
    return page_->navigate({Url::fromText(url), Url::parse("about:blank"), NavigationType::other});
  }

  void rest() { platform_.runLoop->advance(Seconds{2}); }

  Lines lines_;
  const std::shared_ptr<WebViewAgentDelegate> events_ =
      std::make_shared<WebViewAgentDelegate>(WebViewAgentDelegate{
          .webViewAgentDidFailWithError =
              [this](const Error& error) { lines_.push_back("fail " + error.description); },
          .webViewOpenCustomURL =
              [this](const Url& url) { lines_.push_back("customURL " + url.text()); }});
  std::shared_ptr<RecordingAdView> adView_ =
      std::make_shared<RecordingAdView>(Rect{0, 430, 320, 50}, lines_);
  std::shared_ptr<XWebViewAgent> agent_;
  std::shared_ptr<headless::HeadlessWebView> page_;
};

const Lines initialisation{
    "mraid.setSupports('sms',false);",
    "mraid.setSupports('calendar',true);",
    "mraid.setSupports('inlineVideo',true);",
    "mraid.setSupports('tel',false);",
    "mraid.setSupports('storePicture',true);",
    "mraid.setExpandProperties({width:320,height:460,useCustomClose:false});",
    "mraid.setResizeProperties({width:0,height:0,customClosePosition:'top-right',"
    "offsetX:0,offsetY:0,allowOffscreen:false});",
    "mraid.setOrientationProperties({allowOrientationChange:true,forceOrientation:'none'});",
    "mraid.setPlacementType('inline');",
    "mraid.setState('default');",
    "mraid.setCurrentPosition({x:0,y:430,width:320,height:50 });",
    "mraid.setViewable(true);",
    "mraid.setScreenSize({width:320,height:460});",
    "mraid.fireEvent('sizeChange:width=320.000000,height=460.000000');",
    "mraid.fireEvent('ready');",
    "document.documentElement.outerHTML"};

TEST_F(MraidDispatchTest, EveryFinishedLoadInitialisesThePage) {
  platform_.runLoop->runPending();
  EXPECT_EQ(std::exchange(lines_, {}), initialisation);
  EXPECT_FALSE(agent_->commands().expandParametersDict)
      << "the page's first answers are not its wishes";
  page_->finishLoad();
  EXPECT_EQ(lines_, initialisation);
}

TEST_F(MraidDispatchTest, ASecondPageIsForTheStandardOnly) {
  EXPECT_THAT(after("mraid://expand?url=http%3A%2F%2Fa.example%2F"),
              Contains(HasSubstr("expandToFrame")));
  agent_->eventEmitter()->setFollowsStandards(true);
  rest();
  EXPECT_EQ(after("mraid://expand?url=http%3A%2F%2Fa.example%2F"),
            Lines{"expandToPage http://a.example/"});
  EXPECT_THAT(after("mraid://close"), testing::SizeIs(1)) << "the view says the rest";
}

TEST_F(MraidDispatchTest, TheInitialisationTellsTheScreenAsItIsHeld) {
  const std::pair<InterfaceOrientation, const char*> cases[] = {
      {InterfaceOrientation::landscapeLeft, "mraid.setScreenSize({width:480,height:320});"},
      {InterfaceOrientation::unknown, "mraid.setScreenSize({width:460,height:320});"},
  };
  for (const auto& [orientation, screen] : cases) {
    platform_.application->orientation = orientation;
    // The strip stands at the side that is the left one when the screen is held sideways.
    platform_.application->statusBar =
        isLandscape(orientation) ? Rect{0, 0, 0, 480} : Rect{0, 0, 320, 20};
    page_->finishLoad();
    EXPECT_THAT(std::exchange(lines_, {}), Contains(screen));
  }
}

TEST_F(MraidDispatchTest, EachCommandReachesTheViewAsItStands) {
  using Case = std::pair<const char*, Lines>;
  const Case cases[] = {
      {"init", {"handleInitMRAIDAdWithWebView", "mraid.setMaxSize({width:320,height:480});"}},
      {"expand", {"expandToFrame x:160,y:250,width:0,height:0", "mraid.setState('expanded');"}},
      {"setExpandProperties?width=5000&height=5000&useCustomClose=true",
       {"setExpandPropertiesWithDict {width:5000,height:5000,useCustomClose:true}"}},
      {"expand",
       {"expandToFrame x:0,y:20,width:320,height:460 customClose", "mraid.setState('expanded');"}},
      {"close", {"collapseToFrame x:0,y:430,width:320,height:50", "mraid.setState('default');"}},
      {"setExpandProperties?height=101",
       {"setExpandPropertiesWithDict {width:0,height:101,useCustomClose:false}"}},
      {"setOrientationProperties?forceOrientation=landscape",
       {"setOrientationPropertiesWith {allowOrientationChange:true,forceOrientation:'landscape'}"}},
      {"expand",
       {"expandToFrame x:160,y:199,width:0,height:101 orientation", "mraid.setState('expanded');"}},
      {"resize?width=300&height=250", {"resizeAd none"}},
      {"setResizeProperties?width=300&height=250&offsetX=-10&customClosePosition=center", {}},
      {"resize",
       {"resizeAd {width:300,height:250,customClosePosition:'center',offsetX:-10,offsetY:0,"
        "allowOffscreen:false}"}},
      {"setResizeProperties?offsetY=5", {}},
      {"resize",
       {"resizeAd {width:0,height:0,customClosePosition:'top-right',offsetX:0,offsetY:5,"
        "allowOffscreen:false}"}},
      {"updateCurrentPosition", {"updateCurrentPositionOfWebView"}},
      {"open?url=http%3A%2F%2Fa.example%2F", {"openUrlInBrowser http://a.example/"}},
      {"open?url=tel%3A123", {"openDiallerWithUrl tel:123"}},
      {"open?url=sms%3A123%26body%3Dhi%20there", {"sendSMSWithUrl sms:123&body=hi%20there"}},
      {"open?url=mailto%3Aa%40b.example", {"sendEmailWithUrl mailto:a@b.example"}},
      {"open?url=facetime%3A123", {"makeFaceTimeCallWithUrl facetime:123"}},
      {"open?url=app%3A%2F%2Fx", {"customURL app://x"}},
      {"playVideo?url=http%3A%2F%2Fa.example%2Fv.mp4",
       {"handlePlayVideoWithURL http://a.example/v.mp4"}},
      {"playVideo?url=", {"mraid.fireErrorEvent('playVideo needs a URL.','playVideo');"}},
      {"createCalendarEvent?event=%7Bstart%3A1%7D", {"createCalenderEvent {start:1}"}},
      {"foo", {"mraid.fireErrorEvent('The command requested is unknown','foo');"}},
      {"Close", {"mraid.fireErrorEvent('The command requested is unknown','Close');"}},
      {"x');alert(1);('", {}},
  };
  finishLoad();
  for (const auto& [command, happens] : cases) {
    SCOPED_TRACE(command);
    EXPECT_EQ(after("mraid://" + std::string{command}), happens);
    rest();
  }
}

TEST_F(MraidDispatchTest, ALinkLeavesThePageForWhereItBelongs) {
  const std::pair<const char*, const char*> cases[] = {
      {"tel:123", "openDiallerWithUrl tel:123"},
      {"sms:123", "sendSMSWithUrl sms:123"},
      {"mailto:a@b.example", "sendEmailWithUrl mailto:a@b.example"},
      {"app://x", "customURL app://x"},
      {"http://a.example/", "openUrlInBrowser http://a.example/"}};
  finishLoad();
  for (const auto& [url, expected] : cases) {
    EXPECT_FALSE(page_->navigate(
        {Url::fromText(url), Url::parse("about:blank"), NavigationType::linkClicked}));
    EXPECT_THAT(std::exchange(lines_, {}), ElementsAre(expected));
    rest();
  }
}

TEST_F(MraidDispatchTest, ANavigationIsACommandAClickARefreshOrAPage) {
  using Decision = NavigationDecision;
  using Type = NavigationType;
  const Url page = Url::parse("http://a.example/");
  const Url main = Url::parse("http://main.example/");
  const Url empty = Url::parse(blankPage);
  const NavigationFacts tapped{.userTapped = true};
  struct Case {
    const char* name;
    Navigation navigation;
    NavigationFacts facts;
    Decision expected;
  };
  const Case cases[] = {
      {"a command",
       {Url::parse("mraid://close"), main, Type::linkClicked},
       {},
       Decision::runCommand},
      {"a link", {page, main, Type::linkClicked}, {}, Decision::openAsClick},
      {"a link of a redirect ad",
       {page, main, Type::linkClicked},
       {MobileAdSubTypes::redirectHtmlBanner},
       Decision::openAsClick},
      {"a link elsewhere", {Url::parse("tel:1"), main, Type::linkClicked}, tapped, Decision::allow},
      {"after a tap", {page, page, Type::other}, tapped, Decision::openAsClick},
      {"without one", {page, page, Type::other}, {}, Decision::allow},
      {"of a frame", {page, main, Type::other}, tapped, Decision::allow},
      {"a form", {page, page, Type::formSubmitted}, tapped, Decision::allow},
      {"the empty page", {empty, empty, Type::other}, tapped, Decision::allow},
      {"of a redirect banner",
       {page, page, Type::other},
       {MobileAdSubTypes::redirectHtmlBanner, true},
       Decision::allow},
      {"of a redirect interstitial",
       {page, page, Type::other},
       {MobileAdSubTypes::redirectInterstitial, true},
       Decision::allow},
      {"a refresh",
       {page, page, Type::other},
       {.userTapped = true, .metaRefreshExists = true},
       Decision::followRefresh},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(decideNavigation(test.navigation, test.facts), test.expected) << test.name;
  }
}

TEST_F(MraidDispatchTest, OnlyASingleDigitRefreshesADocument) {
  for (const char* refresh : {R"(<META HTTP-EQUIV = "refresh" content="0;url=http://a">)",
                              R"(<b>ad</b><meta content="9 ; url=b" http-equiv="refresh" >)"}) {
    EXPECT_TRUE(hasMetaRefresh(refresh)) << refresh;
  }
  for (const char* none : {R"(<meta http-equiv="refresh" content="10;url=http://a">)",
                           R"(<meta http-equiv="refresh" content="5">)", "<b>refresh</b>"}) {
    EXPECT_FALSE(hasMetaRefresh(none)) << none;
  }
}

TEST_F(MraidDispatchTest, AnAdThatNamesTheScriptHasNoBaseAndAFailureIsPassedOn) {
  const Url base = Url::parse("http://cdn.example/");
  for (const bool namesScript : {false, true}) {
    agent_->loadHTMLString(namesScript ? "<script src='mraid.js'></script>" : "<b>ad</b>", base,
                           adView_);
    EXPECT_EQ(page_->baseUrl(), namesScript ? Url{} : base);
  }
  finishLoad();
  for (const int code : {cannotShowUrlError, -999, -1004}) {
    page_->failLoad({"net", code, std::to_string(code)});
    platform_.runLoop->runPending();
  }
  EXPECT_THAT(lines_, ElementsAre("fail -1004"));
}

TEST_F(MraidDispatchTest, AWindowThatATapOpensIsAClick) {
  const auto open = [this](const char* url) {
    EXPECT_FALSE(page_->navigate({Url::parse(url), Url::parse(url), NavigationType::newWindow}));
    return std::exchange(lines_, {});
  };
  finishLoad();
  EXPECT_THAT(open("http://a.example/"), IsEmpty()) << "nobody has tapped";
  recognizeTap(*page_);
  EXPECT_THAT(open("about:blank"), IsEmpty());
  EXPECT_THAT(open("http://a.example/"), ElementsAre("openUrlInBrowser http://a.example/"));
  EXPECT_THAT(open("http://a.example/"), IsEmpty()) << "one tap, one window";
  recognizeTap(*page_);
  EXPECT_THAT(open("tel:123"), ElementsAre("openDiallerWithUrl tel:123"));
}

TEST_F(MraidDispatchTest, TheHostsOwnAddressesAreNoWayOut) {
  finishLoad();
  for (int turn = 0; turn < 3; ++turn) {
    EXPECT_THAT(after("mraid://open?url=app%3A%2F%2Fx"), ElementsAre("customURL app://x"));
  }
}

TEST_F(MraidDispatchTest, NoUrlReachesTheFixedNumberQuirk) {
  platform_.application->openableSchemes.insert("tel");
  finishLoad();
  for (const char* command : {"mraid://tel:", "mraid://tel%3A", "mraid://tel"}) {
    SCOPED_TRACE(command);
    (void)after(command);
    EXPECT_THAT(platform_.application->openedUrls, IsEmpty());
  }
}

TEST_F(MraidDispatchTest, AgentAndViewOutliveACommandThatDropsThem) {
  finishLoad();
  adView_->onCall = [this] {
    agent_.reset();
    adView_.reset();
  };
  navigate("mraid://close");
  navigate("mraid://close");
  platform_.runLoop->runPending();
  EXPECT_THAT(lines_, ElementsAre("collapseToFrame x:0,y:0,width:0,height:0",
                                  "mraid.setState('default');"));
}

TEST_F(MraidDispatchTest, WithoutItsViewAnAgentOnlyNamesUnknownCommands) {
  finishLoad();
  adView_.reset();
  for (const char* command :
       {"expand", "init", "close", "setExpandProperties", "setResizeProperties", "resize", "open",
        "updateCurrentPosition", "setOrientationProperties", "playVideo", "createCalendarEvent"}) {
    SCOPED_TRACE(command);
    EXPECT_THAT(after("mraid://" + std::string{command}), IsEmpty());
    rest();
  }
  EXPECT_THAT(after("mraid://foo"),
              ElementsAre("mraid.fireErrorEvent('The command requested is unknown','foo');"));
}

TEST_F(MraidDispatchTest, TheDeathOfTheProcessIsOneFailure) {
  finishLoad();
  page_->terminateProcess();
  EXPECT_THAT(lines_, ElementsAre("webViewLeavesScreen", "fail The page's process has ended."));
}

TEST_F(MraidDispatchTest, APageThatWasRefusedAndDiesIsOneFailureToo) {
  page_->failLoad(makeError(TransportError::cannotConnect, "refused"));
  platform_.runLoop->runPending();
  page_->terminateProcess();
  EXPECT_THAT(lines_, ElementsAre("fail refused", "webViewLeavesScreen"));
}

TEST_F(MraidDispatchTest, AFloodEndsAtTheBurstAndGoesOnAtTheRate) {
  finishLoad();
  for (int n = 0; n < 100'000; ++n) navigate("mraid://updateCurrentPosition");
  platform_.runLoop->runPending();
  EXPECT_EQ(std::exchange(lines_, {}).size(), 1500U);
  platform_.runLoop->advance(Seconds{2});
  for (int n = 0; n < 1000; ++n) navigate("mraid://updateCurrentPosition");
  platform_.runLoop->runPending();
  EXPECT_EQ(lines_.size(), 100U);
}

TEST_F(MraidDispatchTest, ActionsThatLeaveNeedATapOrAPause) {
  finishLoad();
  const std::string open = "mraid://open?url=http%3A%2F%2Fa.example%2F";
  EXPECT_EQ(after(open).size(), 1U);
  EXPECT_THAT(after(open), IsEmpty());
  EXPECT_THAT(after("mraid://expand"), IsEmpty());
  EXPECT_FALSE(page_->navigate(
      {Url::parse("http://a.example/"), Url::parse("about:blank"), NavigationType::linkClicked}));
  EXPECT_THAT(lines_, IsEmpty()) << "a scripted click is an action as well";
  recognizeTap(*page_);
  EXPECT_EQ(after("mraid://expand").size(), 2U);
  EXPECT_EQ(after("mraid://playVideo?url=http%3A%2F%2Fa.example%2F").size(), 1U)
      << "an expansion leaves the tap for what it shows";
  EXPECT_THAT(after(open), IsEmpty()) << "one tap, one action";
  rest();
  EXPECT_EQ(after(open).size(), 1U);
  adView_->placement = PlacementType::interstitial;
  EXPECT_EQ(after("mraid://expand").size(), 2U) << "the screen is the ad's already";
}

class StrictDispatchTest : public MraidDispatchTest {
 protected:
  StrictDispatchTest() : MraidDispatchTest{{.leavingActionsNeedTap = true}} {}
};

TEST_F(StrictDispatchTest, WhereATapIsAskedForNothingElseCounts) {
  finishLoad();
  const std::string open = "mraid://open?url=http%3A%2F%2Fa.example%2F";
  EXPECT_THAT(after(open), IsEmpty());
  recognizeTap(*page_);
  EXPECT_EQ(after(open).size(), 1U);
  EXPECT_THAT(after(open), IsEmpty());
  recognizeTap(*page_);
  rest();
  EXPECT_THAT(after(open), IsEmpty()) << "the tap was long ago";
}

TEST_F(MraidDispatchTest, AnExpandedAdIsCentredInTheApplication) {
  using Case = std::pair<std::optional<XMRAIDExpandProperties>, Rect>;
  constexpr double farthest = 9.3e18;
  const Rect application{0, 20, 320, 460};
  const Case cases[] = {
      {std::nullopt, {160, 250, 0, 0}},
      {XMRAIDExpandProperties{Size{320, 460}}, {0, 20, 320, 460}},
      {XMRAIDExpandProperties{Size{5000, 5000}}, {0, 20, 320, 460}},
      {XMRAIDExpandProperties{Size{101, 51}}, {109, 224, 101, 51}},
      {XMRAIDExpandProperties{Size{farthest, farthest}}, {0, 20, 320, 460}},
      {XMRAIDExpandProperties{Size{-100, 10}}, {210, 245, -100, 10}},
  };
  for (const auto& [asked, expected] : cases) {
    EXPECT_EQ(expandedFrame(application, asked), expected) << members(expected);
  }
}

}  // namespace
}  // namespace tavo::test
