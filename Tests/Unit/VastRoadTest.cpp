#include <iterator>

#include "Unit/VastFixture.h"

namespace tavo::test {
namespace {

const std::string headMedia = "HEAD http://cdn.example/ad.mp4";

class VastRoadTest : public VastTest {
 protected:
  // A document at a place of its own.
  std::string put(const std::string& name, const std::string& document) {
    const std::string url = "http://vast.example/" + name;
    platform_.http->forget(url);
    platform_.http->answerWith(url, "text/xml", document);
    return url;
  }
};

TEST_F(VastRoadTest, AnInlineAdFromAnswerToStart) {
  makePreroll();
  play();
  advance(0.2);
  EXPECT_THAT(happened(),
              ElementsAre(getAd, headMedia, "GET http://t.example/inline/impression", getImpression,
                          "GET http://t.example/inline/start", "didLoad"));
  EXPECT_EQ(banner_->mobileAdSubTypes(), MobileAdSubTypes::vastBanner);
  EXPECT_EQ(platform_.moviePlayers->warmUps, 1);
}

// The lines that hold `part`. Pings to one host wait for each other, so only those of one kind keep
// their order.
Lines withPart(const Lines& lines, const std::string& part) {
  Lines kept;
  std::copy_if(lines.begin(), lines.end(), std::back_inserter(kept),
               [&](const std::string& line) { return line.find(part) != std::string::npos; });
  return kept;
}

TEST_F(VastRoadTest, WrappersTwoAndFiveDeepAreFetchedAndTrackedInOrder) {
  for (const int depth : {2, 5}) {
    SCOPED_TRACE(depth);
    std::string next = put("inline", VastDocument{}.text());
    Lines documents{"GET " + next};
    for (int level = depth; level > 1; --level) {
      const std::string name = "w" + std::to_string(level);
      next = put(name, vastWrapper(name, next));
      documents.insert(documents.begin(), "GET " + next);
    }
    makePreroll();
    answer(vastAnswer(vastWrapper("w1", next)));
    load();
    settle();
    advance(0.2);
    Lines impressions;
    Lines starts{"GET http://t.example/inline/start"};
    for (int level = 1; level <= depth; ++level) {
      const std::string source = "GET http://t.example/w" + std::to_string(level);
      impressions.push_back(source + "/impression");
      starts.push_back(source + "/start");
    }
    impressions.emplace_back("GET http://t.example/inline/impression");
    const Lines lines = happened();
    EXPECT_EQ(withPart(lines, "vast.example"), documents);
    EXPECT_EQ(withPart(lines, "/impression"), impressions);
    EXPECT_EQ(withPart(lines, "/start"), starts);
    EXPECT_EQ(withPart(lines, "track.example"), Lines{getImpression});
    EXPECT_EQ(withPart(lines, "did"), Lines{"didLoad"});
    EXPECT_EQ(lines.size(), documents.size() + impressions.size() + starts.size() + 4);
  }
}

TEST_F(VastRoadTest, DocumentsThatCannotBePlayedEndInOneFailureAndCountTheAnswerQuirk) {
  struct Case {
    const char* name;
    std::string document;
    const char* failure;
    Lines fetched = {};
  };
  const std::string missing = "http://vast.example/missing";
  const std::string cycle = "http://vast.example/cycle";
  const std::string text = put("text", "plain text");
  const std::string extended = put(
      "extended",
      "<VAST><Ad><InLine><Creatives><Creative><CreativeExtensions/></Creative></Creatives></InLine>"
      "</Ad></VAST>");
  platform_.http->answer(missing, {.status = 404, .body = "<html>gone</html>"});
  put("cycle", vastWrapper("c", put("back", vastWrapper("b", cycle))));
  const char* const noXml = "didFail 1011 The XML response has an invalid XML format";
  const char* const noUrl = "didFail 1012 Invalid URL. Unable to parse XML.";
  const char* const noMovie = "didFail 1012 Invalid Movie URL.";
  const Case cases[] = {
      {"not XML", "no markup at all", noXml},
      {"no tracking", VastDocument{.tracked = false}.text(),
       "didFail 1010 Missing tracking data in the XML"},
      {"no mp4", VastDocument{.mediaType = "video/x-flv"}.text(), noMovie},
      {"a local file", VastDocument{.media = "file:///etc/hosts"}.text(), noMovie},
      {"no target", vastWrapper("w", "  "), noUrl},
      {"missing target", vastWrapper("w", missing), noUrl, {"GET " + missing}},
      {"no document", vastWrapper("w", text), noUrl, {"GET " + text}},
      {"no readable one", vastWrapper("w", extended), noXml, {"GET " + extended}},
      {"a cycle", vastWrapper("w", cycle), noUrl, {"GET " + cycle, "GET http://vast.example/back"}},
  };
  makePreroll();
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    answer(vastAnswer(test.document));
    load();
    settle();
    Lines expected{getAd};
    expected.insert(expected.end(), test.fetched.begin(), test.fetched.end());
    expected.emplace_back(test.failure);
    expected.push_back(getImpression);
    EXPECT_THAT(happened(), ElementsAreArray(expected));
    EXPECT_EQ(host_->contentUrl().text(), contentUrl);
  }
}

TEST_F(VastRoadTest, TheInspectionHearsOfEachHopAndOfTheOneThatFailed) {
  const std::string missing = "http://vast.example/missing";
  platform_.http->answer(missing, {.status = 404, .body = "<html>gone</html>"});
  Lines told;
  const auto observer = std::make_shared<InspectionObserver>(
      InspectionObserver{.inspectionDidSee = [&](const InspectionEvent& event) {
        if (event.kind == InspectionKind::wrapper) told.push_back(event.text);
      }});
  platform_.inspection->observer.set(observer);
  makePreroll();
  answer(vastAnswer(vastWrapper("w1", put("second", vastWrapper("w2", missing)))));
  load();
  settle();
  EXPECT_THAT(told, ElementsAre("hop 1 fetched: http://vast.example/second",
                                "hop 2 failed: status 404: " + missing,
                                "the chain ends without an ad at " + missing +
                                    ": Invalid URL. Unable to parse XML."));
}

TEST_F(VastRoadTest, AnEndlessChainEndsWithItsBudgetWhileTheHostLivesOn) {
  // Each document names a new one, and takes a second.
  for (int hop = 0; hop < 40; ++hop) {
    platform_.http->answer(
        "http://vast.example/" + std::to_string(hop),
        {.body = vastWrapper("w", "http://vast.example/" + std::to_string(hop + 1)),
         .delay = Seconds{1}});
  }
  makePreroll();
  answer(vastAnswer(vastWrapper("w", "http://vast.example/0")));
  load();
  settle();
  int turns = 0;
  const Timer alive = platform_.runLoop->every(Seconds{0.1}, [&] { ++turns; });
  advance(15.9);
  EXPECT_GE(turns, 150);
  EXPECT_THAT(happened(), Not(Contains(HasSubstr("didFail"))));
  advance(0.2);
  EXPECT_THAT(happened(), Contains("didFail 1012 Invalid URL. Unable to parse XML."));
}

TEST_F(VastRoadTest, ASilentWrapperIsGivenUpInFourSeconds) {
  platform_.http->answer("http://vast.example/silent", {.neverAnswers = true});
  makePreroll();
  answer(vastAnswer(vastWrapper("w", "http://vast.example/silent")));
  load();
  advance(3.9);
  EXPECT_THAT(happened(), ElementsAre(getAd, "GET http://vast.example/silent"));
  advance(0.2);
  EXPECT_THAT(happened(),
              ElementsAre("didFail 1012 Invalid URL. Unable to parse XML.", getImpression));
}

TEST_F(VastRoadTest, TheProbeOfTheMediaFileDecides) {
  struct Case {
    const char* name;
    headless::ScriptedAnswer answer;
    const char* failure;
  };
  const Case cases[] = {
      {"404", {.status = 404}, "didFail 1012 Invalid Movie URL."},
      {"lost",
       {.error = makeError(TransportError::connectionLost, "Lost.")},
       "didFail -1005 Lost."},
      {"silent", {.neverAnswers = true}, "didFail -1001 Timed out."},
  };
  makePreroll();
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    platform_.http->forget(mediaUrl);
    platform_.http->answer(mediaUrl, test.answer);
    play();
    advance(8.1);
    EXPECT_THAT(happened(), ElementsAre(getAd, headMedia, test.failure, getImpression));
    EXPECT_EQ(host_->contentUrl().text(), contentUrl);
  }
  platform_.http->forget(mediaUrl);
  platform_.http->answer(mediaUrl, {.status = 405});  // servers that know no HEAD
  play();
  advance(1);
  EXPECT_THAT(happened(), Contains("didLoad"));
}

