#include <algorithm>

#include <tavo/XGlobalConfiguration.h>

#include "Unit/VastFixture.h"

namespace tavo::test {
namespace {

// What tells the ads of a test's documents apart.
struct AdText {
  std::string name = "a";
  std::string attributes{};  // of Ad
  std::string linear{};      // attributes of Linear
  std::string media =
      "<MediaFile type='video/mp4' width='320' height='180'>"
      "http://cdn.example/ad.mp4</MediaFile>";
  std::string tracking{};  // more of it
  std::string clicks{};    // in VideoClicks
  std::string more{};      // in Linear
  std::string beside{};    // in Creatives
  std::string content{};   // in InLine
};

std::string pings(const std::string& name, const std::string& events) {
  std::string text;
  std::string rest = events;
  while (!rest.empty()) {
    const auto end = std::min(rest.find(' '), rest.size());
    const std::string event = rest.substr(0, end);
    text +=
        "<Tracking event='" + event + "'>http://t.example/" + name + "/" + event + "</Tracking>";
    rest.erase(0, end + 1);
  }
  return text;
}

std::string adText(const AdText& ad) {
  return "<Ad " + ad.attributes + "><InLine><Error>http://t.example/" + ad.name +
         "/error?[ERRORCODE]</Error><Impression>http://t.example/" + ad.name +
         "/impression"
         "</Impression>" +
         ad.content + "<Creatives>" + ad.beside + "<Creative><Linear " + ad.linear +
         "><Duration>00:00:30</Duration><TrackingEvents>" + pings(ad.name, "start complete skip") +
         ad.tracking + "</TrackingEvents><VideoClicks>" + ad.clicks + "</VideoClicks><MediaFiles>" +
         ad.media + "</MediaFiles>" + ad.more + "</Linear></Creative></Creatives></InLine></Ad>";
}

std::string document(const std::string& ads, const std::string& version = "4.2") {
  return "<VAST version='" + version + "'>" + ads + "</VAST>";
}

std::string wrapperText(const std::string& name, const std::string& uri,
                        const std::string& attributes = {}, const std::string& more = {},
                        const std::string& adAttributes = {}) {
  return "<Ad " + adAttributes + "><Wrapper " + attributes + "><VASTAdTagURI>" + uri +
         "</VASTAdTagURI><Error>http://t.example/" + name +
         "/error?[ERRORCODE]</Error><Impression>http://t.example/" + name +
         "/impression</Impression>" + more + "</Wrapper></Ad>";
}

class StandardsVastTest : public VastTest {
 protected:
  explicit StandardsVastTest(const Limits& limits = {}) : VastTest{limits} {
    slot_->standardsMode = true;
    slot_->bannerRefreshInterval = 0;
  }

