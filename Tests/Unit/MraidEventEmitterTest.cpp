#include <limits>

#include <tavo/XGlobalConfiguration.h>

#include "AdController/AdGenerator/XMRAIDEventEmitter.h"
#include "Unit/TransportFixture.h"

namespace tavo::test {
namespace {

class MraidEventEmitter : public TransportTest {
 protected:
  using PageRef = XMRAIDEventEmitter::WebViewRef;

  // What a page hears of it.
  Lines said(const std::function<void(const PageRef&)>& act) {
    const auto page = makePage();
    act(page);
    return page->scripts();
  }
  std::shared_ptr<headless::HeadlessWebView> makePage() {
    return std::make_shared<headless::HeadlessWebView>(Rect{}, platform_.runLoop);
  }

  XMRAIDEventEmitter emitter_{platform_.runLoop};
};

// What the numbers beyond the known ones are called, too.
TEST_F(MraidEventEmitter, NamesFeaturesPlacementsAndStates) {
  const char* const features[] = {"sms", "tel", "calendar", "storePicture", "inlineVideo"};
  for (int feature = -1; feature < 7; ++feature) {
    const auto lines = said([&](const PageRef& page) {
      emitter_.setSupported(feature % 2 == 0, static_cast<MRAIDFeature>(feature), page);
    });
    if (feature < 0 || feature > 4) {
      EXPECT_THAT(lines, IsEmpty());
    } else {
      EXPECT_THAT(lines, ElementsAre(std::string{"mraid.setSupports('"} + features[feature] + "'," +
                                     (feature % 2 == 0 ? "true" : "false") + ");"));
    }
  }
  for (int type = 0; const char* name : {"inline", "interstitial", "(null)"}) {
    EXPECT_THAT(said([&](const PageRef& page) {
                  emitter_.setPlacementType(static_cast<PlacementType>(type++), page);
                }),
                ElementsAre(std::string{"mraid.setPlacementType('"} + name + "');"));
  }
  EXPECT_EQ(emitter_.state(), MRAIDState::loading);
  for (int state = 0;
       const char* name : {"loading", "default", "expanded", "hidden", "resized", "(null)"}) {
    EXPECT_THAT(said([&](const PageRef& page) {
                  emitter_.setState(static_cast<MRAIDState>(state++), page);
                }),
                ElementsAre(std::string{"mraid.setState('"} + name + "');"));
  }
  emitter_.setState(MRAIDState::resized, nullptr);
  EXPECT_EQ(emitter_.state(), MRAIDState::resized) << "also without a page";
}

TEST_F(MraidEventEmitter, RoundsSizesAndPositions) {
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  const std::pair<Size, const char*> sizes[] = {
      {{319.5, 0.4}, "{width:320,height:0}"},
      {{1e20, -1e20}, "{width:100000000000000000000,height:-100000000000000000000}"},
      {{nan, 1}, "{width:0,height:1}"}};
  for (const auto& [size, text] : sizes) {
    EXPECT_THAT(said([&](const PageRef& page) { emitter_.setMaxSize(size, page); }),
                ElementsAre(std::string{"mraid.setMaxSize("} + text + ");"));
  }
  EXPECT_THAT(said([&](const PageRef& page) {
                emitter_.setCurrentPosition({10.4, 20.6, 320, 50}, page);
                emitter_.setDefaultPosition({-10.6, 0.5, 1.5, 2.5}, page);
              }),
              ElementsAre("mraid.setCurrentPosition({x:10,y:21,width:320,height:50 });",
                          "mraid.setDefaultPosition({x:-11,y:0,width:2,height:2 });"));
  constexpr double infinity = std::numeric_limits<double>::infinity();
  EXPECT_THAT(said([&](const PageRef& page) {
                emitter_.setMaxSize({infinity, -infinity}, page);
              }).at(0),
              Not(HasSubstr("inf")));
}

// A creative chooses the name of an unknown command, and it comes back to it as an error.
TEST_F(MraidEventEmitter, NeverEvaluatesATextThatLeavesItsLiteral) {
  for (const std::string& text :
       {std::string{"x');alert(1);('"}, std::string{"\\"}, std::string{"a\nb"}, std::string{"a\rb"},
        std::string{"a\xE2\x80\xA8"}, std::string{"\xE2\x80\xA9"}, std::string{"a\0b", 3}}) {
    EXPECT_THAT(said([&](const PageRef& page) {
                  emitter_.reportErrorMessage("The command requested is unknown", text, page);
                  emitter_.reportErrorMessage(text, "open", page);
                  emitter_.fireEventForEvent(text, page);
                  emitter_.fireEventForEvent("\"<b>\xE2\x80\xA6%@\"", page);
                }),
                ElementsAre("mraid.fireEvent('\"<b>\xE2\x80\xA6%@\"');"))
        << text;
  }
}

TEST_F(MraidEventEmitter, LogsEveryStatementAsItIs) {
  XGlobalConfiguration::sharedInstance().enableDebugLogs = true;
  testing::internal::CaptureStderr();
  emitter_.fireEventForEvent("it's", nullptr);
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("\n\nmraid.fireEvent('it's');\n"));
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
  EXPECT_THAT(page->scripts(), ElementsAre("mraid.fireErrorEvent('one','storePicture');"));
}

TEST_F(MraidEventEmitter, RunsScriptsOfItsOwnOnlyInItsOwnPage) {
  Lines results;
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
  EXPECT_THAT(page->scripts(),
              ElementsAre("window.mraidbridge.fireErrorEvent('No room', 'expand');",
                          "f('a','b','(null)')"));
  EXPECT_THAT(results, ElementsAre("", "done", ""));
}

TEST_F(MraidEventEmitter, ReadsItsParameters) {
  emitter_.parameters = {{"half", "0.5pt"}, {"none", "x"}, {"on", "true"}, {"off", "True"}};
  EXPECT_EQ(emitter_.floatFromParametersForKey("half", 9), 0.5F);
  EXPECT_EQ(emitter_.floatFromParametersForKey("none", 9), 0);
  EXPECT_EQ(emitter_.floatFromParametersForKey("absent", 9), 9);
  EXPECT_TRUE(emitter_.boolFromParametersForKey("on"));
  EXPECT_FALSE(emitter_.boolFromParametersForKey("off"));
  EXPECT_FALSE(emitter_.boolFromParametersForKey("absent"));
}

}  // namespace
}  // namespace tavo::test