TEST_F(VastRoadTest, LoadsOfTwoSlotsGoOneBehindTheOther) {
  platform_.http->answer(
      "http://vast.example/slow",
      {.body = VastDocument{.media = "http://cdn.example/first.mp4"}.text(), .delay = Seconds{2}});
  (*platform_.moviePlayers->movies)["http://cdn.example/first.mp4"] = {};
  platform_.http->answer("http://cdn.example/first.mp4", {});
  makePreroll();
  answer(vastAnswer(vastWrapper("w", "http://vast.example/slow")));
  load();
  settle();
  const auto first = banner_;
  const auto firstHost = host_;
  makePreroll();
  play();
  advance(1.9);
  EXPECT_EQ(host_->contentUrl().text(), contentUrl) << "the second waits for the first";
  advance(0.5);
  EXPECT_EQ(firstHost->contentUrl().text(), "http://cdn.example/first.mp4");
  EXPECT_EQ(host_->contentUrl().text(), mediaUrl);
  first->removeFromSuperview();
}

TEST_F(VastRoadTest, ASlotThatIsGoneDoesNotHoldTheNextOneUp) {
  platform_.http->answer("http://vast.example/silent", {.neverAnswers = true});
  makePreroll();
  answer(vastAnswer(vastWrapper("w", "http://vast.example/silent")));
  load();
  settle();
  drop();
  makePreroll();
  play();
  advance(4.5);
  EXPECT_THAT(happened(), Contains("didLoad"));
}

