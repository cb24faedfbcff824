#include "Unit/StandardsVastFixture.h"

namespace tavo::test {
namespace {

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

}  // namespace
}  // namespace tavo::test
