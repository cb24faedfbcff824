#include <tavo/XAdView.h>

#include "Runtime/NotificationCenter.h"
#include "Unit/AdViewFixture.h"
#include "UserInterface/WebView/ExposableViews/MRAIDComplaint/XMRAIDBannerView.h"

namespace tavo::test {
namespace {

const std::string getAd = "GET http://ads.example/x/sdk/page/@Bottom1";
const std::string getPicture = "GET http://cdn.example/a.png";
const std::string getImpression = "GET http://track.example/i";

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
  answer(htmlAnswer());
  load();
  settle();
  EXPECT_THAT(happened(), ElementsAre(getAd, "shouldDisplay?", getImpression, "didLoad"));
  const auto page = platform_.webViews->last();
  ASSERT_TRUE(page);
  EXPECT_EQ(page->superview(), banner_.get());
  EXPECT_EQ(page->frame(), (Rect{0, 0, 320, 50}));
  EXPECT_THAT(page->html(), HasSubstr("<head><script src=\"file:///bundle/CorvaneTAVOSDKMRAID"));
  EXPECT_THAT(page->html(), HasSubstr("<b>ad</b></body></html>"));
  EXPECT_THAT(page->documentStartScripts(), ElementsAre("/* mraid */"));
}

TEST_F(AdViewTest, ASlotThatShowedHtmlBeforeStartsTheEngineBesideItsNextRequest) {
  makeBanner();
  answer(imageAnswer());
  load();
  settle();
  load();
  EXPECT_EQ(platform_.webViews->warmUps, 0) << "a slot of pictures needs no engine";
  answer(htmlAnswer());
  load();
  settle();
  EXPECT_EQ(platform_.webViews->warmUps, 0);
  load();
  EXPECT_EQ(platform_.webViews->warmUps, 1);
  banner_->loadWithDomainName("ads.example/x", "page", "Top1");
  EXPECT_EQ(platform_.webViews->warmUps, 1) << "another slot has shown nothing yet";
}

TEST_F(AdViewTest, AHostThatRefusesAPageHearsAFailureAndNoImpressionIsCounted) {
  makeBanner();
  mayRender_ = false;
  answer(htmlAnswer());
  load();
  settle();
  EXPECT_THAT(happened(), ElementsAre(getAd, "shouldDisplay?",
                                      "didFail 1007 Rendering of ad interrupted by publisher."));
  EXPECT_EQ(platform_.webViews->last()->superview(), nullptr);
}

TEST_F(AdViewTest, APageThatIsReleasedInsideTheQuestionNeitherShowsNorCounts) {
  makeBanner();
  onCallback_ = [this](const std::string&) { banner_->releaseMemory(); };
  answer(htmlAnswer());
  load();
  settle();
  EXPECT_THAT(happened(), ElementsAre(getAd, "shouldDisplay?"));
  EXPECT_THAT(banner_->subviews(), IsEmpty());
}

TEST_F(AdViewTest, AnswersWithoutAnAdEndInOneFailure) {
  struct Case {
    const char* name;
    std::string body;
    const char* failure;
  };
  const Case cases[] = {
      {"no ad", noAdAnswer, "didFail 1002 No ads available from TAVO server."},
      {"not JSON", "<h1>500</h1>", "didFail 1002 No ads available from TAVO server."},
      {"a wrong type", R"({"Ad":7})", "didFail 1002 No ads available from TAVO server."},
      {"filler picture", htmlAnswer("<a href=''><img src='/default/empty.gif'></a>"),
       "didFail 1002 empty.gif file response received."},
  };
  makeBanner();
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    answer(test.body);
    load();
    settle();
    EXPECT_THAT(happened(), ElementsAre(getAd, test.failure));
  }
}

TEST_F(AdViewTest, ABiddingSlotAsksAtItsOwnAddressAndMayGetAnEmptyAd) {
  slot_->RTBRequired = true;
  makeBanner();
  platform_.http->answer("http://ads.example/x/sdkl/page/@Bottom1", {.body = noAdAnswer});
  load();
  settle();
  EXPECT_THAT(happened(), ElementsAre("GET http://ads.example/x/sdkl/page/@Bottom1",
                                      "didFail 1002 No Ad recieved from server"));
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
}

TEST_F(AdViewTest, AnAnswerWithoutABodyIsAFailureWithoutAnError) {
  makeBanner();
  platform_.http->answer(adUrl, {.status = 204});
  load();
  settle();
  EXPECT_THAT(happened(), ElementsAre(getAd, "didFail none"));
}

