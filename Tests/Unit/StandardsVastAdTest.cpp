#include <tavo/XGlobalConfiguration.h>

#include "Unit/StandardsVastFixture.h"

namespace tavo::test {
namespace {

TEST_F(StandardsVastTest, MediaIsChosenByNumbersThePlayersSizeAndTheBitrate) {
  struct File {
    int width;
    int height;
    int bitrate;
    std::string type = "video/mp4";
  };
  struct Case {
    const char* name;
    std::vector<File> files;
    int wished;
    std::size_t chosen;
  };
  const Case cases[] = {
      {"numbers, not texts", {{1280, 720, 900}, {640, 360, 500}, {320, 180, 300}}, 0, 1},
      {"the smallest that fills", {{2560, 1440, 900}, {960, 540, 500}, {160, 90, 100}}, 0, 1},
      {"else the largest", {{80, 45, 900}, {160, 90, 500}}, 0, 1},
      {"the highest bitrate", {{320, 180, 300}, {320, 180, 900}, {320, 180, 600}}, 0, 1},
      {"within the wish", {{320, 180, 300}, {320, 180, 900}, {320, 180, 600}}, 700, 2},
      {"else the lowest", {{320, 180, 300}, {320, 180, 900}}, 100, 0},
      {"what decodes",
       {{320, 180, 300, "video/ogg"}, {640, 360, 1, "video/WebM; codecs=vp9"}},
       0,
       1},
  };
  makePreroll();
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    slot_->preferredVideoBitrate = test.wished;
    std::string media;
    for (std::size_t index = 0; index < test.files.size(); ++index) {
      const File& file = test.files[index];
      const std::string url = "http://cdn.example/f" + std::to_string(index);
      (*platform_.moviePlayers->movies)[url] = {.duration = 1};
      platform_.http->answer(url, {});
      media += "<MediaFile type='" + file.type + "' width='" + std::to_string(file.width) +
               "' height='" + std::to_string(file.height) + "' bitrate='" +
               std::to_string(file.bitrate) + "'>" + url + "</MediaFile>";
    }
    happened();
    serve(document(adText({.media = media})));
    EXPECT_THAT(happened(), Contains("HEAD http://cdn.example/f" + std::to_string(test.chosen)));
    advance(2);
  }
}

TEST_F(StandardsVastTest, MacrosAreFilledInAndConsentGoesAlong) {
  auto& consent = XGlobalConfiguration::sharedInstance().consent;
  consent = {.gdprConsent = "CP+a/b",
             .gppString = "DBAA~x",
             .gppSectionId = "2,6",
             .regulations = "gdpr",
             .limitAdTracking = "1"};
  const std::string all =
      "e=[ERRORCODE]&amp;g=[GDPRCONSENT]&amp;p=[GPPSTRING]&amp;s=[GPPSECTIONID]&amp;"
      "r=[REGULATIONS]&amp;l=[LIMITADTRACKING]&amp;h=[ADPLAYHEAD]&amp;c=[CONTENTPLAYHEAD]&amp;"
      "m=[MEDIAPLAYHEAD]&amp;u=[ASSETURI]&amp;n=[UNKNOWN]&amp;i=[ADSERVINGID]&amp;k=[PODSEQUENCE]"
      "&amp;a=[ADCOUNT]&amp;t=%5BPLACEMENTTYPE%5D&amp;z=[PLAYERSIZE]&amp;d=[UNIVERSALADID]";
  makePreroll();
  host_->setCurrentPlaybackTime(12.5);
  serve(document(adText(
      {.attributes = "sequence='1'",
       .tracking = "<Tracking event='progress' offset='50%'>http://t.example/q?" + all +
                   "</Tracking><Tracking event='progress' offset='50%'>"
                   "http://t.example/r?[CACHEBUSTING]&amp;[RANDOM]&amp;[TIMESTAMP]</Tracking>",
       .beside = "<Creative><UniversalAdId idRegistry='ad-id.org'>CN/1</UniversalAdId></Creative>",
       .content = "<AdServingId>s-1</AdServingId>"})));
  happened();
  advance(15);
  const Lines lines = told();
  EXPECT_THAT(lines,
              Contains("q?e=%5BERRORCODE%5D&g=CP%2Ba%2Fb&p=DBAA~x&s=2%2C6&r=gdpr&l=1&h=00%3A00%3A15"
                       ".000&c=00%3A00%3A12.500&m=00%3A00%3A12.500&u=http%3A%2F%2Fcdn.example"
                       "%2Fad.mp4&n=%5BUNKNOWN%5D&i=s-1&k=1&a=1&t=1&z=320%2C180&d="
                       "ad-id.org%20CN%2F1"));
  EXPECT_THAT(lines,
              Contains(testing::MatchesRegex("r.[0-9]{8}&[0-9]{8}&1970-01-01T00%3A00%3A15.100Z")));
}

TEST_F(StandardsVastTest, TheHostReadsTheAdAndDrawsItsCompanions) {
  std::vector<VastAd> begun;
  std::vector<std::shared_ptr<VastCompanionOffer>> offers;
  const auto events = std::make_shared<XAdViewDelegate>(XAdViewDelegate{
      .xAdViewDidBeginVastAd = [&](XAdView&, const VastAd& ad) { begun.push_back(ad); },
      .xAdViewDidOfferCompanions = [&](XAdView&, const auto& all) { offers = all; }});
  const std::string resource =
      "<StaticResource creativeType='image/png'>http://cdn.example/a.png"
      "</StaticResource>";
  const std::string tail =
      "<CompanionClickThrough>http://click.example/c</CompanionClickThrough>"
      "<CompanionClickTracking>http://t.example/c/click"
      "</CompanionClickTracking><TrackingEvents>" +
      pings("c", "creativeView") + "</TrackingEvents></Companion>";
  slot_->companionSizes = {{300, 250}};
  makePreroll();
  banner_->delegate.set(events);
  serve(document(adText(
      {.attributes = "conditionalAd='true'",
       .media = film("m") + "<Mezzanine type='video/mp4'>http://cdn.example/raw</Mezzanine>"
                            "<ClosedCaptionFiles><ClosedCaptionFile type='text/vtt' language='en'>"
                            "http://cdn.example/en.vtt</ClosedCaptionFile></ClosedCaptionFiles>",
       .more = "<AdParameters>speed=1</AdParameters>",
       .beside = "<Creative><CompanionAds required='any'><Companion width='728' height='90'>" +
                 resource + tail +
                 "<Companion width='300' height='100' adSlotId='left' renderingMode='end-card' "
                 "expandedWidth='600' expandedHeight='400'>" +
                 resource + tail + "</CompanionAds></Creative>",
       .content =
           "<AdSystem version='2'>Sys</AdSystem><Category authority='iab'>IAB1</Category>"
           "<Survey>http://s.example/</Survey><ViewableImpression id='v'><Viewable>http://t.example"
           "/viewable</Viewable></ViewableImpression><AdVerifications><Verification vendor='m.com'>"
           "<JavaScriptResource apiFramework='omid'>http://m.example/o.js</JavaScriptResource>"
           "<TrackingEvents><Tracking event='verificationNotExecuted'>http://t.example/not?"
           "[REASON]</Tracking></TrackingEvents><VerificationParameters>p</VerificationParameters>"
           "</Verification></AdVerifications>"})));
  ASSERT_EQ(begun.size(), 1);
  const VastAd& ad = begun[0];
  EXPECT_EQ(ad.system + ad.systemVersion + ad.categories[0].code + ad.surveys[0] +
                ad.viewableImpressions[0].viewable[0] + ad.verifications[0].resources[0].url +
                ad.verifications[0].parameters + ad.linear()->captions[0].url +
                ad.linear()->mezzanines[0].url,
            "Sys2IAB1http://s.example/http://t.example/viewablehttp://m.example/o.jsp"
            "http://cdn.example/en.vtthttp://cdn.example/raw");
  EXPECT_TRUE(ad.conditional);
  EXPECT_EQ(ad.linear()->parameters, "speed=1");
  EXPECT_EQ(ad.creatives[0].companionsRequired, "any");
  EXPECT_THAT(told(), ElementsAre("a/impression", "a/start", "not?2"));
  ASSERT_EQ(offers.size(), 1);
  const VastCompanion& companion = offers[0]->companion();
  EXPECT_EQ(companion.width, 300);
  EXPECT_EQ(companion.adSlotId + " " + companion.renderingMode, "left end-card");
  EXPECT_EQ(companion.expandedWidth + companion.expandedHeight, 1'000);
  const auto view = offers[0]->view();
  settle();
  EXPECT_THAT(told(), ElementsAre());
  root_->view()->addSubview(view);
  settle();
  EXPECT_THAT(told(), ElementsAre("c/creativeView"));
  offers[0]->didShow();
  offers.clear();  // the view is enough
  buttonOn(*view)->press();
  settle();
  EXPECT_THAT(told(), ElementsAre("c/click"));
  EXPECT_THAT(platform_.application->openedUrls, ElementsAre(Url::parse("http://click.example/c")));
}

TEST_F(StandardsVastTest, IconsStandOnTheFilmForTheirTimeWithTheirPings) {
  const auto icon = [](const std::string& attributes, const std::string& resource,
                       const std::string& clicks) {
    return "<Icon program='p' " + attributes +
           "><StaticResource>http://cdn.example/missing.png"
           "</StaticResource>" +
           resource + "<IconClicks>" + clicks +
           "<IconClickTracking>http://t.example/i/click</IconClickTracking></IconClicks>"
           "<IconViewTracking>http://t.example/i/view</IconViewTracking></Icon>";
  };
  const std::string picture = "<StaticResource>http://cdn.example/a.png</StaticResource>";
  makePreroll();
  serve(document(adText(
      {.more = "<Icons>" +
               icon("width='20' height='10' xPosition='right' yPosition='bottom' "
                    "offset='00:00:02' duration='00:00:05'",
                    picture,
                    "<IconClickFallbackImages><IconClickFallbackImage width='100' height='50'>"
                    "<AltText>Why</AltText><StaticResource>http://cdn.example/a.png"
                    "</StaticResource></IconClickFallbackImage></IconClickFallbackImages>") +
               icon("width='9000' height='10' xPosition='0' yPosition='0'", picture, "") +
               "</Icons>"})));
  happened();
  const auto views = host_->subviews().size();
  advance(1.5);
  EXPECT_EQ(host_->subviews().size(), views);
  advance(1);
  ASSERT_EQ(host_->subviews().size(), views + 1);
  const auto has = [&](const Rect& frame) {
    return std::any_of(host_->subviews().begin(), host_->subviews().end(),
                       [&](const auto& view) { return view->frame() == frame; });
  };
  EXPECT_TRUE(has({300, 170, 20, 10}));
  EXPECT_THAT(told(), ElementsAre("i/view"));
  deliverTap(*host_, {310, 175});
  settle();
  EXPECT_THAT(told(), ElementsAre("i/click"));
  ASSERT_EQ(host_->subviews().size(), views + 2);
  EXPECT_TRUE(has({110, 65, 100, 50}));
  deliverTap(*host_, {160, 90});
  advance(5);
  EXPECT_EQ(host_->subviews().size(), views);
  EXPECT_THAT(told(), ElementsAre("quartile 0"));
}

TEST_F(StandardsVastTest, TextsAreReadAsXmlMeansThemAndOddPartsArePassedOver) {
  put("http://v.example/d/doc.xml",
      "\xEF\xBB\xBF<?xml version='1.0'?><!DOCTYPE VAST><VAST version='2.0'><Ad><InLine><Impression>"
      " http://t.example/i?a=1&amp;b=&#x41;&#66; </Impression><Impression><![CDATA["
      "http://t.example/c?a=1&amp;b=2]]></Impression><Creatives><Creative><CompanionAds/></"
      "Creative>"
      "<Creative><CreativeExtensions><X/></CreativeExtensions><Linear><Duration>00:00:30</Duration>"
      "<MediaFiles><MediaFile "
      "type='video/mp4'>clip.mp4</MediaFile></MediaFiles></Linear></Creative>"
      "</Creatives></InLine></Ad></VAST>");
  (*platform_.moviePlayers->movies)["http://v.example/d/clip.mp4"] = {};
  platform_.http->answer("http://v.example/d/clip.mp4", {});
  makePreroll();
  serve(document(wrapperText("w", "http://v.example/d/doc.xml")));
  EXPECT_THAT(told(),
              UnorderedElementsAre("w/impression", "i?a=1&b=AB", "c?a=1&amp;b=2", "didLoad"));
}

class BoundedVastTest : public StandardsVastTest {
 protected:
  BoundedVastTest()
      : StandardsVastTest{Limits{.vastAdsInBreak = 5, .vastAddresses = 50, .vastIcons = 2}} {}
};

TEST_F(BoundedVastTest, FloodsEndAtTheirBoundsAndNothingIsToldTwice) {
  std::string ads;
  for (int number = 1; number <= 1'000; ++number) {
    ads += adText({.name = "n" + std::to_string(number),
                   .attributes = "sequence='" + std::to_string(number) + "'",
                   .media = film("short", {.duration = 2})});
  }
  makePreroll();
  serve(document(ads));
  Lines lines = playedThrough(100);
  EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                          [](const auto& line) { return line.ends_with("/impression"); }),
            5);
  EXPECT_EQ(lines.back(), "prerollDidFinish " + std::string{contentUrl});

  std::string progress;
  for (int number = 0; number < 10'000; ++number) {
    progress += "<Tracking event='progress' offset='0%'>http://t.example/f" +
                std::to_string(number % 60) + "</Tracking>";
  }
  std::string macros = "http://t.example/m?";
  for (int number = 0; number < 5'000; ++number) macros += "[ASSETURI]";
  serve(document(
      adText({.tracking = progress,
              .content = "<Impression>" + macros +
                         "</Impression><Impression>http://t.example/[[CACHEBUSTING]]</Impression>"
                         "<Impression>http://t.example/twice</Impression>"
                         "<Impression>http://t.example/twice</Impression>"})));
  lines = playedThrough(31);
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "twice"), 1);
  EXPECT_THAT(lines, Not(Contains(StartsWith("m?"))));
  EXPECT_THAT(lines, Contains(testing::MatchesRegex("%5B[0-9]{8}%5D")));
  EXPECT_LE(std::count_if(lines.begin(), lines.end(),
                          [](const auto& line) { return line.starts_with("f"); }),
            50);
}

}  // namespace
}  // namespace tavo::test
