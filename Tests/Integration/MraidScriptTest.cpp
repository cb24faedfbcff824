// The MRAID script in the real engine: creatives talk to it, the SDK's own statements answer.

#include "Integration/ScriptedCreative.h"
#include "Values/Text.h"

namespace tavo::test {
namespace {

using test::ScriptedCreative;

class MraidScript : public testing::Test {
 protected:
  static void SetUpTestSuite() { ASSERT_TRUE(gtk_init_check()); }

  // Without what a listener threw, which arrives whenever the page's timers run.
  static std::vector<std::string> heardFromListeners(ScriptedCreative& creative) {
    auto heard = creative.heard();
    std::erase_if(heard, [](const std::string& line) { return line.starts_with("onerror"); });
    return heard;
  }
};

TEST_F(MraidScript, IsReadyOnlyWhenItsAnswersAreTrue) {
  const auto creative = ScriptedCreative::load("getters");
  creative->answersInit = false;
  ASSERT_TRUE(test::runUntil([&] { return creative->inits == 1; }));
  EXPECT_THAT(creative->heard(),
              ElementsAre("version 2.0", "early state loading", "early viewable false"));
  EXPECT_EQ(creative->evaluate("mraid.getState() + mraid.isViewable()"), "loadingfalse");

  creative->report({0, 430, 320, 50}, true);
  const auto heard = creative->heard();
  EXPECT_THAT(
      std::vector<std::string>(heard.begin() + 3, heard.end()),
      ElementsAre(
          "ready state default", "ready viewable true", "ready placement inline",
          "ready sms true, tel false, unknown false",
          R"(ready current {"x":0,"y":430,"width":320,"height":50})",
          R"(ready default {"x":0,"y":430,"width":320,"height":50})",
          R"(ready max {"width":320,"height":480})", R"(ready screen {"width":320,"height":480})",
          R"(ready expand {"isModal":true,"width":320,"height":460,"useCustomClose":false})",
          R"(ready resize {"width":0,"height":0,"offsetX":0,"offsetY":0,"allowOffscreen":true,)"
          R"("customClosePosition":"top-right"})",
          R"(ready orientation {"allowOrientationChange":true,"forceOrientation":"none"})"));
  // The SDK's default records were not sent back to it as a creative's wishes.
  EXPECT_THAT(creative->commands, IsEmpty());
}

TEST_F(MraidScript, TellsWhatChanged) {
  const auto creative = ScriptedCreative::load("events");
  creative->waitUntilReady();
  creative->emitter.setCurrentPosition({0, 0, 300, 250}, creative->view);
  creative->emitter.setCurrentPosition({9, 9, 300, 250}, creative->view);
  creative->emitter.setState(MRAIDState::resized, creative->view);
  creative->emitter.setState(MRAIDState::resized, creative->view);
  creative->emitter.setViewable(false, creative->view);
  creative->emitter.setViewable(false, creative->view);
  creative->emitter.reportErrorMessage("Access denied.", "createCalendarEvent", creative->view);
  creative->emitter._webView = creative->view;
  creative->emitter.fireErrorEventForAction("storePicture", "No room");
  creative->evaluate("mraid.removeEventListener('stateChange', last)");
  creative->emitter.setState(MRAIDState::normal, creative->view);
  creative->evaluate("mraid.removeEventListener('stateChange')");
  creative->emitter.setState(MRAIDState::expanded, creative->view);
  EXPECT_EQ(creative->evaluate("mraid.getState()"), "expanded");
  auto heard = creative->heard();
  // What a listener throws arrives whenever the page's timers run.
  std::erase_if(heard, [](const std::string& line) { return line.starts_with("onerror"); });
  EXPECT_THAT(heard, ElementsAre("stateChange default", "once default", "dropsTheNext", "twice",
                                 "last default", "sizeChange 320 460", "sizeChange 320 50",
                                 "viewableChange true", "ready ", "sizeChange 300 250",
                                 "stateChange resized", "dropsTheNext", "twice", "last resized",
                                 "viewableChange false", "error Access denied. createCalendarEvent",
                                 "error No room storePicture", "stateChange default",
                                 "dropsTheNext", "twice"));
  EXPECT_TRUE(
      test::runUntil([&] { return contains(creative->evaluate("heard.join()"), "onerror"); }));
}

TEST_F(MraidScript, SendsEveryCommand) {
  const auto creative = ScriptedCreative::load("commands");
  creative->waitUntilReady();
  ASSERT_TRUE(creative->waitForCommands(15));
  EXPECT_THAT(
      creative->commands,
      ElementsAre(
          "mraid://setExpandProperties?width=300&height=401&useCustomClose=true",
          "mraid://setExpandProperties?width=300&height=401&useCustomClose=false",
          "mraid://setResizeProperties?width=300&height=250&offsetX=-20&offsetY=0"
          "&allowOffscreen=true&customClosePosition=top-right",
          "mraid://setResizeProperties?width=300&height=250&offsetX=0&offsetY=10"
          "&allowOffscreen=false&customClosePosition=bottom-left",
          "mraid://setOrientationProperties?allowOrientationChange=false&forceOrientation=none",
          "mraid://setOrientationProperties?allowOrientationChange=false"
          "&forceOrientation=landscape",
          "mraid://resize", "mraid://expand",
          "mraid://open?url=http%3A%2F%2Fads.test%2Fpage%3Fa%3Db%26c%3Dd%23e",
          "mraid://open?url=sms%3A123%26body%3Dhi%20there",
          "mraid://open?url=%C3%A4%F0%9F%98%80%EF%BF%BD!'()*",
          "mraid://playVideo?url=http%3A%2F%2Fads.test%2Fa.mp4",
          "mraid://storePicture?url=http%3A%2F%2Fads.test%2Fa%20b.png",
          "mraid://createCalendarEvent?event=%7B%22description%22%3A%22A%20%5C%22quoted%5C%22%20"
          "day%22%2C%22location%22%3A%22C%3A%22%2C%22start%22%3A%222030-01-02T03%3A04%3A05Z%22%2C"
          "%22end%22%3A%222030-01-02T04%3A00%3A00Z%22%2C%22reminder%22%3A%22-600000%22%7D",
          "mraid://close"));
  EXPECT_THAT(creative->heard(), IsEmpty());
  EXPECT_TRUE(test::runUntil(
      [&] { return creative->evaluate("document.querySelectorAll('iframe').length") == "0"; }));
}

TEST_F(MraidScript, KeepsWhatACreativeAsksForTooEarly) {
  const auto creative = ScriptedCreative::load("early-commands");
  creative->waitUntilReady();
  EXPECT_THAT(creative->commands,
              ElementsAre("mraid://setResizeProperties?width=300&height=250&offsetX=0&offsetY=0"
                          "&allowOffscreen=true&customClosePosition=top-right",
                          "mraid://setExpandProperties?width=200&height=100&useCustomClose=false",
                          "mraid://setOrientationProperties?allowOrientationChange=true"
                          "&forceOrientation=portrait",
                          "mraid://open?url=http%3A%2F%2Fads.test%2Fearly"));
  EXPECT_THAT(
      creative->heard(),
      ElementsAre("error expand", "error resize",
                  R"({"isModal":true,"width":200,"height":100,"useCustomClose":false})",
                  R"({"width":300,"height":250,"offsetX":0,"offsetY":0,"allowOffscreen":true,)"
                  R"("customClosePosition":"top-right"})",
                  R"({"allowOrientationChange":true,"forceOrientation":"portrait"})"));
}

// Quirk: an expansion to a second page, too, is only answered with an error.
TEST_F(MraidScript, AnswersWrongValuesWithErrors) {
  const auto creative = ScriptedCreative::load("wrong-values");
  creative->waitUntilReady();
  std::vector<std::string> expected;
  for (const auto& call : test::linesOf(creative->evaluate("calls.join('\\n')"))) {
    expected.push_back(call + " | " + call.substr(0, call.find('(')));
  }
  EXPECT_EQ(creative->heard(), expected);
  EXPECT_THAT(creative->commands, IsEmpty());
}

TEST_F(MraidScript, ClosesAnInterstitialForGood) {
  const auto creative = ScriptedCreative::load("events", PlacementType::interstitial);
  creative->waitUntilReady();
  creative->evaluate("heard = []; mraid.expand(); mraid.close();");
  ASSERT_TRUE(creative->waitForCommands(1));
  creative->emitter.setState(MRAIDState::normal, creative->view);
  creative->report({0, 0, 320, 480}, true);
  creative->evaluate("mraid.close()");
  EXPECT_THAT(heardFromListeners(*creative),
              ElementsAre(HasSubstr("error"), "stateChange hidden", "dropsTheNext", "twice",
                          "last hidden", "viewableChange false", "sizeChange 320 480"));
  EXPECT_EQ(creative->evaluate("mraid.getState() + mraid.isViewable()"), "hiddenfalse");
  EXPECT_THAT(creative->commands, ElementsAre("mraid://close"));
}

TEST_F(MraidScript, SurvivesChangedBuiltins) {
  const auto creative = ScriptedCreative::load("changed-builtins");
  creative->waitUntilReady();
  ASSERT_TRUE(creative->waitForCommands(3));
  EXPECT_THAT(creative->commands,
              ElementsAre("mraid://setResizeProperties?width=300&height=250&offsetX=0&offsetY=0"
                          "&allowOffscreen=true&customClosePosition=top-right",
                          "mraid://createCalendarEvent?event=%7B%22description%22%3A%22Day%22%7D",
                          "mraid://open?url=http%3A%2F%2Fads.test%2Fa%20b"));
  EXPECT_THAT(creative->heard(), ElementsAre("ready default 320"));
}

TEST_F(MraidScript, StaysTheOnlyOne) {
  const auto creative = ScriptedCreative::load("own-mraid");
  ASSERT_TRUE(test::runUntil([&] { return creative->loads == 1; }));
  creative->evaluate(ScriptedCreative::script());
  creative->waitUntilReady();
  EXPECT_THAT(creative->heard(), ElementsAre("same true 2.0", "tag loaded", "ready"));
  EXPECT_EQ(creative->inits, 1);
}

TEST_F(MraidScript, FloodsInBoundedPieces) {
  const auto creative = ScriptedCreative::load("flood");
  creative->waitUntilReady();
  for (const std::size_t count : {1U, 1500U, 3000U}) {
    ASSERT_TRUE(creative->waitForCommands(count));
    const auto frames = creative->evaluate("document.querySelectorAll('iframe').length");
    EXPECT_LE(std::stoi(frames), 1000);
  }
  EXPECT_EQ(creative->commands.at(2999), "mraid://open?url=n2999");
}

TEST_F(MraidScript, ServesAdsWithAndWithoutADocument) {
  const auto fragment = ScriptedCreative::load("fragment");
  fragment->waitUntilReady();
  EXPECT_THAT(fragment->heard(), ElementsAre("ready default"));

  const auto ad = ScriptedCreative::load("ad");
  ad->waitUntilReady();
  ad->evaluate("document.getElementById('resize').click()");
  ASSERT_TRUE(ad->waitForCommands(2));
  EXPECT_EQ(ad->commands.at(1), "mraid://resize");
  ad->emitter.setCurrentPosition({0, 230, 300, 250}, ad->view);
  ad->emitter.setState(MRAIDState::resized, ad->view);
  EXPECT_EQ(ad->evaluate("document.getElementById('truth').textContent"),
            "resized 300 x 250 at 0, 230");
}

class MraidScriptOrder : public MraidScript, public testing::WithParamInterface<std::string> {};

TEST_P(MraidScriptOrder, LosesAndReordersNoCommand) {
  const auto creative = ScriptedCreative::load(GetParam());
  ASSERT_TRUE(creative->waitForCommands(1000));
  creative->evaluate("mraid.open('end')");
  ASSERT_TRUE(creative->waitForCommands(1001));
  std::vector<std::string> expected;
  expected.reserve(1001);
  for (int n = 0; n < 1000; ++n) expected.push_back("mraid://open?url=n" + std::to_string(n));
  expected.emplace_back("mraid://open?url=end");
  EXPECT_EQ(creative->commands, expected);
}

INSTANTIATE_TEST_SUITE_P(Pages, MraidScriptOrder,
                         testing::Values("many-commands", "frames-forbidden",
                                         "frames-forbidden-later", "rewritten-document"),
                         [](const auto& page) {
                           std::string name = page.param;
                           std::erase(name, '-');
                           return name;
                         });

}  // namespace
}  // namespace tavo::test