TEST_F(AdViewTest, OfflineTheFailureArrivesInsideTheCall) {
  makeBanner();
  platform_.network->setReachable(false);
  load();
  EXPECT_THAT(happened(), ElementsAre("didFail 1003 Network connectivity not available"));
}

TEST_F(AdViewTest, TheBannerRefreshesOnItsTimer) {
  slot_->bannerRefreshInterval = 30;
  makeBanner();
  answer(htmlAnswer());
  load();
  settle();
  happened();
  advance(29.9);
  EXPECT_THAT(happened(), ElementsAre());
  advance(0.1);
  EXPECT_THAT(happened(), ElementsAre(getAd, "shouldDisplay?", getImpression, "didLoad"));
  advance(30);
  EXPECT_THAT(happened(), ElementsAre(getAd, "shouldDisplay?", getImpression, "didLoad"));
  EXPECT_EQ(banner_->subviews().size(), 2U);  // the agent and its page, of the newest ad only
}

TEST_F(AdViewTest, AHiddenBannerStopsAndLoadsAtOnceWhenItIsSeenAgain) {
  slot_->bannerRefreshInterval = 30;
  makeBanner();
  answer(imageAnswer());
  load();
  settle();
  happened();
  banner_->setHidden(true);
  advance(60);  // ticks that ask for nothing
  EXPECT_THAT(happened(), ElementsAre());
  banner_->refreshAd();
  EXPECT_FALSE(banner_->isRefreshTimerRunning());
  banner_->setHidden(false);
  banner_->refreshAd();
  EXPECT_THAT(happened(), ElementsAre(getAd));
  EXPECT_TRUE(banner_->isRefreshTimerRunning());
}

TEST_F(AdViewTest, ABannerOffTheScreenLoadsItsFirstAdOnly) {
  makeBanner();
  window_->setHidden(true);
  answer(imageAnswer());
  load();
  settle();
  EXPECT_THAT(happened(), ElementsAre(getAd, getPicture, getImpression, "didLoad"));
  EXPECT_FALSE(banner_->isRefreshTimerRunning());
}

TEST_F(AdViewTest, AnAdThatCameBeforeItsWindowRefreshesOnceTheWindowIsSeen) {
  makeBanner();
  answer(imageAnswer());
  root_->view()->setHidden(true);
  load();
  settle();
  EXPECT_FALSE(banner_->isRefreshTimerRunning());
  happened();
  root_->view()->setHidden(false);
  banner_->didAppearOnScreen();
  EXPECT_TRUE(banner_->isRefreshTimerRunning());
  EXPECT_THAT(happened(), IsEmpty()) << "the ad it has is new";
  banner_->didAppearOnScreen();
  advance(120);
  EXPECT_THAT(happened(), Contains(std::string{"GET "} + adUrl).Times(1));
}

TEST_F(AdViewTest, IntervalsThatStopAndIntervalsThatNeverStart) {
  makeBanner();
  answer(imageAnswer());
  load();
  settle();
  ASSERT_TRUE(banner_->isRefreshTimerRunning());
  slot_->bannerRefreshInterval = -1;
  banner_->refreshAd();
  EXPECT_TRUE(banner_->isRefreshTimerRunning()) << "a negative interval stops nothing";
  slot_->bannerRefreshInterval = 0;
  banner_->refreshAd();
  EXPECT_FALSE(banner_->isRefreshTimerRunning());
  slot_->bannerRefreshInterval = -1;
  banner_->refreshAd();
  EXPECT_FALSE(banner_->isRefreshTimerRunning()) << "and starts nothing";
}

TEST_F(AdViewTest, ALoadThatFailsAtOnceDoesNotArmTheTimerAgain) {
  slot_->bannerRefreshInterval = 30;
  makeBanner();
  answer(imageAnswer());
  load();
  settle();
  happened();
  banner_->setHidden(true);
  banner_->refreshAd();
  platform_.network->setReachable(false);
  advance(2);
  banner_->setHidden(false);
  banner_->refreshAd();  // arms the timer, whose first firing loads and fails inside
  EXPECT_THAT(happened(), ElementsAre("didFail 1003 Network connectivity not available"));
  EXPECT_TRUE(banner_->isRefreshTimerRunning());
}