  void put(const std::string& url, const std::string& text) {
    platform_.http->forget(url);
    platform_.http->answerWith(url, "text/xml", text);
  }
  void serve(const std::string& text) {
    answer(vastAnswer(text));
    load();
    settle();
    advance(0.3);
  }
  // A film at this address, of so many seconds.
  std::string film(const std::string& name, const headless::ScriptedMovie& movie = {}) {
    const std::string url = "http://cdn.example/" + name + ".mp4";
    (*platform_.moviePlayers->movies)[url] = movie;
    platform_.http->answer(url, {});
    return "<MediaFile type='video/mp4' width='320' height='180'>" + url + "</MediaFile>";
  }
  // The pings and what the host was told, without the exchanges that lead there.
  Lines told() {
    Lines lines;
    for (auto& line : happened()) {
      if (line.starts_with("GET http://t.example/")) {
        lines.push_back(line.substr(std::string_view{"GET http://t.example/"}.size()));
      } else if (!line.starts_with("GET ") && !line.starts_with("HEAD ")) {
        lines.push_back(line);
      }
    }
    return lines;
  }
  Lines playedThrough(double seconds = 30) {
    advance(seconds);
    return told();
  }
};

TEST_F(StandardsVastTest, ImpressionComesWithTheFirstFrameAndEventsFollowTheFilm) {
  makePreroll();
  serve(document(adText(
      {.linear = "skipoffset='00:00:05.500'",
       .tracking =
           pings("a", "creativeView firstQuartile midpoint thirdQuartile pause resume") +
           "<Tracking event='progress' offset='00:00:02.500'>http://t.example/p1</Tracking>"
           "<Tracking event='progress' offset='50%'>http://t.example/p2</Tracking>"
           "<Tracking event='progress' offset='150%'>http://t.example/never</Tracking>"
           "<Tracking event='progress' offset='-00:00:01'>http://t.example/no</Tracking>"})));
  EXPECT_THAT(told(), UnorderedElementsAre("a/impression", "a/creativeView", "a/start", "didLoad"));
  EXPECT_EQ(buttonOn(*host_)->title(), "00:05");
  advance(2);
  EXPECT_THAT(told(), ElementsAre());
  advance(0.5);
  EXPECT_THAT(told(), ElementsAre("p1"));
  advance(2.3);
  EXPECT_NE(buttonOn(*host_)->accessibilityLabel(), "Close");
  advance(0.9);
  EXPECT_EQ(buttonOn(*host_)->accessibilityLabel(), "Close");
  EXPECT_THAT(playedThrough(10),
              ElementsAre("a/firstQuartile", "quartile 0", "a/midpoint", "quartile 1", "p2"));
  buttonOn(*host_)->press();
  settle();
  EXPECT_THAT(told(), UnorderedElementsAre("prerollDidFinish " + std::string{contentUrl}, "a/skip",
                                           "didSkip"));
}

TEST_F(StandardsVastTest, EachFailureIsToldByItsCodeAndOnce) {
  struct Case {
    const char* name;
    std::string text;
    Lines told;
  };
  const std::string missing = "<MediaFile type='video/mp4'>http://cdn.example/gone.mp4</MediaFile>";
  platform_.http->answer("http://cdn.example/gone.mp4", {.status = 404});
  platform_.http->answer("http://v.example/late", {.neverAnswers = true});
  put("http://v.example/empty",
      "<VAST version='3.0'><Error>http://t.example/root?[ERRORCODE]"
      "</Error></VAST>");
  put("http://v.example/cycle", document(wrapperText("c", "http://v.example/cycle")));
  put("http://v.example/text", "no markup");
  put("http://v.example/w", document(wrapperText("w", "http://v.example/empty")));
  put("http://v.example/inline", document(adText({.content = "<Category authority='x'>7"
                                                             "</Category>"})));
  const std::string vpaid =
      "<MediaFile apiFramework='VPAID' type='application/javascript'>"
      "http://cdn.example/v.js</MediaFile>";
  const std::string flv = "<MediaFile type='video/x-flv'>http://cdn.example/a.flv</MediaFile>";
  const Case cases[] = {
      {"not XML", "no markup", {"didFail 1011 The VAST document is no XML that can be read."}},
      {"VAST 1",
       "<VideoAdServingTemplate><Ad/></VideoAdServingTemplate>",
       {"didFail 1011 VAST documents of versions 2 to 4 can be read."}},
      {"no ad",
       "<VAST version='3.0'><Error>http://t.example/r?[ERRORCODE]</Error></VAST>",
       {"r?303", "didFail 1002 The VAST document has no ad."}},
      {"two Error elements",
       document(
           adText({.media = missing, .content = "<Error>http://t.example/e2?[ERRORCODE]</Error>"})),
       {"a/error?401", "e2?401", "didFail 1012 Invalid Movie URL."}},
      {"no file that plays",
       document(adText({.media = flv})),
       {"a/error?403", "didFail 1012 Invalid Movie URL."}},
      {"VPAID",
       document(adText({.media = vpaid})),
       {"a/error?901", "didFail 1012 The ad is a program (VPAID), not a film."}},
      {"a film that breaks",
       document(adText({.media = film("broken", {.hasVideo = false})})),
       {"a/error?405", "didFail 2 The video cannot be played.",
        "prerollDidFinish " + std::string{contentUrl}}},
      {"a silent film",
       document(adText({.media = film("silent", {.arrives = false})})),
       {"a/error?402", "didFail 3 No picture came in time.",
        "prerollDidFinish " + std::string{contentUrl}}},
      {"no film",
       document("<Ad><InLine><Error>http://t.example/n?[ERRORCODE]</Error><Creatives>"
                "<Creative><NonLinearAds/></Creative></Creatives></InLine></Ad>"),
       {"n?201", "didFail 1002 The VAST answer ended with error 201."}},
      {"an empty chain",
       document(wrapperText("v", "http://v.example/w")),
       {"v/error?303", "w/error?303", "root?303", "didFail 1002 The VAST document has no ad."}},
      {"a silent wrapper",
       document(wrapperText("v", "http://v.example/late")),
       {"v/error?301", "didFail 1002 The VAST answer ended with error 301."}},
      {"a cycle",
       document(wrapperText("v", "http://v.example/cycle")),
       {"v/error?302", "c/error?302", "didFail 1002 The VAST answer ended with error 302."}},
      {"text behind a wrapper",
       document(wrapperText("v", "http://v.example/text")),
       {"v/error?100", "didFail 1011 The VAST document is no XML that can be read."}},
      {"a wrapper that follows nothing",
       document(wrapperText("v", "http://v.example/w", "followAdditionalWrappers='false'")),
       {"v/error?303", "w/error?303", "didFail 1002 The VAST document has no ad."}},
      {"a blocked subject",
       document(wrapperText("v", "http://v.example/inline", {},
                            "<BlockedAdCategories authority='x'>6,7</BlockedAdCategories>")),
       {"v/error?205", "a/error?205", "didFail 1002 The VAST answer ended with error 205."}},
  };
  makePreroll();
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    answer(vastAnswer(test.text));
    load();
    settle();
    advance(20);
    EXPECT_THAT(told(), UnorderedElementsAreArray(test.told));
    EXPECT_EQ(host_->contentUrl().text(), contentUrl);
  }
}

TEST_F(StandardsVastTest, APodPlaysInOrderAndAnAdThatCannotBeShownIsReplaced) {
  const auto ad = [&](const std::string& name, const std::string& attributes,
                      const headless::ScriptedMovie& movie) {
    return adText({.name = name, .attributes = attributes, .media = film(name, movie)});
  };
  makePreroll();
  serve(document(ad("two", "sequence='2'", {.hasVideo = false}) + ad("spare", "", {}) +
                 ad("three", "sequence='3'", {}) + ad("one", "sequence='1'", {})));
  EXPECT_THAT(told(), ElementsAre("one/impression", "one/start", "didLoad"));
  EXPECT_THAT(playedThrough(31),
              ElementsAre("quartile 0", "quartile 1", "quartile 2", "one/complete", "two/error?405",
                          "spare/impression", "spare/start"));
  EXPECT_THAT(playedThrough(31), ElementsAre("quartile 0", "quartile 1", "quartile 2",
                                             "spare/complete", "three/impression", "three/start"));
  EXPECT_THAT(playedThrough(31),
              ElementsAre("quartile 0", "quartile 1", "quartile 2", "three/complete",
                          "prerollDidFinish " + std::string{contentUrl}));
}

TEST_F(StandardsVastTest, TheSkipOfAPodsFilmLeadsToTheNextAndACloseEndsTheBreak) {
  const auto ad = [&](const std::string& name, const std::string& number) {
    return adText({.name = name,
                   .attributes = "sequence='" + number + "'",
                   .linear = "skipoffset='00:00:02'",
                   .media = film(name),
                   .tracking = pings(name, "close closeLinear notUsed")});
  };
  const std::string pod = document(ad("one", "1") + ad("two", "2") + ad("three", "3"));
  makePreroll();
  serve(pod);
  advance(3);
  happened();
  buttonOn(*host_)->press();
  advance(0.3);
  EXPECT_THAT(told(), ElementsAre("one/skip", "didSkip", "two/impression", "two/start"));
  drop();
  happened();
  makeInterstitial();
  serve(pod);
  EXPECT_THAT(told(), ElementsAre("one/impression", "one/start", "didLoad"));
  advance(3);
  happened();
  buttonOn(*banner_)->press();
  advance(1);
  EXPECT_THAT(told(), UnorderedElementsAre("one/skip", "one/close", "one/closeLinear",
                                           "two/notUsed", "interstitialDismissed"));
}

TEST_F(StandardsVastTest, WithoutASkipOffsetAFilmIsSeenToItsEndUnlessTheHostSaysMore) {
  struct Case {
    const char* attributes;
    std::int64_t hostOffset;
    double control;  // seconds until it is there; 0: never
  };
  for (const auto& test :
       {Case{"", -1, 0}, Case{"", 4, 4}, Case{"skipoffset='10%'", 20, 3},
        Case{"skipoffset='250%'", -1, 0}, Case{"skipoffset='01:00:00'", -1, 0},
        Case{"skipoffset='-5'", -1, 0}, Case{"skipoffset='00:00:00'", -1, 0.1}}) {
    SCOPED_TRACE(test.attributes);
    slot_->skipOffsetTime = test.hostOffset;
    makePreroll();
    serve(document(adText({.linear = test.attributes})));
    const bool comes = test.control > 0;
    advance(comes ? test.control + 0.6 : 29);
    EXPECT_EQ(buttonOn(*host_)->accessibilityLabel() == "Close", comes);
    drop();
  }
}

TEST_F(StandardsVastTest, WrappersCarryTheirAddressesAndSayWhatMayFollow) {
  put("http://v.example/two/b.xml",
      document(adText({.name = "b",
                       .attributes = "sequence='1'",
                       .media = film("b"),
                       .clicks = "<ClickTracking>http://t.example/b/click</ClickTracking>"}) +
               adText({.name = "c", .attributes = "sequence='2'", .media = film("c")})));
  const std::string wrapperLinear =
      "<Creatives><Creative><Linear><TrackingEvents>" + pings("w", "start") +
      "</TrackingEvents><VideoClicks><ClickTracking>http://t.example/w/click</ClickTracking>"
      "</VideoClicks></Linear></Creative></Creatives>";
  put("http://v.example/one/a.xml", document(wrapperText("w", "../two/b.xml", "", wrapperLinear)));
  makePreroll();
  serve(document(wrapperText("v", "http://v.example/one/a.xml")));
  EXPECT_THAT(told(), UnorderedElementsAre("v/impression", "w/impression", "b/impression",
                                           "w/start", "b/start", "didLoad"));
  deliverTap(*host_, {5, 100});
  settle();
  EXPECT_THAT(told(), UnorderedElementsAre("didPause", "didClick", "w/click", "b/click"));
  drop();
  // Both ads where all of them allow it.
  put("http://v.example/one/a.xml",
      document(wrapperText("w", "/two/b.xml", "allowMultipleAds='true'")));
  makePreroll();
  serve(document(wrapperText("v", "http://v.example/one/a.xml", "allowMultipleAds='1'")));
  happened();
  EXPECT_THAT(playedThrough(31), IsSupersetOf({"b/complete", "c/start"}));
}

TEST_F(StandardsVastTest, WhatAPersonDoesWithTheFilmIsToldEachTime) {
  slot_->shouldOpenClickThroughURLInAppBrowser = true;
  platform_.http->answerWith("http://click.example/v", "text/html", "page");
  makePreroll();
  serve(
      document(adText({.tracking = pings("a",
                                         "loaded mute unmute pause resume fullscreen expand "
                                         "exitFullscreen collapse playerExpand "
                                         "playerCollapse acceptInvitation"),
                       .clicks = "<ClickThrough>http://click.example/v</ClickThrough><CustomClick>"
                                 "http://t.example/a/custom?[PLAYERSTATE]</CustomClick>"})));
  EXPECT_THAT(told(), Contains("a/loaded"));
  const auto after = [this](const auto& act) {
    act();
    settle();
    return told();
  };
  EXPECT_THAT(after([this] { host_->setMuted(true); }), ElementsAre("a/mute"));
  EXPECT_THAT(after([this] { host_->setMuted(false); }), ElementsAre("a/unmute"));
  EXPECT_THAT(after([this] { host_->setMuted(true); }), ElementsAre("a/mute"));
  EXPECT_THAT(
      after([this] { host_->setFullscreen(true); }),
      UnorderedElementsAre("a/fullscreen", "a/expand", "a/playerExpand", "didEnterFullScreen"));
  EXPECT_THAT(after([this] { host_->setFullscreen(false); }),
              UnorderedElementsAre("a/exitFullscreen", "a/collapse", "a/playerCollapse",
                                   "didExitFullScreen"));
  EXPECT_THAT(after([this] {
                deliverTap(*host_, {5, 100});
              }),
              UnorderedElementsAre("a/pause", "didPause", "didClick", "a/custom?muted",
                                   "a/acceptInvitation", "willOpenBrowser"));
}

TEST_F(StandardsVastTest, TheFirstAdOfSeveralThatCanBeShownIsShownUnlessAWrapperForbidsIt) {
  platform_.http->answer("http://v.example/gone", {.status = 500});
  for (const char* const fallback : {"", "fallbackOnNoAd='true'", "fallbackOnNoAd='false'"}) {
    SCOPED_TRACE(fallback);
    makePreroll();
    serve(document(wrapperText("w", "http://v.example/gone", fallback) +
                   adText({.name = "x", .media = "<MediaFile type='a/b'>u</MediaFile>"}) +
                   adText({.name = "y"}) + adText({.name = "z"})));
    if (std::string_view{fallback}.ends_with("'false'")) {
      EXPECT_THAT(told(), UnorderedElementsAre("w/error?301", StartsWith("didFail")));
    } else {
      EXPECT_THAT(told(),
                  ElementsAre("w/error?301", "x/error?403", "y/impression", "y/start", "didLoad"));
    }
    drop();
  }
}

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
      {.media = film("m") + "<Mezzanine type='video/mp4'>http://cdn.example/raw</Mezzanine>"
                            "<ClosedCaptionFiles><ClosedCaptionFile type='text/vtt' language='en'>"
                            "http://cdn.example/en.vtt</ClosedCaptionFile></ClosedCaptionFiles>",
       .beside = "<Creative><CompanionAds><Companion width='728' height='90'>" + resource + tail +
                 "<Companion width='300' height='100'>" + resource + tail +
                 "</CompanionAds></Creative>",
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
  EXPECT_THAT(told(), ElementsAre("a/impression", "a/start", "not?2"));
  ASSERT_EQ(offers.size(), 1);
  EXPECT_EQ(offers[0]->companion().width, 300);
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
