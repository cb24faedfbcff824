// The player's reading of what people give it, and its runner from files to reports.

#include <sys/wait.h>

#include <array>
#include <cstdio>

#include "AdPlayer/Run/Result.h"
#include "AdPlayer/Run/Scenario.h"
#include "AdPlayer/Source/Material.h"
#include "AdServer/NearestNames.h"
#include "Support/Places.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace tavo::test {
namespace {

using namespace tavo::adplayer;
using testing::HasSubstr;

std::string told(std::string_view bytes) {
  const auto recognised = recognise(bytes);
  if (const auto* refused = std::get_if<Refusal>(&recognised)) return refused->why;
  const auto& material = std::get<Material>(recognised);
  return std::string{nameOf(material.kind)} + " " + adserver::nameOf(material.placement) + " " +
         std::to_string(static_cast<int>(material.size.width)) + "x" +
         std::to_string(static_cast<int>(material.size.height));
}

TEST(AdPlayerTest, RecognisesMaterialByItsContent) {
  const std::string png{"\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\1\x2c\0\0\0\xfa\x08", 25};
  const std::array<std::pair<std::string, const char*>, 14> cases{
      {{"<html><body>hi</body></html>", "HTML banner 320x50"},
       {"<meta name=\"ad.size\" content=\"width=300,height=250\"><div>", "HTML banner 300x250"},
       {"<style>body { margin: 0; width: 728px; height: 90px }</style><p>", "HTML banner 728x90"},
       {"<div style='width:320px;height:480px'>", "HTML interstitial 320x480"},
       {"\xEF\xBB\xBF<?xml?><VAST version=\"3.0\"></VAST>", "VAST preroll 320x180"},
       {R"({"Ad": [{"AdType": "text/html", "W": 300, "H": "250"}]})",
        "recorded answer banner 300x250"},
       {R"({"Ad": [{"AdType": "text/xml", "Text": "<VAST >"}]})",
        "recorded answer preroll 320x180"},
       {R"({"Ad": [{"Pos": "Full"}]})", "recorded answer interstitial 320x50"},
       {png, "picture banner 300x250"},
       {"", "is empty"},
       {"  \n", "is empty"},
       {std::string{"a\0b", 3}, "is binary"},
       {R"({"ads": 1})", "no ad server's answer"},
       {"just words", "is none of what can be played"}}};
  for (const auto& [bytes, expected] : cases)
    EXPECT_THAT(told(bytes), HasSubstr(expected)) << bytes;
  EXPECT_THAT(told(std::string(largestMaterial + 1, 'x')), HasSubstr("too large for an ad"));
}

TEST(AdPlayerTest, TellsSourcesApartAndNamesTheNearestCampaigns) {
  const TemporaryFolder folder;
  const std::string odd = folder.path("with space\nand line.html");
  folder.write("with space\nand line.html", "<p>");
  EXPECT_TRUE(std::holds_alternative<FileSource>(sourceFrom(odd, {})));
  EXPECT_TRUE(std::holds_alternative<Refusal>(sourceFrom(folder.path("none.html"), {})));
  EXPECT_TRUE(std::holds_alternative<UrlSource>(sourceFrom("https://e.com/a.xml", {})));
  EXPECT_TRUE(std::holds_alternative<CampaignSource>(sourceFrom("html-banner", {})));
  const auto server = sourceFrom("http://e.com/ads/sdk/news/front/@Top?a=1", {});
  ASSERT_TRUE(std::holds_alternative<ServerSource>(server));
  const PlayPlan& plan = std::get<ServerSource>(server).plan;
  EXPECT_THAT((std::array{plan.domain, plan.page, plan.position, plan.query}),
              ElementsAre("e.com/ads", "news/front", "Top", "a=1"));
  EXPECT_EQ(adserver::nearestNames("htmlbaner", {"vast", "html-banner", "no-ad", "image-banner"}),
            "html-banner, image-banner, no-ad");
}

TEST(AdPlayerTest, ScenarioMistakesNameFileLineAndWhatWasExpected) {
  const std::array<std::pair<const char*, const char*>, 10> cases{
      {{"# only words\n", "s.txt:1: expected a step"},
       {"wait loaded\n\njump", "s.txt:3: \"jump\" is no step; expected tap, wait"},
       {"tap 10", "s.txt:1: expected y in points, and the line ends"},
       {"tap 10 high", "s.txt:1: expected y in points, not \"high\""},
       {"wait state", "s.txt:1: expected a state"},
       {"wait taken by", "s.txt:1: expected \"for\" behind \"taken\""},
       {"wait loaded within soon", "s.txt:1: expected a number of seconds, not \"soon\""},
       {"expect event console \"open", "s.txt:1: a text without its closing \""},
       {"lock now", "s.txt:1: expected the end of the line, not \"now\""},
       {"picture ../x", "s.txt:1: expected a name for the picture"}}};
  for (const auto& [text, expected] : cases) {
    const auto read = readScenario(text, "s.txt");
    ASSERT_TRUE(std::holds_alternative<ScenarioMistake>(read)) << text;
    EXPECT_THAT(std::get<ScenarioMistake>(read).text, testing::StartsWith(expected)) << text;
  }
  const auto good = readScenario("tap on \"#a b\" # why\nwait no\n", "s.txt");
  EXPECT_TRUE(std::holds_alternative<ScenarioMistake>(good));
  const auto steps = readScenario("tap on \"#a b\" # why\nwait state expanded within 2.5", "s.txt");
  ASSERT_TRUE(std::holds_alternative<std::vector<Step>>(steps));
  const auto& wait = std::get<Wait>(std::get<std::vector<Step>>(steps)[1].action);
  EXPECT_EQ(wait.condition.text + " " + wait.condition.wording, "expanded state expanded");
  EXPECT_EQ(wait.patience, Seconds{2.5});
}

int run(const std::string& arguments) {
  return WEXITSTATUS(std::system((TAVO_ADPLAYER " " + arguments).c_str()));
}

TEST(AdPlayerTest, TheRunnerPlaysOnWhenOneFailsAndOneHangs) {
  const TemporaryFolder folder;
  folder.write("good.html",
               "<html><head><meta name='ad.size' content='width=300,height=250'>\n"
               "<script src='mraid.js'></script><script>\n missing()</script></head><body>"
               "<button id=b onclick=\"console.log('pressed')\" style='width:200px;height:200px'>"
               "go</button></body></html>");
  folder.write("empty.html", "");
  folder.write("answer.json", R"({"Ad": []})");
  folder.write("steps.txt",
               "wait loaded within 40\ntap on \"#b\"\nwait event console \"pressed\" within 20\n"
               "picture after\n");
  const std::string out = folder.path("out");
  const auto file = [&](const char* name) { return " '" + folder.path(name) + "'"; };
  EXPECT_EQ(run("run" + file("good.html") + file("empty.html") + " --page-address --scenario" +
                file("steps.txt") + " --out '" + out + "'"),
            1);
  const auto good = Result::read(out + "/good.html");
  const auto empty = Result::read(out + "/empty.html");
  ASSERT_TRUE(good && empty);
  EXPECT_EQ(good->verdict, Verdict::passed) << good->why;
  // A page without an address of its own hears of its errors without a text; it was given one.
  const auto error = std::find_if(good->events.begin(), good->events.end(),
                                  [](const auto& event) { return event.kind == "scriptError"; });
  ASSERT_NE(error, good->events.end());
  EXPECT_EQ(error->text + " " + std::string{error->field("line")},
            "ReferenceError: Can't find variable: missing 3");
  // The phone's screen below its status bar is the whole screen for the creative.
  EXPECT_TRUE(std::any_of(good->events.begin(), good->events.end(), [](const auto& event) {
    return event.text == "mraid.setScreenSize({width:360,height:616});";
  }));
  EXPECT_THAT(good->pictures, ElementsAre("after.png"));
  EXPECT_EQ(empty->verdict, Verdict::refused);
  EXPECT_THAT(empty->why, HasSubstr("empty.html is empty"));

  // A campaign's own steps count, and a wrong one is told with its line.
  folder.write("campaigns/nothing/answer.json", R"({"Ad": []})");
  folder.write("campaigns/nothing/scenario.txt", "wait failed\nexpect event outcome \"1002\"\n");
  folder.write("campaigns/wrong/answer.json", R"({"Ad": []})");
  folder.write("campaigns/wrong/scenario.txt", "wait taken for \"image\"\n");
  const std::string samples = folder.path("samples");
  EXPECT_EQ(run("run --samples --campaigns" + file("campaigns") + " --out '" + samples + "'"), 1);
  EXPECT_EQ(Result::read(samples + "/nothing")->verdict, Verdict::passed);
  EXPECT_THAT(Result::read(samples + "/wrong")->why,
              HasSubstr("line 1: waited in vain for taken for \"image\": the ad has failed"));

  // No ad comes where one is waited for, and another one has no end in its time.
  folder.write("long.txt", "wait outcome within 60\nadvance 5000\n");
  const std::string second = folder.path("second");
  EXPECT_EQ(run("run" + file("answer.json") + " --out '" + second + "'"), 1);
  EXPECT_EQ(run("run" + file("good.html") + " --scenario" + file("long.txt") +
                " --timeout 6 --out '" + second + "'"),
            1);
  EXPECT_EQ(run("merge '" + out + "' '" + second + "' --out '" + folder.path("all") + "'"), 1);
  EXPECT_EQ(Result::read(second + "/answer.json")->verdict, Verdict::failed);
  EXPECT_EQ(Result::read(second + "/good.html")->verdict, Verdict::hung);
  const std::string junit = contentsOf(folder.path("all") + "/junit.xml");
  EXPECT_THAT(junit, HasSubstr("tests=\"4\" failures=\"1\" errors=\"2\""));
  EXPECT_THAT(contentsOf(folder.path("all") + "/report.html"), HasSubstr("data:image/png;base64"));
}

}  // namespace
}  // namespace tavo::test