TEST_F(AdViewTest, AutomaticRequestsKeepTheirDistance) {
  makeBanner();
  answer(imageAnswer());
  load();
  settle();
  happened();
  const auto hideAndShow = [this] {
    banner_->setHidden(true);
    banner_->refreshAd();
    banner_->setHidden(false);
    banner_->refreshAd();
  };
  hideAndShow();
  EXPECT_THAT(happened(), ElementsAre()) << "the last request was in this second";
  advance(1.1);
  hideAndShow();
  EXPECT_THAT(happened(), ElementsAre(getAd));
  load();
  EXPECT_THAT(happened(), ElementsAre(getAd)) << "what the host asks for is never held back";
}

TEST_F(AdViewTest, ConnectivityThatReturnsReloadsAtOnce) {
  makeBanner();
  answer(imageAnswer());
  load();
  settle();
  happened();
  advance(1.1);
  const auto flap = [this] {
    platform_.network->setReachable(false);
    EXPECT_FALSE(banner_->isRefreshTimerRunning());
    platform_.network->setReachable(true);
    settle();
  };
  flap();
  EXPECT_THAT(happened(), ElementsAre(getAd, getPicture, getImpression, "didLoad"));
  for (int flaps = 0; flaps < 5; ++flaps) flap(), advance(0.05);
  EXPECT_THAT(happened(), IsEmpty()) << "the last request was in this second";
  advance(1);
  EXPECT_THAT(happened(), ElementsAre(getAd, getPicture, getImpression, "didLoad"));
}

TEST_F(AdViewTest, ASlotWaitsForOneAnswerAtATime) {
  slot_->bannerRefreshInterval = 2;
  makeBanner();
  answer(imageAnswer());
  load();
  settle();
  happened();
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
  EXPECT_THAT(happened(), ElementsAre(getAd, getPicture, getImpression, "didLoad"));
  platform_.network->setReachable(false);
  advance(5);
  EXPECT_THAT(happened(), IsEmpty()) << "the old answer is nobody's";
}

TEST_F(AdViewTest, ATapOpensTheClickThroughOutsideTheApplication) {
  makeBanner();
  answer(imageAnswer());
  load();
  settle();
  happened();
  deliverTap(*window_, {10, 10});
  EXPECT_THAT(happened(), ElementsAre("willLeaveApplication"));
  EXPECT_THAT(platform_.application->openedUrls, ElementsAre(Url::parse("http://click.example/")));
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
  answer(imageAnswer("http://cdn.example/bad.png"));
  platform_.http->answerWith("http://cdn.example/bad.png", "image/png", "not a picture");
  load();
  settle();
  EXPECT_THAT(
      happened(),
      ElementsAre(getAd, "GET http://cdn.example/bad.png", getImpression,
                  "didFail 1006 The image could not be initialized from the specified data.",
                  "didLoad"));
}

TEST_F(AdViewTest, RedirectAnswersAreFollowedWithinABound) {
  makeBanner();
  const std::string again = R"({"Ad":[{"AdType":"redirect","FileUrl":"http://r.example/"}]})";
  answer(again);
  platform_.http->answer("http://r.example/", {.body = again});
  load();
  settle();
  const auto lines = happened();
  ASSERT_EQ(lines.size(), 12U);
  EXPECT_EQ(lines.back(), "didFail -1007 Too many answers in a row were redirects.");
}

