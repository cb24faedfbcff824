#include "Unit/ClickActionsFixture.h"

namespace tavo::test {
namespace {

constexpr const char* clickUrl = "http://click.example/";

class WebClickThroughTest : public ClickActionsTest {
 protected:
  WebClickThroughTest() {
    view_.slot->shouldOpenClickThroughURLInAppBrowser = true;
    platform_.http->answerWith(clickUrl, "text/html", "<p>a page</p>");
  }

  void click(const char* url = clickUrl) { actions_->openUrlInBrowser(Url::fromText(url)); }
  void leadTo(const std::string& url) {
    platform_.http->forget(clickUrl);
    platform_.http->answer(clickUrl, {.status = 302, .headers = {{"Location", url}}});
    platform_.http->answerWith(url, "text/html", "<p>the store</p>");
  }
  void close() {
    if (actions_->appBrowser()) actions_->appBrowser()->closeButtonItemClicked();
    settle();
    happened();
  }
};

TEST_F(WebClickThroughTest, OpensOutsideWhenTheSlotSaysSo) {
  view_.slot->shouldOpenClickThroughURLInAppBrowser = false;
  click();
  EXPECT_THAT(opened(), ElementsAre(clickUrl));
  EXPECT_THAT(happened(), ElementsAre("willLeaveApplication"));
  click("unknown:page");
  EXPECT_THAT(opened(), SizeIs(1));
  EXPECT_THAT(happened(), IsEmpty());
  EXPECT_THAT(platform_.http->requests(), IsEmpty());
  EXPECT_FALSE(actions_->appBrowserOpen());
}

TEST_F(WebClickThroughTest, ResolvesOnceAndShowsThePageInside) {
  platform_.application->openableSchemes = {};  // no other program is needed
  click();
  EXPECT_EQ(presenters(), "") << "nothing waits, nothing is shown before the way is known";
  settle();
  EXPECT_THAT(happened(), ElementsAre("willOpenInInAppBrowser"));
  EXPECT_THAT(platform_.http->urls(), ElementsAre(clickUrl));
  EXPECT_EQ(presenters(), "root");
  EXPECT_TRUE(actions_->appBrowserOpen());
  EXPECT_EQ(platform_.webViews->last()->url().text(), clickUrl);
  actions_->appBrowser()->closeButtonItemClicked();
  EXPECT_THAT(happened(), ElementsAre("appBrowserClosed"));
  EXPECT_FALSE(actions_->appBrowserOpen());
  EXPECT_EQ(actions_->appBrowser(), nullptr);
  EXPECT_EQ(presenters(), "");
}

TEST_F(WebClickThroughTest, AWayThatFailsStillShowsThePage) {
  platform_.http->forget(clickUrl);
  click();
  settle();
  EXPECT_THAT(happened(), ElementsAre("willOpenInInAppBrowser"));
  close();
  platform_.http->answer(clickUrl, {.neverAnswers = true});
  click();
  platform_.runLoop->advance(runtime_.limits().clickThroughTimeout - Seconds{1});
  EXPECT_EQ(presenters(), "");
  platform_.runLoop->advance(Seconds{2});
  EXPECT_EQ(presenters(), "root");
}

TEST_F(WebClickThroughTest, WhoPresentsFollowsStateAndKind) {
  using enum MRAIDState;
  using enum MobileAdSubTypes;
  constexpr auto inlined = PlacementType::inlined;
  constexpr auto interstitial = PlacementType::interstitial;
  const std::tuple<MRAIDState, PlacementType, MobileAdSubTypes, const char*> rows[] = {
      {normal, inlined, richMediaBanner, "root"},
      {normal, inlined, image, "current"},
      {loading, inlined, redirectImageBanner, "current"},
      {normal, inlined, redirectHtmlBanner, "root"},
      {resized, inlined, richMediaBanner, "root"},
      {resized, interstitial, richMediaBanner, "root"},
      {expanded, inlined, image, "expanded"},
      {normal, interstitial, richMediaInterstitial, "current"},
      {normal, interstitial, redirectInterstitial, "current"},
      {normal, interstitial, richMediaBanner, "current"}};
  for (const auto& [state, placement, subType, presenter] : rows) {
    view_.mraidState = state;
    view_.placement = placement;
    view_.subType = subType;
    click();
    settle();
    EXPECT_EQ(presenters(), presenter)
        << static_cast<int>(state) << " " << static_cast<int>(subType);
    close();
  }
}

TEST_F(WebClickThroughTest, AStorePageAtTheEndOpensTheStoreSheet) {
  leadTo("http://STORE.example/app/ID42?mt=8");
  click();
  settle();
  EXPECT_EQ(presenters(), "");
  EXPECT_THAT(platform_.log->messages(), Contains("AppId: 42"));
  platform_.runLoop->advance(Seconds{0.49});
  EXPECT_EQ(presenters(), "");
  platform_.runLoop->advance(Seconds{0.02});
  EXPECT_EQ(presenters(), "root");
  EXPECT_THAT(platform_.composers->products,
              ElementsAre(StoreProduct{42, Url::fromText("http://store.example/id42")}));
  platform_.composers->storeFinished();
  EXPECT_EQ(presenters(), "");
  EXPECT_THAT(happened(), IsEmpty());
}

TEST_F(WebClickThroughTest, OtherwiseAStorePageOpensInTheBrowser) {
  leadTo("http://shop.example/app/42");
  click();
  settle();
  EXPECT_THAT(platform_.log->messages(),
              Contains("TAVOSDK: shop.example error: couldn't locate id."));
  EXPECT_EQ(presenters(), "root");
  close();
  leadTo("http://shop.example/id42");
  platform_.device->version = "5.1";
  click();
  settle();
  EXPECT_TRUE(actions_->appBrowserOpen());
  EXPECT_THAT(platform_.composers->products, IsEmpty());
}

TEST_F(WebClickThroughTest, AUrlThatTheSystemDoesNotKnowIsTriedAsAWebPage) {
  click("click.example/page");
  settle();
  EXPECT_THAT(platform_.log->messages(), Contains("Can Open URL: http://click.example/page, 1"));
  EXPECT_EQ(platform_.webViews->last()->url().text(), "http://click.example/page");
}

TEST_F(WebClickThroughTest, ABrowserThatGoesWithWhatItStandsOnSaysSo) {
  view_.mraidState = MRAIDState::expanded;
  click();
  settle();
  happened();
  expanded_->dismissViewController(Animated::no);
  EXPECT_THAT(happened(), IsEmpty()) << "not while somebody else is taking it away";
  settle();
  EXPECT_THAT(happened(), ElementsAre("appBrowserClosed"));
}

TEST_F(WebClickThroughTest, QuirkOneVersionHidesTheStatusBar) {
  for (const char* version : {"7.1", "7.0"}) {
    platform_.device->version = version;
    click();
    settle();
    EXPECT_EQ(platform_.application->statusBarHidden, std::string{version} == "7.0");
    close();
  }
}

TEST_F(WebClickThroughTest, ASecondClickTakesThePlaceOfTheFirst) {
  platform_.http->answerWith("http://other.example/", "text/html", "<p></p>");
  click();
  click("http://other.example/");
  settle();
  EXPECT_EQ(platform_.webViews->last()->url().text(), "http://other.example/");
  EXPECT_THAT(happened(), ElementsAre("willOpenInInAppBrowser"));
}

}  // namespace
}  // namespace tavo::test
