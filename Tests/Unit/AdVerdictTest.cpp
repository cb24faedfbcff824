#include "AdManager/VerdictAccount.h"
#include "Support/Testing.h"

namespace tavo::test {
namespace {

// A verdict as one line, so that a table can compare whole results.
std::string describe(const Verdict& verdict) {
  const auto subType = [](const std::optional<MobileAdSubTypes>& type) {
    return type ? std::to_string(static_cast<int>(*type)) : std::string{"-"};
  };
  struct Describer {
    decltype(subType)& type;
    std::string operator()(const NoAd&) const { return "no ad"; }
    std::string operator()(const EmptyAd&) const { return "empty ad"; }
    std::string operator()(const FollowRedirect& to) const { return "follow " + to.url; }
    std::string operator()(const ShowImage& image) const {
      return "image " + type(image.subType) + " " + image.picture.text();
    }
    std::string operator()(const ShowHtml& page) const {
      return "html " + type(page.subType) + " " + page.html;
    }
    std::string operator()(const RefuseEmptyPicture& page) const {
      return "empty picture " + type(page.subType);
    }
    std::string operator()(const PlayVast& video) const { return "vast " + video.document; }
    std::string operator()(const Mediate& to) const {
      return "mediate " + to.placementId + " " + std::to_string(static_cast<int>(to.size.width)) +
             "x" + std::to_string(static_cast<int>(to.size.height));
    }
  };
  return std::visit(Describer{subType}, verdict);
}

XAdInfo info(std::optional<std::string> adType, std::optional<std::string> text = "(null)",
             std::optional<std::string> fileURL = "(null)") {
  XAdInfo answer;
  answer.adType = std::move(adType);
  answer.text = std::move(text);
  answer.fileURL = std::move(fileURL);
  answer.httpResponseCode = 200;
  return answer;
}

XAdInfo withStatus(XAdInfo answer, int status) {
  answer.httpResponseCode = status;
  return answer;
}

XAdInfo withBody(XAdInfo answer, std::optional<std::string> mime, std::optional<std::string> body) {
  answer.httpRequestURL = {.url = Url::fromText("http://request/")};
  answer.MIMEType = std::move(mime);
  answer.responseContent = std::move(body);
  return answer;
}

const std::string emptyPicture = "<a href='x'><img src='http://s/default/empty.gif'></a>";

struct Case {
  const char* name;
  XAdInfo answer;
  SlotFacts slot;
  std::string expected;
};

void check(const std::vector<Case>& cases) {
  for (const auto& test : cases) {
    EXPECT_EQ(describe(classify(test.answer, test.slot)), test.expected) << test.name;
  }
}

TEST(AdVerdictTest, OrdinaryAnswers) {
  check({
      {"nothing was filled", XAdInfo{}, {}, "no ad"},
      {"every field left out", info("(null)"), {}, "no ad"},
      {"left out in capitals", info("(NULL)"), {}, "no ad"},
      {"image", info("image/gif", "", "http://f/"), {}, "image 1 http://f/"},
      {"any type that names an image", info("x-image"), {}, "image 1 (null)"},
      {"html", info("text/html", "<b>"), {}, "html - <b>"},
      {"html in capitals is nothing", info("TEXT/HTML", "<b>"), {}, "no ad"},
      {"html with charset is nothing", info("text/html; charset=utf-8", "<b>"), {}, "no ad"},
      {"html without text", info("text/html"), {}, "no ad"},
      {"xml", info("text/xml", "x"), {}, "vast x"},
      {"VAST under another type",
       info("text/html", "<VAST v='3'></VAST>"),
       {},
       "vast <VAST v='3'></VAST>"},
      {"VAST under an image type",
       info("image/png", "<VAST v='3'></VAST>"),
       {},
       "vast <VAST v='3'></VAST>"},
      {"a VAST tag without blank", info("text/html", "<VAST></VAST>"), {}, "html - <VAST></VAST>"},
      {"VAST without end", info("text/html", "<VAST v"), {}, "html - <VAST v"},
      {"filler picture", info("text/html", emptyPicture), {}, "empty picture -"},
      {"two links",
       info("text/html", emptyPicture + "<a href"),
       {},
       "html - " + emptyPicture + "<a href"},
      {"unknown type", info("video/mp4", "x"), {}, "no ad"},
  });
}

TEST(AdVerdictTest, BiddingAnswers) {
  const SlotFacts banner{.realTimeBidding = true};
  const SlotFacts interstitial{.realTimeBidding = true, .interstitial = true};
  check({
      {"no type", info("(null)", "<b>"), banner, "empty ad"},
      {"nothing", XAdInfo{}, banner, "empty ad"},
      {"any type with text", info("image/png", "<b>"), banner, "html 2 <b>"},
      {"the same, full screen", info("x", "<b>"), interstitial, "html 3 <b>"},
      {"without text", info("text/html"), banner, "no ad"},
      {"xml", info("text/xml", "x"), banner, "vast x"},
      {"a redirect is none here", withStatus(info("a", "<b>"), 302), banner, "html 2 <b>"},
      {"filler picture", info("a", emptyPicture), banner, "empty picture 2"},
  });
}

TEST(AdVerdictTest, RedirectingAnswers) {
  const SlotFacts banner{};
  const SlotFacts interstitial{.interstitial = true};
  const auto status302 = [](XAdInfo answer) { return withStatus(std::move(answer), 302); };
  check({
      {"by status", status302(info("image/png", "<b>", "http://f/")), banner, "follow http://f/"},
      {"by type", info("ReDirect", "<b>", "http://f/"), banner, "follow http://f/"},
      {"text, banner", info("redirect", "<b>"), banner, "html 7 <b>"},
      {"text, interstitial", info("redirect", "<b>"), interstitial, "html 8 <b>"},
      {"image body, banner", withBody(status302(XAdInfo{}), "image/png", "x"), banner,
       "image 6 http://request/"},
      {"image body, interstitial", withBody(status302(XAdInfo{}), "image/png", "x"), interstitial,
       "image 8 http://request/"},
      {"text body", withBody(status302(XAdInfo{}), "text/plain", "<b>"), banner, "html 7 <b>"},
      {"text body absent", withBody(status302(XAdInfo{}), "text/plain", "(null)"), banner,
       "empty ad"},
      {"other body", withBody(status302(XAdInfo{}), "video/mp4", "x"), banner, "no ad"},
      {"no MIME type", status302(XAdInfo{}), banner, "no ad"},
      {"filler picture", info("redirect", emptyPicture), banner, "empty picture 7"},
  });
}

TEST(AdVerdictTest, AnswersToARedirect) {
  const SlotFacts banner{.requestRedirected = true};
  const SlotFacts interstitial{.interstitial = true, .requestRedirected = true};
  check({
      {"image", withBody(XAdInfo{}, "image/gif", "x"), banner, "image 6 http://request/"},
      {"image, interstitial", withBody(XAdInfo{}, "image/gif", "x"), interstitial,
       "image 8 http://request/"},
      {"text", withBody(XAdInfo{}, "text/html", "<b>"), banner, "html 7 <b>"},
      {"text without content", withBody(XAdInfo{}, "text/html", std::nullopt), banner, "no ad"},
      {"other", withBody(info("text/html", "<b>"), "application/json", "x"), banner, "no ad"},
      {"no MIME type: an ordinary answer", info("text/html", "<b>"), banner, "html - <b>"},
      {"another redirect", info("redirect", "(null)", "http://f/"), banner, "follow http://f/"},
  });
}

TEST(AdVerdictTest, AccountsSayWhyAndWhatWasDropped) {
  XAdInfo answer = info("image/png", "hi", "http://s/a.png");
  answer.responseContent =
      R"({"Ad": [{"AdType": "image/png", "Text": "hi", "FileUrl": "http://s/a.png", "W": 320,
          "Wdth": 3}, {}], "Version": 1})";
  const auto account = accountOf(answer, {}, classify(answer, {}), 64);
  EXPECT_EQ(account.text,
            "picture: AdType is \"image/png\"; the type says image; the picture is "
            "\"http://s/a.png\".");
  std::vector<std::string> dropped;
  for (const auto& field : account.fields) {
    if (field.name == "dropped") dropped.push_back(field.value);
  }
  EXPECT_THAT(dropped, ElementsAre("Text = \"hi\": has no effect", "W = \"320\": has no effect",
                                   "Wdth = \"3\": not a known key",
                                   "1 more in \"Ad\": only the first one is read",
                                   "\"Version\" beside \"Ad\": not a known key"));
  XAdInfo broken;
  broken.responseContent = "<html>";
  EXPECT_EQ(accountOf(broken, {}, classify(broken, {}), 64).text,
            "no ad: AdType is not there; the body is no JSON object in UTF-8.");
}

