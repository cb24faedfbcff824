// A banner from request to screen: timers, connectivity, life cycle, and what the host hears.

#include <tavo/TrackingLedger.h>

#include "Unit/AdViewFixture.h"
#include "UserInterface/WebView/ExposableViews/MRAIDComplaint/XMRAIDBannerView.h"
#include "UserInterface/WebView/InAppBrowser/XInAppBrowser.h"

namespace tavo::test {
namespace {

const Lines shownPicture{getAd, getPicture, getImpression, "didLoad"};
const Lines shownPage{getAd, "shouldDisplay?", getImpression, "didLoad"};

TEST_F(AdViewTest, AnImageBannerFromRequestToScreen) {
  makeBanner();
  answer(imageAnswer());
  load();
  EXPECT_THAT(happened(), ElementsAre(getAd));
  settle();
  EXPECT_THAT(happened(), ElementsAre(getPicture, getImpression, "didLoad"));
  EXPECT_EQ(banner_->mobileAdSubTypes(), MobileAdSubTypes::image);
  ASSERT_EQ(banner_->subviews().size(), 1U);
  const auto picture = std::dynamic_pointer_cast<XMRAIDBannerView>(banner_->subviews().front());
  ASSERT_TRUE(picture);
  // Not scaled: the part of 640 x 100 that the banner covers.
  EXPECT_EQ(picture->image().width(), 320);
  EXPECT_EQ(picture->image().height(), 50);
  EXPECT_TRUE(banner_->isRefreshTimerRunning());
}

TEST_F(AdViewTest, AnHtmlBannerAsksBeforeItIsShownAndCountsItsImpressionThen) {
  makeBanner();
  EXPECT_EQ(loaded(htmlAnswer()), shownPage);
  const auto page = platform_.webViews->last();
  EXPECT_EQ(page->superview(), banner_.get());
  EXPECT_EQ(page->frame(), (Rect{0, 0, 320, 50}));
  EXPECT_THAT(page->html(), HasSubstr("<head><script src=\"file:///bundle/CorvaneTAVOSDKMRAID"));
  EXPECT_THAT(page->html(), HasSubstr("<b>ad</b></body></html>"));
  EXPECT_THAT(page->documentStartScripts(), ElementsAre("/* mraid */"));
}

TEST_F(AdViewTest, ASlotThatShowedHtmlBeforeStartsTheEngineBesideItsNextRequest) {
  showBanner(imageAnswer());
  loaded(htmlAnswer());
  EXPECT_EQ(platform_.webViews->warmUps, 0) << "a slot of pictures needs no engine";
  load();
  EXPECT_EQ(platform_.webViews->warmUps, 1);
  banner_->loadWithDomainName("ads.example/x", "page", "Top1");
  EXPECT_EQ(platform_.webViews->warmUps, 1) << "another slot has shown nothing yet";
}

TEST_F(AdViewTest, AnswersWithoutAnAdEndInOneFailure) {
  const std::string noAd = "didFail 1002 No ads available from TAVO server.";
  const std::pair<std::string, std::string> cases[] = {
      {noAdAnswer, noAd},
      {"<h1>500</h1>", noAd},
      {R"({"Ad":7})", noAd},
      {htmlAnswer("<a href=''><img src='/default/empty.gif'></a>"),
       "didFail 1002 empty.gif file response received."},
      {"", "didFail none"}};
  makeBanner();
  for (const auto& [body, failure] : cases) {
    EXPECT_THAT(loaded(body), ElementsAre(getAd, failure)) << body;
  }
  mayRender_ = false;
  EXPECT_THAT(loaded(htmlAnswer()),
              ElementsAre(getAd, "shouldDisplay?",
                          "didFail 1007 Rendering of ad interrupted by publisher."))
      << "and no impression";
  EXPECT_EQ(platform_.webViews->last()->superview(), nullptr);
  slot_->RTBRequired = true;
  platform_.http->answer("http://ads.example/x/sdkl/page/@Bottom1", {.body = noAdAnswer});
  EXPECT_THAT(loaded(noAdAnswer), ElementsAre("GET http://ads.example/x/sdkl/page/@Bottom1",
                                              "didFail 1002 No Ad recieved from server"));
}

TEST_F(AdViewTest, APageThatIsReleasedInsideTheQuestionNeitherShowsNorCounts) {
  makeBanner();
  onCallback_ = [this](const std::string&) { banner_->releaseMemory(); };
  EXPECT_THAT(loaded(htmlAnswer()), ElementsAre(getAd, "shouldDisplay?"));
  EXPECT_THAT(banner_->subviews(), IsEmpty());
}

TEST_F(AdViewTest, ExchangesThatFailReachTheHostUnchanged) {
  makeBanner();
  platform_.http->answer(adUrl, {.error = makeError(TransportError::connectionLost, "Lost.")});
  platform_.http->answer(adUrl, {.neverAnswers = true});
  load();
  settle();
  EXPECT_THAT(happened(), ElementsAre(getAd, "didFail -1005 Lost."));
  load();
  advance(9.9);
  EXPECT_THAT(happened(), ElementsAre(getAd));
  advance(0.2);
  EXPECT_THAT(happened(), ElementsAre("didFail -1001 Timed out."));
  platform_.network->setReachable(false);
  load();
  settle();
  EXPECT_THAT(happened(), ElementsAre("didFail 1003 Network connectivity not available"));
}

TEST_F(AdViewTest, TheBannerRefreshesOnItsTimer) {
  slot_->bannerRefreshInterval = 30;
  showBanner(htmlAnswer());
  advance(29.9);
  EXPECT_THAT(happened(), IsEmpty());
  advance(0.1);
  EXPECT_EQ(happened(), shownPage);
  advance(30);
  EXPECT_EQ(happened(), shownPage);
  EXPECT_EQ(banner_->subviews().size(), 2U);  // the agent and its page, of the newest ad only
}

// Set by somebody, or by the network; ahead alone is what a system sees that was asleep.
TEST_F(AdViewTest, ACalendarThatJumpsMovesNoTimerAndNoMeasuredTime) {
  slot_->bannerRefreshInterval = 30;
  showBanner(imageAnswer());
  for (const int years : {10, -30}) {
    platform_.runLoop->jumpCalendar(std::chrono::hours{24 * 365 * years});
    advance(29.9);
    EXPECT_THAT(happened(), IsEmpty());
    advance(0.1);
    EXPECT_EQ(happened(), shownPicture);
  }
  platform_.http->answer("http://track.example/i", {.delay = Seconds{2}});
  advance(30);
  platform_.runLoop->jumpCalendar(std::chrono::hours{-100'000});
  advance(2);
  EXPECT_EQ(TrackingLedger::sharedInstance().records().back().took, Seconds{2});
}

TEST_F(AdViewTest, WhatTheUserSeesDecidesAboutTheTimer) {
  slot_->bannerRefreshInterval = 30;
  showBanner(imageAnswer());
  banner_->setHidden(true);
  advance(60);  // ticks that ask for nothing
  EXPECT_THAT(happened(), IsEmpty());
  banner_->refreshAd();
  EXPECT_FALSE(banner_->isRefreshTimerRunning());
  banner_->setHidden(false);
  banner_->refreshAd();
  EXPECT_THAT(happened(), ElementsAre(getAd)) << "at once";
  EXPECT_TRUE(banner_->isRefreshTimerRunning());
  settle();
  drop();
  happened();
  window_->setHidden(true);
  makeBanner();
  EXPECT_EQ(loaded(imageAnswer()), shownPicture) << "the first ad comes off the screen, too";
  EXPECT_FALSE(banner_->isRefreshTimerRunning());
}

TEST_F(AdViewTest, AnAdThatCameBeforeItsWindowRefreshesOnceTheWindowIsSeen) {
  root_->view()->setHidden(true);
  showBanner(imageAnswer());
  EXPECT_FALSE(banner_->isRefreshTimerRunning());
  root_->view()->setHidden(false);
  banner_->didAppearOnScreen();
  EXPECT_TRUE(banner_->isRefreshTimerRunning());
  EXPECT_THAT(happened(), IsEmpty()) << "the ad it has is new";
  banner_->didAppearOnScreen();
  advance(120);
  EXPECT_THAT(happened(), Contains(getAd).Times(1));
}

TEST_F(AdViewTest, ALoadThatFailsAtOnceDoesNotArmTheTimerAgain) {
  slot_->bannerRefreshInterval = 30;
  showBanner(imageAnswer());
  banner_->setHidden(true);
  banner_->refreshAd();
  platform_.network->setReachable(false);
  advance(2);
  banner_->setHidden(false);
  banner_->refreshAd();  // arms the timer, whose first firing loads and fails
  settle();
  EXPECT_THAT(happened(), ElementsAre("didFail 1003 Network connectivity not available"));
  EXPECT_TRUE(banner_->isRefreshTimerRunning());
}

TEST_F(AdViewTest, AutomaticRequestsKeepTheirDistance) {
  showBanner(imageAnswer());
  const auto hideAndShow = [this] {
    banner_->setHidden(true);
    banner_->refreshAd();
    banner_->setHidden(false);
    banner_->refreshAd();
  };
  hideAndShow();
  EXPECT_THAT(happened(), IsEmpty()) << "the last request was in this second";
  advance(1.1);
  hideAndShow();
  EXPECT_THAT(happened(), ElementsAre(getAd));
  load();
  EXPECT_THAT(happened(), ElementsAre(getAd)) << "what the host asks for is never held back";
}

TEST_F(AdViewTest, ConnectivityThatReturnsReloadsAtOnce) {
  showBanner(imageAnswer());
  advance(1.1);
  const auto flap = [this] {
    platform_.network->setReachable(false);
    EXPECT_FALSE(banner_->isRefreshTimerRunning());
    platform_.network->setReachable(true);
    settle();
  };
  flap();
  EXPECT_EQ(happened(), shownPicture);
  for (int flaps = 0; flaps < 5; ++flaps) flap(), advance(0.05);
  EXPECT_THAT(happened(), IsEmpty()) << "the last request was in this second";
  advance(1);
  EXPECT_EQ(happened(), shownPicture);
}

TEST_F(AdViewTest, ASlotWaitsForOneAnswerAtATime) {
  slot_->bannerRefreshInterval = 2;
  showBanner(imageAnswer());
  const auto answerSlowly = [this](const std::string& picture) {
    platform_.http->forget(adUrl);
    platform_.http->answerWith(picture, "image/png", "image 640x100");
    platform_.http->answer(adUrl, {.headers = {{"Content-Type", "application/json"}},
                                   .body = imageAnswer(picture),
                                   .delay = Seconds{3}});
  };
  answerSlowly("http://cdn.example/slow.png");
  advance(2.1);
  EXPECT_THAT(happened(), ElementsAre(getAd));
  advance(2.1);
  EXPECT_THAT(happened(), IsEmpty()) << "the answer is still to come";
  // What the host asks for takes the place of what nobody asked for.
  answerSlowly("http://cdn.example/new.png");
  load();
  EXPECT_THAT(happened(), ElementsAre(getAd));
  advance(3.1);
  EXPECT_THAT(happened(), ElementsAre("GET http://cdn.example/new.png", getImpression, "didLoad"));
  answerSlowly("http://cdn.example/old.png");
  advance(1);
  EXPECT_THAT(happened(), ElementsAre(getAd)) << "the next one is asked for";
  // The answer of a network that was away is not waited for.
  answer(imageAnswer());
  advance(1.1);
  platform_.network->setReachable(false);
  platform_.network->setReachable(true);
  advance(0.5);
  EXPECT_EQ(happened(), shownPicture);
  platform_.network->setReachable(false);
  advance(5);
  EXPECT_THAT(happened(), IsEmpty()) << "the old answer is nobody's";
}

// Also in the manager's later answers, for a refresh keeps the manager.
TEST_F(AdViewTest, ATapOpensTheClickThroughOfTheAdThatIsShown) {
  const auto answerOf = [](const std::string& type, const std::string& click) {
    return R"({"Ad":[{"AdType":")" + type + R"(","FileUrl":"http://cdn.example/a.png")" + click +
           "}]}";
  };
  const std::tuple<std::string, MobileAdSubTypes, std::string> refreshes[] = {
      {answerOf("image/png", R"(,"ClkUrl":"http://second.example/")"), MobileAdSubTypes::image,
       "http://second.example/"},
      {answerOf("redirect", R"(,"ClkUrl":"http://third.example/")"),
       MobileAdSubTypes::redirectImageBanner, "http://third.example/"},
      {answerOf("image/png", ""), MobileAdSubTypes::image, ""}};
  slot_->bannerRefreshInterval = 30;
  showBanner(imageAnswer());
  auto& opened = platform_.application->openedUrls;
  deliverTap(*window_, {10, 10});
  EXPECT_THAT(opened, ElementsAre(Url::parse("http://click.example/")));
  for (const auto& [body, subType, click] : refreshes) {
    SCOPED_TRACE(click);
    opened.clear();
    answer(body);
    advance(30);
    settle();
    EXPECT_EQ(happened().back(), "didLoad");
    EXPECT_EQ(banner_->mobileAdSubTypes(), subType);
    deliverTap(*window_, {10, 10});
    EXPECT_EQ(happened(), click.empty() ? Lines{} : Lines{"willLeaveApplication"});
    EXPECT_EQ(opened.empty() ? "" : opened.front().text(), click);
  }
}

TEST_F(AdViewTest, ABannerBesideTheOriginCropsFromThereQuirk) {
  // The picture's view stands at the banner's own origin, so its crop begins at zero; a view that
  // stands elsewhere crops from there.
  const auto picture = XMRAIDBannerView::create(runtime_.environment(), {600, 90, 320, 50},
                                                std::make_shared<XMRAIDBannerViewDelegate>());
  picture->loadImageWithURL(Url::parse("http://cdn.example/a.png"), {});
  settle();
  EXPECT_EQ(picture->image().width(), 40);
  EXPECT_EQ(picture->image().height(), 10);
}

TEST_F(AdViewTest, AnUndecodablePictureFailsAndLoadsQuirk) {
  makeBanner();
  platform_.http->answerWith("http://cdn.example/bad.png", "image/png", "not a picture");
  EXPECT_THAT(
      loaded(imageAnswer("http://cdn.example/bad.png")),
      ElementsAre(getAd, "GET http://cdn.example/bad.png", getImpression,
                  "didFail 1006 The image could not be initialized from the specified data.",
                  "didLoad"));
}

TEST_F(AdViewTest, RedirectAnswersAreFollowedWithinABoundForEachRequest) {
  slot_->bannerRefreshInterval = 30;
  showBanner(imageAnswer());
  const std::string again = R"({"Ad":[{"AdType":"redirect","FileUrl":"http://r.example/"}]})";
  platform_.http->answer("http://r.example/", {.body = again});
  answer(again);
  for (int refresh = 0; refresh < 2; ++refresh) {
    advance(30);
    const auto lines = happened();
    EXPECT_EQ(lines.size(), 12U);
    EXPECT_EQ(lines.back(), "didFail -1007 Too many answers in a row were redirects.");
  }
}

// Quirk: nobody hears of it; what stands there stays, and the next refresh asks again.
TEST_F(AdViewTest, AnAnswerToARedirectThatIsNeitherPictureNorTextIsPassedOverQuirk) {
  slot_->bannerRefreshInterval = 30;
  showBanner(imageAnswer());
  platform_.http->answerWith("http://r.example/", "application/pdf", "%PDF");
  answer(R"({"Ad":[{"AdType":"redirect","FileUrl":"http://r.example/"}]})");
  for (int refresh = 0; refresh < 2; ++refresh) {
    advance(30);
    EXPECT_THAT(happened(), ElementsAre(getAd, "GET http://r.example/")) << refresh;
    EXPECT_EQ(banner_->subviews().size(), 1U);
  }
}

TEST_F(AdViewTest, APageThatCannotBeLoadedOrDiesIsAFailure) {
  showBanner(htmlAnswer());
  platform_.webViews->last()->terminateProcess();
  EXPECT_THAT(happened(), ElementsAre("didFail 1101 The page's process has ended."));
  EXPECT_EQ(banner_->subviews().size(), 1U);
  platform_.webViews->holdLoads = true;
  EXPECT_THAT(loaded(htmlAnswer()), ElementsAre(getAd));
  platform_.webViews->last()->failLoad(makeError(TransportError::cannotConnect, "No answer."));
  settle();
  EXPECT_THAT(happened(), ElementsAre("didFail -1004 No answer.")) << "neither shown nor counted";
}

TEST_F(AdViewTest, LeavingTheScreenReleasesEverything) {
  showBanner(htmlAnswer());
  banner_->removeFromSuperview();
  EXPECT_TRUE(banner_->subviews().empty());
  EXPECT_EQ(platform_.webViews->last(), nullptr);
  EXPECT_EQ(platform_.runLoop->activeTimers(), 0U);
  platform_.network->setReachable(false);
  platform_.network->setReachable(true);
  banner_->releaseMemory();
  banner_->refreshAd();
  advance(500);
  EXPECT_THAT(happened(), IsEmpty());
}

TEST_F(AdViewTest, AHostMayDropTheViewInsideAnyCall) {
  onCallback_ = [this](const std::string&) { drop(); };
  for (const auto& body : {imageAnswer(), htmlAnswer(), std::string{noAdAnswer}}) {
    SCOPED_TRACE(body);
    makeBanner();
    loaded(body);
    advance(300);
    EXPECT_EQ(banner_, nullptr) << "no call came";
    EXPECT_EQ(platform_.runLoop->activeTimers(), 0U);
  }
  onCallback_ = {};
  showBanner(imageAnswer());
  advance(1.1);
  platform_.network->setReachable(false);
  banner_->refreshAd();  // finds the timer ended
  onCallback_ = [this](const std::string&) { drop(); };
  banner_->refreshAd();
  settle();
  EXPECT_EQ(banner_, nullptr) << "in a failure that its own call causes";
  EXPECT_EQ(platform_.runLoop->activeTimers(), 0U);
}

TEST_F(AdViewTest, MemoryWarningReleasesFirstAndTellsThen) {
  showBanner(imageAnswer());
  onCallback_ = [&](const std::string&) { EXPECT_TRUE(banner_->subviews().empty()); };
  post(notifications::didReceiveMemoryWarning);
  EXPECT_THAT(happened(), ElementsAre("didDismissOnMemoryWarning"));
}

TEST_F(AdViewTest, BackgroundReleasesAndForegroundLoadsAnew) {
  showBanner(imageAnswer());
  post(notifications::willEnterForeground);
  EXPECT_THAT(happened(), IsEmpty()) << "it was not away";
  post(notifications::screenLocked);
  EXPECT_FALSE(banner_->subviews().empty()) << "a lock alone takes no banner away";
  post(notifications::didEnterBackground);
  EXPECT_TRUE(banner_->subviews().empty());
  advance(300);
  EXPECT_THAT(happened(), IsEmpty());
  post(notifications::willEnterForeground);
  EXPECT_EQ(happened(), shownPicture);
}

TEST_F(AdViewTest, AViewWithoutAHostHasNobodyToTellAndFailsNothing) {
  EXPECT_EQ(XAdView::corvaneTAVOSDKVersion(), "Ver 2.2.2");
  const auto view = XAdView::create({0, 0, 1, 1});
  EXPECT_EQ(view->adManager(), nullptr);
  view->setBackgroundColor(colors::black);
  view->loadWithDomainName("d", "p", "a");
  EXPECT_NE(view->adManager(), nullptr);
  EXPECT_EQ(view->userColor, colors::black);
  settle();
  view->setFrame({5, 5, 2, 2});
  view->closeControlEvent();
  view->releaseMemory();
  EXPECT_EQ(view->adManager(), nullptr);
  EXPECT_EQ(view->defaultFrame(), (Rect{0, 0, 1, 1})) << "as it was made";
}

class AdViewClickTest : public AdViewTest {
 protected:
  AdViewClickTest() {
    makeBanner();
    slot_->shouldOpenClickThroughURLInAppBrowser = true;
    platform_.application->openableSchemes.insert("tel");
    platform_.http->answerWith("http://click.example/", "text/html", "<p></p>");
  }
  void open(void (XAdView::*operation)(const Url&), const char* url) {
    ((*banner_).*operation)(Url::fromText(url));
    settle();
  }
};

TEST_F(AdViewClickTest, TheHostIsAskedAndObeyed) {
  open(&XAdView::openDiallerWithUrl, "tel:1");
  EXPECT_THAT(happened(), ElementsAre("shouldHandle? 1", "willLeaveApplication"));
  mayClick_ = false;
  open(&XAdView::openDiallerWithUrl, "tel:2");
  banner_->delegate.set(nullptr);
  open(&XAdView::openDiallerWithUrl, "tel:3");
  EXPECT_THAT(platform_.application->openedUrls,
              ElementsAre(Url::parse("tel:1"), Url::parse("tel:3")))
      << "a host without the question lets it go on";
}

TEST_F(AdViewClickTest, TheBrowserOpensAndClosesAboveTheBanner) {
  open(&XAdView::openUrlInBrowser, "http://click.example/");
  EXPECT_THAT(happened(), ElementsAre("GET http://click.example/", "willOpenBrowser"));
  EXPECT_TRUE(banner_->appBrowserOpen());
  auto* browser = dynamic_cast<XInAppBrowser*>(root_->presentedViewController());
  ASSERT_NE(browser, nullptr);
  banner_->setHidden(true);
  browser->closeButtonItemClicked();
  EXPECT_THAT(happened(), ElementsAre("willCloseBrowser"));
  EXPECT_FALSE(banner_->isHidden());
  EXPECT_FALSE(banner_->appBrowserOpen());
}

TEST_F(AdViewClickTest, TheBrowserGoesWithTheAdThatOpenedIt) {
  for (const bool hasSheet : {false, true}) {
    SCOPED_TRACE(hasSheet);
    open(&XAdView::openUrlInBrowser, "http://click.example/");
    ViewController* const browser = root_->presentedViewController();
    ASSERT_NE(browser, nullptr);
    const std::weak_ptr<ViewController> watched = browser->weak_from_this();
    if (hasSheet) {
      browser->presentViewController(std::make_shared<ViewController>(), Animated::no);
    }
    banner_->releaseMemory();
    EXPECT_EQ(root_->presentedViewController(), nullptr);
    settle();
    EXPECT_TRUE(watched.expired()) << "its page does not live on";
  }
}

TEST_F(AdViewClickTest, AHostMayDropTheViewInsideEveryCall) {
  onCallback_ = [this](const std::string&) { drop(); };
  const std::pair<void (XAdView::*)(const Url&), const char*> clicks[] = {
      {&XAdView::openDiallerWithUrl, "tel:1"},
      {&XAdView::sendSMSWithUrl, "sms:1"},
      {&XAdView::sendEmailWithUrl, "mailto:a"},
      {&XAdView::openAppStoreWithURL, "http://store.example/"},
      {&XAdView::openUrlInBrowser, "http://click.example/"}};
  for (const auto& [operation, url] : clicks) {
    makeBanner();
    open(operation, url);
    EXPECT_EQ(banner_, nullptr) << url;
  }
}

}  // namespace
}  // namespace tavo::test