TEST_F(AdViewTest, ARedirectToAPictureShowsItUnderTheFirstAnswersClick) {
  makeBanner();
  answer(R"({"Ad":[{"AdType":"redirect","FileUrl":"http://cdn.example/a.png",)"
         R"("ClkUrl":"http://click.example/"}]})");
  load();
  settle();
  EXPECT_THAT(happened(), ElementsAre(getAd, getPicture, getPicture, "didLoad"));
  EXPECT_EQ(banner_->mobileAdSubTypes(), MobileAdSubTypes::redirectImageBanner);
  deliverTap(*window_, {10, 10});
  EXPECT_THAT(happened(), ElementsAre("willLeaveApplication"));
}

TEST_F(AdViewTest, APageWhoseProcessDiesIsAFailure) {
  makeBanner();
  answer(htmlAnswer());
  load();
  settle();
  happened();
  platform_.webViews->last()->terminateProcess();
  EXPECT_THAT(happened(), ElementsAre("didFail 1101 The page's process has ended."));
  EXPECT_EQ(banner_->subviews().size(), 1U);
}

TEST_F(AdViewTest, LeavingTheScreenReleasesEverything) {
  makeBanner();
  answer(htmlAnswer());
  load();
  settle();
  happened();
  banner_->removeFromSuperview();
  EXPECT_TRUE(banner_->subviews().empty());
  EXPECT_EQ(platform_.webViews->last(), nullptr);
  EXPECT_EQ(platform_.runLoop->activeTimers(), 0U);
  platform_.network->setReachable(false);
  platform_.network->setReachable(true);
  banner_->releaseMemory();
  banner_->refreshAd();
  advance(500);
  EXPECT_THAT(happened(), ElementsAre());
}

TEST_F(AdViewTest, AHostMayDropTheViewInsideAnyCall) {
  onCallback_ = [this](const std::string&) {
    if (banner_) banner_->removeFromSuperview();
    banner_.reset();
  };
  for (const auto& body : {imageAnswer(), htmlAnswer(), std::string{noAdAnswer}}) {
    SCOPED_TRACE(body);
    answer(body);
    makeBanner();
    load();
    settle();
    advance(300);
    EXPECT_EQ(banner_, nullptr) << "no call came";
    EXPECT_EQ(platform_.runLoop->activeTimers(), 0U);
  }
}

TEST_F(AdViewTest, AHostMayDropTheViewInsideTheFailureThatItsOwnCallCauses) {
  makeBanner();
  answer(imageAnswer());
  load();
  settle();
  advance(1.1);
  platform_.network->setReachable(false);
  banner_->refreshAd();  // finds the timer ended
  onCallback_ = [this](const std::string&) { banner_->removeFromSuperview(), banner_.reset(); };
  banner_->refreshAd();
  EXPECT_EQ(banner_, nullptr);
  EXPECT_EQ(platform_.runLoop->activeTimers(), 0U);
}

TEST_F(AdViewTest, MemoryWarningReleasesFirstAndTellsThen) {
  makeBanner();
  answer(imageAnswer());
  load();
  settle();
  happened();
  onCallback_ = [&](const std::string&) { EXPECT_TRUE(banner_->subviews().empty()); };
  runtime_.notifications().post(
      {.name = std::string{notifications::didReceiveMemoryWarning}, .userInfo = {}});
  EXPECT_THAT(happened(), ElementsAre("didDismissOnMemoryWarning"));
}

TEST_F(AdViewTest, BackgroundReleasesAndForegroundLoadsAnew) {
  makeBanner();
  answer(imageAnswer());
  load();
  settle();
  happened();
  const auto post = [&](std::string_view name) {
    runtime_.notifications().post({.name = std::string{name}, .userInfo = {}});
    settle();
  };
  post(notifications::willEnterForeground);  // it was not away: nothing
  EXPECT_THAT(happened(), ElementsAre());
  post(notifications::didEnterBackground);
  EXPECT_TRUE(banner_->subviews().empty());
  advance(300);
  EXPECT_THAT(happened(), ElementsAre());
  post(notifications::willEnterForeground);
  EXPECT_THAT(happened(), ElementsAre(getAd, getPicture, getImpression, "didLoad"));
}

TEST_F(AdViewTest, VersionAndDefaults) {
  EXPECT_EQ(XAdView::corvaneTAVOSDKVersion(), "Ver 2.2.2");
  const auto view = XAdView::create({0, 0, 1, 1});
  EXPECT_EQ(view->slotConfiguration()->bannerRefreshInterval, 120.0F);
  EXPECT_EQ(view->slotConfiguration()->canMediate, -1);
  EXPECT_EQ(view->defaultFrame(), (Rect{0, 0, 1, 1}));
  EXPECT_FALSE(view->isVastInterestitial || view->statusBarHidden());
  EXPECT_EQ(view->adManager(), nullptr);
  view->setBackgroundColor(colors::black);
  view->loadWithDomainName("d", "p", "a");  // without a host: nothing to tell, nothing fails
  EXPECT_NE(view->adManager(), nullptr);
  EXPECT_EQ(view->userColor, colors::black);
  settle();
  view->setFrame({5, 5, 2, 2});
  view->closeControlEvent();
  view->releaseMemory();
  EXPECT_EQ(view->adManager(), nullptr);
  EXPECT_EQ(view->defaultFrame(), (Rect{0, 0, 1, 1})) << "as it was made";
}

}  // namespace
}  // namespace tavo::test
