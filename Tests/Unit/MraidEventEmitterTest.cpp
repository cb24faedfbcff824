#include <limits>

#include <tavo/Runtime.h>
#include <tavo/XGlobalConfiguration.h>

#include "AdController/AdGenerator/XMRAIDEventEmitter.h"
#include "Headless/HeadlessPlatform.h"
#include "Support/Testing.h"

namespace tavo::test {
namespace {

class MraidEventEmitter : public testing::Test {
 protected:
  using Statements = std::vector<std::string>;
  using PageRef = XMRAIDEventEmitter::WebViewRef;

  struct Case {
    std::function<void(XMRAIDEventEmitter&, const PageRef&)> act;
    Statements expected;
  };

  void expectStatements(const std::vector<Case>& cases) {
    for (const auto& [act, expected] : cases) {
      const auto page = makePage();
      act(emitter_, page);
      EXPECT_EQ(page->scripts(), expected);
    }
  }

  std::shared_ptr<headless::HeadlessWebView> makePage() {
    return std::make_shared<headless::HeadlessWebView>(Rect{}, platform_.runLoop);
  }

  headless::HeadlessPlatform platform_;
  Runtime runtime_{platform_.platform()};
  XMRAIDEventEmitter emitter_{platform_.runLoop};
};

TEST_F(MraidEventEmitter, ReportsEventsAndFlags) {
  expectStatements({
      {[](auto& e, auto& page) { e.fireReadyEventForWebView(page); },
       {"mraid.fireEvent('ready');"}},
      {[](auto& e, auto& page) { e.fireEventForEvent("sizeChange:width=1.5", page); },
       {"mraid.fireEvent('sizeChange:width=1.5');"}},
      {[](auto& e, auto& page) { e.setViewable(true, page); }, {"mraid.setViewable(true);"}},
      {[](auto& e, auto& page) { e.setViewable(false, page); }, {"mraid.setViewable(false);"}},
      {[](auto& e, auto& page) {
         e.reportErrorMessage("Access denied.", "createCalendarEvent", page);
       },
       {"mraid.fireErrorEvent('Access denied.','createCalendarEvent');"}},
  });
}

TEST_F(MraidEventEmitter, NamesFeaturesPlacementsAndStates) {
  const auto supported = [](int feature) {
    return [feature](auto& e, auto& page) {
      e.setSupported(feature % 2 == 0, static_cast<MRAIDFeature>(feature), page);
    };
  };
  const auto placement = [](int value) {
    return [value](auto& e, auto& page) {
      e.setPlacementType(static_cast<PlacementType>(value), page);
    };
  };
  const auto state = [](int value) {
    return [value](auto& e, auto& page) { e.setState(static_cast<MRAIDState>(value), page); };
  };
  expectStatements({
      {supported(0), {"mraid.setSupports('sms',true);"}},
      {supported(1), {"mraid.setSupports('tel',false);"}},
      {supported(2), {"mraid.setSupports('calendar',true);"}},
      {supported(3), {"mraid.setSupports('storePicture',false);"}},
      {supported(4), {"mraid.setSupports('inlineVideo',true);"}},
      {supported(5), {}},
      {supported(7), {}},
      {supported(-1), {}},
      {placement(0), {"mraid.setPlacementType('inline');"}},
      {placement(1), {"mraid.setPlacementType('interstitial');"}},
      {placement(2), {"mraid.setPlacementType('(null)');"}},
      {state(0), {"mraid.setState('loading');"}},
      {state(1), {"mraid.setState('default');"}},
      {state(2), {"mraid.setState('expanded');"}},
      {state(3), {"mraid.setState('hidden');"}},
      {state(4), {"mraid.setState('resized');"}},
      {state(5), {"mraid.setState('(null)');"}},
  });
  EXPECT_EQ(emitter_.state(), static_cast<MRAIDState>(5));
}

TEST_F(MraidEventEmitter, RemembersTheStateWithoutAPage) {
  EXPECT_EQ(emitter_.state(), MRAIDState::loading);
  emitter_.setState(MRAIDState::resized, nullptr);
  EXPECT_EQ(emitter_.state(), MRAIDState::resized);
}

TEST_F(MraidEventEmitter, RoundsSizesAndPositions) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  expectStatements({
      {[](auto& e, auto& page) {
         e.setScreenSize({320, 460}, page);
       },
       {"mraid.setScreenSize({width:320,height:460});"}},
      {[](auto& e, auto& page) {
         e.setMaxSize({319.5, 0.4}, page);
       },
       {"mraid.setMaxSize({width:320,height:0});"}},
      {[](auto& e, auto& page) {
         e.setCurrentPosition({10.4, 20.6, 320, 50}, page);
       },
       {"mraid.setCurrentPosition({x:10,y:21,width:320,height:50 });"}},
      {[](auto& e, auto& page) {
         e.setDefaultPosition({-10.6, 0.5, 1.5, 2.5}, page);
       },
       {"mraid.setDefaultPosition({x:-11,y:0,width:2,height:2 });"}},
      {[](auto& e, auto& page) {
         e.setMaxSize({1e20, -1e20}, page);
       },
       {"mraid.setMaxSize({width:100000000000000000000,height:-100000000000000000000});"}},
      {[=](auto& e, auto& page) {
         e.setMaxSize({std::numeric_limits<double>::quiet_NaN(), 1}, page);
       },
       {"mraid.setMaxSize({width:0,height:1});"}},
  });
  const auto page = makePage();
  emitter_.setMaxSize({infinity, -infinity}, page);
  EXPECT_EQ(page->scripts().at(0).find("inf"), std::string::npos);
}

TEST_F(MraidEventEmitter, SendsPropertyRecords) {
  expectStatements({
      {[](auto& e, auto& page) {
         e.setExpandProperties(XMRAIDExpandProperties{Size{320, 460}}, page);
       },
       {"mraid.setExpandProperties({width:320,height:460,useCustomClose:false});"}},
      {[](auto& e, auto& page) { e.setResizeProperties({}, page); },
       {"mraid.setResizeProperties({width:0,height:0,customClosePosition:'top-right',offsetX:0,"
        "offsetY:0,allowOffscreen:false});"}},
      {[](auto& e, auto& page) { e.setOrientationProperties({}, page); },
       {"mraid.setOrientationProperties({allowOrientationChange:true,forceOrientation:'none'});"}},
  });
}

// A creative chooses the name of an unknown command, and it comes back to it as an error.
TEST_F(MraidEventEmitter, NeverEvaluatesATextThatLeavesItsLiteral) {
  for (const std::string text :
       {"x');alert(1);('", "\\", "a\nb", "a\rb", "a\xE2\x80\xA8", "\xE2\x80\xA9"}) {
    const auto page = makePage();
    emitter_.reportErrorMessage("The command requested is unknown", text, page);
    emitter_.reportErrorMessage(text, "open", page);
    emitter_.fireEventForEvent(text, page);
    emitter_.fireEventForEvent("after", page);
    EXPECT_EQ(page->scripts(), Statements{"mraid.fireEvent('after');"}) << text;
  }
  expectStatements({
      {[](auto& e, auto& page) { e.fireEventForEvent("\"<b>\xE2\x80\xA6%@\"", page); },
       {"mraid.fireEvent('\"<b>\xE2\x80\xA6%@\"');"}},
      {[](auto& e, auto& page) {
         e.fireEventForEvent({"a\0b", 3}, page);
       },
       {}},
  });
}

TEST_F(MraidEventEmitter, LogsEveryStatementAsItIs) {
  XGlobalConfiguration::sharedInstance().enableDebugLogs = true;
  testing::internal::CaptureStderr();
  emitter_.fireEventForEvent("it's", nullptr);
  const auto output = testing::internal::GetCapturedStderr();
  EXPECT_NE(output.find("\n\nmraid.fireEvent('it's');\n"), std::string::npos) << output;
}

TEST_F(MraidEventEmitter, MovesErrorReportsToTheMainThread) {
  const auto page = makePage();
  auto leaving = makePage();
  platform_.runLoop->background([&] {
    emitter_.reportErrorMessage("one", "storePicture", page);
    emitter_.reportErrorMessage("it's", "storePicture", page);
    emitter_.reportErrorMessage("two", "storePicture", leaving);
    EXPECT_TRUE(page->scripts().empty());
  });
  platform_.runLoop->post([&] { leaving.reset(); });
  platform_.runLoop->runPending();
  EXPECT_EQ(page->scripts(), Statements{"mraid.fireErrorEvent('one','storePicture');"});
}

TEST_F(MraidEventEmitter, RunsScriptsOfItsOwnOnlyInItsOwnPage) {
  std::vector<std::string> results;
  const auto keep = [&results](const std::string& result) { results.push_back(result); };
  emitter_.executeJavascript("before", {}, keep);
  EXPECT_TRUE(results.empty());

  const auto page = makePage();
  page->setResult("f('a','b','(null)')", "done");
  emitter_._webView = page;
  emitter_.fireErrorEventForAction("expand", "No room");
  emitter_.executeJavascript("f('%@','%@','%@')", {"a", "b"}, keep);
  emitter_.executeJavascript("f('%@')", {"'"}, keep);
  platform_.runLoop->runPending();
  EXPECT_EQ(page->scripts(), (Statements{"window.mraidbridge.fireErrorEvent('No room', 'expand');",
                                         "f('a','b','(null)')"}));
  EXPECT_EQ(results, (std::vector<std::string>{"", "done", ""}));
}

TEST_F(MraidEventEmitter, ReadsItsParameters) {
  emitter_.parameters = {{"half", "0.5pt"}, {"huge", "1e300"}, {"none", "x"},
                         {"inf", "inf"},    {"on", "true"},    {"off", "True"}};
  EXPECT_EQ(emitter_.floatFromParametersForKey("half", 9), 0.5F);
  EXPECT_EQ(emitter_.floatFromParametersForKey("huge", 9), std::numeric_limits<float>::max());
  EXPECT_EQ(emitter_.floatFromParametersForKey("none", 9), 0);
  EXPECT_EQ(emitter_.floatFromParametersForKey("inf", 9), 0);
  EXPECT_EQ(emitter_.floatFromParametersForKey("absent", 9), 9);
  EXPECT_TRUE(emitter_.boolFromParametersForKey("on"));
  EXPECT_FALSE(emitter_.boolFromParametersForKey("off"));
  EXPECT_FALSE(emitter_.boolFromParametersForKey("absent"));
}

}  // namespace
}  // namespace tavo::test