TEST(AdVerdictTest, MediationInstructions) {
  const SlotFacts bare{.canStartMediation = true};
  const SlotFacts equipped{
      .canStartMediation = true, .mediationPlacementId = "slot", .mediationSize = {300, 250}};
  const auto says = [](const std::string& attributes) {
    return "<x><ClientSideMediation " + attributes + "/></x>";
  };
  check({
      {"all given", info("text/html", says("placementId=' 7 ' width='320' height='50'")), equipped,
       "mediate 7 320x50"},
      {"size from the slot", info("x", says("placementId='7'")), equipped, "mediate 7 300x250"},
      {"a size that is none", info("x", says("placementId='7' width='abc' height='-3'")), equipped,
       "mediate 7 300x250"},
      {"placement from the slot", info("x", says("placementId='  '")), equipped,
       "mediate slot 300x250"},
      {"no placement anywhere", info("text/html", says("placementId=''")), bare, "no ad"},
      {"later elements overwrite",
       info("x",
            "<a><ClientSideMediation placementId='1' width='9'/><b>"
            "<ClientSideMediation placementId='2'/></b></a>"),
       bare, "mediate 2 9x0"},
      {"precedence over VAST",
       info("text/xml", "<VAST v='3'>" + says("placementId='7'") + "</VAST>"), bare,
       "mediate 7 0x0"},
      {"letter case of the pattern does not count, that of the element does",
       info("x", "<clientsidemediation PLACEMENTID='7'/>"), equipped, "mediate slot 300x250"},
      {"not in one line", info("text/html", "ClientSideMediation\nplacementId"), bare,
       "html - ClientSideMediation\nplacementId"},
      {"nobody can start it",
       info("text/html", says("placementId='7'")),
       {},
       "html - " + says("placementId='7'")},
  });
}

TEST(AdVerdictTest, InTheStandardsModeEveryVastDocumentIsPlayed) {
  struct Document {
    const char* text;
    bool vast;
  };
  for (const auto& test :
       {Document{"<VAST></VAST>", true}, Document{"<VAST\nversion='3.0'/>", true},
        Document{"\xEF\xBB\xBF <?xml version='1.0'?><!-- <b> --><VideoAdServingTemplate/>", true},
        Document{"<VASTY/>", false}, Document{"<html><VAST></VAST></html>", false},
        Document{"<!--", false}}) {
    SCOPED_TRACE(test.text);
    XAdInfo answer;
    answer.adType = "text/html";
    answer.text = test.text;
    EXPECT_EQ(std::holds_alternative<PlayVast>(classify(answer, {.standardsMode = true})),
              test.vast);
    EXPECT_FALSE(std::holds_alternative<PlayVast>(classify(answer, {})));
  }
}

}  // namespace
}  // namespace tavo::test