TEST_F(VastRoadTest, ABannerWithoutAPlayerAndASlotWithoutAnAd) {
  makeBanner();
  play();
  EXPECT_THAT(
      happened(),
      ElementsAre(getAd, "didFail 1 A video in a banner slot needs the host's movie player.",
                  getImpression));
  slot_->RTBRequired = true;
  makePreroll();
  platform_.http->answer("http://ads.example/x/sdkl/page/@Bottom1", {.body = noAdAnswer});
  load();
  settle();
  EXPECT_THAT(happened(), ElementsAre("GET http://ads.example/x/sdkl/page/@Bottom1",
                                      "prerollDidFinish http://host.example/film.mp4"));
}

TEST_F(VastRoadTest, AHostThatIsBusyShowsNoFilmAndCountsNoImpressionOfTheChain) {
  makePreroll();
  host_->shouldAutoplay = true;
  host_->play();
  advance(1);
  play();
  advance(1);
  EXPECT_THAT(happened(), ElementsAre(getAd, headMedia, getImpression));
  EXPECT_EQ(host_->contentUrl().text(), contentUrl);
}

TEST_F(VastRoadTest, APictureAfterAVideoEndsTheVideo) {
  makePreroll();
  play();
  advance(1);
  happened();
  answer(imageAnswer());
  load();
  settle();
  EXPECT_EQ(host_->contentUrl().text(), contentUrl);
  EXPECT_EQ(banner_->mobileAdSubTypes(), MobileAdSubTypes::image);
  EXPECT_THAT(happened(), Contains("didLoad"));
}

}  // namespace
}  // namespace tavo::test
