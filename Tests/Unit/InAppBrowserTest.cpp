// The in-app browser: its toolbar, its history, its way out.

#include <tavo/XGlobalConfiguration.h>

#include "ClickThrough/AppStore.h"
#include "Scene/Window.h"
#include "Unit/TransportFixture.h"
#include "UserInterface/WebView/InAppBrowser/XInAppBrowser.h"

namespace tavo::test {
namespace {

constexpr const char* pageUrl = "http://page.example/";

class InAppBrowserTest : public TransportTest {
 protected:
  InAppBrowserTest() {
    window_->setRootViewController(root_);
    AppStoreConfiguration::sharedInstance().hosts = {"store.example", "shop.example"};
    AppStoreConfiguration::sharedInstance().productPagePrefix = "http://store.example/id";
    for (const char* name : {"stop", "back", "forward", "reload", "action"}) {
      platform_.bundle->files["/bundle/browser" + std::string{name} + ".png"] = "image 88x88";
    }
    platform_.bundle->files["/bundle/mine.png"] = "image 20x10";
    settings_->barStyle = 1;
  }

  void open() {
    browser_ = XInAppBrowser::create(runtime_.environment(), events_);
    root_->presentViewController(browser_, Animated::no);
    browser_->setURL(Url::fromText(pageUrl));
    page_ = platform_.webViews->last();
    settle();
  }
  void settle() { platform_.runLoop->runPending(); }
  [[nodiscard]] Lines labels() const {
    Lines all;
    if (!browser_->toolbar()) return all;
    for (const auto& item : browser_->toolbar()->items()) all.push_back(item->accessibilityLabel());
    return all;
  }
  void press(const std::string& label) const {
    const auto items = browser_->toolbar()->items();
    for (const auto& item : items) {
      if (item->accessibilityLabel() == label) return item->press();
    }
    FAIL() << "no button " << label;
  }
  bool navigate(const char* url) const {
    return page_->navigate({Url::fromText(url), Url::fromText(url), NavigationType::linkClicked});
  }

  const std::shared_ptr<Window> window_ = std::make_shared<Window>(Rect{0, 0, 320, 480});
  const std::shared_ptr<ViewController> root_ = std::make_shared<ViewController>();
  const std::shared_ptr<XBrowserConfiguration> settings_ =
      XGlobalConfiguration::sharedInstance().browserConfiguration;
  Lines lines_;
  const std::shared_ptr<const XInAppBrowserDelegate> events_ =
      std::make_shared<XInAppBrowserDelegate>(XInAppBrowserDelegate{
          .XInAppBrowserClose = [this](XInAppBrowser&) { lines_.emplace_back("close"); },
          .XInAppBrowserWillLeaveApplication =
              [this](XInAppBrowser&) { lines_.emplace_back("willLeaveApplication"); },
          .XInAppBrowserDidFailLoadWithError =
              [this](XInAppBrowser&, const Error& error) {
                lines_.push_back("didFail " + std::to_string(error.code));
              }});
  std::shared_ptr<XInAppBrowser> browser_;
  std::shared_ptr<headless::HeadlessWebView> page_;
};

TEST_F(InAppBrowserTest, SettingsDecideWhichButtonsAreShown) {
  using Details = std::vector<XBrowserConfiguration::ToolbarDetail>;
  using Row = std::pair<Details, Lines>;
  const Lines standard{"Close", "Back", "Forward", "Reload"};
  const Row rows[] = {
      {{}, standard},
      {{{"Image", "mine", "4"}}, standard},
      {{{"Visibility", "YES", "1"}}, {"Close", "Forward", "Reload"}},
      {{{"Visibility", "NO", "1"}}, standard},
      {{{"Visibility", "NO", "1"}, {"Visibility", "YES", "1"}}, {"Close", "Forward", "Reload"}},
      {{{"Visibility", "YES", "0"},
        {"Visibility", "YES", "1"},
        {"Visibility", "YES", "2"},
        {"Visibility", "YES", "3"}},
       {}},
  };
  for (const auto& [details, shown] : rows) {
    settings_->toolbarDetails = details;
    open();
    EXPECT_EQ(labels(), shown);
    browser_->closeButtonItemClicked();
  }
}

TEST_F(InAppBrowserTest, QuirkTheActionButtonWaitsForAnEntryThatDoesNotHideIt) {
  settings_->hideToolbarButton(4, true);
  open();
  EXPECT_FALSE(browser_->canShowToolBarButton(4));
  browser_->closeButtonItemClicked();
  settings_->hideToolbarButton(4, false);
  open();
  EXPECT_TRUE(browser_->canShowToolBarButton(4));
  EXPECT_THAT(labels(), Contains("Open in browser"));
}

TEST_F(InAppBrowserTest, StandsAtTheTopOrAtTheBottomOrWithoutButtonsNowhere) {
  const std::tuple<unsigned, Rect, Rect, Rect> rows[] = {
      {0, {0, 0, 320, 44}, {0, 45, 320, 436}, {0, 0, 500, 44}},
      {1, {0, 436, 320, 44}, {0, 0, 320, 436}, {0, 256, 500, 44}},
      {9, {0, 436, 320, 44}, {0, 0, 320, 436}, {0, 256, 500, 44}}};
  for (const auto& [position, toolbar, page, toolbarLater] : rows) {
    settings_->toolbarPosition = position;
    open();
    EXPECT_EQ(browser_->toolbar()->frame(), toolbar);
    EXPECT_EQ(browser_->webView()->frame(), page);
    window_->setFrame({0, 0, 500, 300});
    EXPECT_EQ(browser_->toolbar()->frame(), toolbarLater);
    EXPECT_EQ(browser_->webView()->frame().width, 500);
    window_->setFrame({0, 0, 320, 480});
    browser_->closeButtonItemClicked();
  }
  lines_.clear();
  for (const unsigned button : {0U, 1U, 2U, 3U}) settings_->hideToolbarButton(button, true);
  open();
  EXPECT_EQ(browser_->toolbar(), nullptr);
  EXPECT_EQ(browser_->webView()->frame(), (Rect{0, 0, 320, 480}));
  EXPECT_TRUE(browser_->cancelOperation()) << "the keyboard still leads out";
  EXPECT_THAT(lines_, ElementsAre("close"));
}

TEST_F(InAppBrowserTest, HostsDressTheToolbar) {
  settings_->toolbarBGColor = Color{1, 1, 0, 1};
  settings_->toolbarBGImageName = "mine";
  settings_->setToolbarButton(3, "");
  settings_->setToolbarButton(3, "mine");
  settings_->setToolbarButton(0, "absent");
  open();
  const auto& bar = *browser_->toolbar();
  EXPECT_EQ(bar.backgroundColor(), (Color{1, 1, 0, 1}));
  EXPECT_EQ(bar.backgroundPattern().width(), 20);
  EXPECT_EQ(bar.barStyle(), 1);
  EXPECT_THAT(browser_->hasPublisherSetImage(3), SizeIs(1));
  EXPECT_EQ(bar.items().at(3)->image().width(), 20);
  EXPECT_EQ(bar.items().at(0)->image().width(), 88) << "an image that is not there is replaced";
}

TEST_F(InAppBrowserTest, TheBuiltInImagesAreSeenOnEveryBar) {
  for (const auto& [barStyle, shade] : {std::pair{0, 85}, std::pair{1, 255}, std::pair{2, 255}}) {
    settings_->barStyle = barStyle;
    open();
    EXPECT_EQ(browser_->toolbar()->items().at(0)->image().pixels().get()[0], shade);
    browser_->closeButtonItemClicked();
  }
}

TEST_F(InAppBrowserTest, LoadsPastTheCacheOnceItIsOnTheScreen) {
  const auto unseen = XInAppBrowser::create(runtime_.environment(), events_);
  unseen->setURL(Url::fromText(pageUrl));
  EXPECT_EQ(platform_.webViews->created, 0);
  open();
  EXPECT_EQ(page_->url().text(), pageUrl);
  EXPECT_EQ(page_->uncachedLoads, 1);
  EXPECT_TRUE(browser_->webView()->allowsInlineMediaPlayback);
  EXPECT_TRUE(browser_->webView()->mediaPlaybackRequiresUserAction);
}

TEST_F(InAppBrowserTest, HistoryDecidesAboutBackAndForward) {
  open();
  EXPECT_FALSE(browser_->backButton()->isEnabled());
  EXPECT_FALSE(browser_->forwardButton()->isEnabled());
  page_->pagesBehind = 1;
  page_->setResult("document.title", "A page");
  page_->loadUrl(Url::fromText("http://page.example/2"));
  settle();
  EXPECT_TRUE(browser_->backButton()->isEnabled());
  EXPECT_EQ(browser_->view()->accessibilityLabel(), "A page");
  press("Back");
  settle();
  EXPECT_FALSE(browser_->backButton()->isEnabled());
  EXPECT_TRUE(browser_->forwardButton()->isEnabled());
  press("Forward");
  press("Reload");
  EXPECT_EQ(page_->pagesBehind, 1);
  EXPECT_EQ(page_->reloads, 1);
  page_->pagesAhead = 1;
  page_->failLoad({"net", -1004, "no"});
  settle();
  EXPECT_TRUE(browser_->forwardButton()->isEnabled()) << "after a failed load too";
  EXPECT_THAT(lines_, ElementsAre("didFail -1004"));
}

TEST_F(InAppBrowserTest, ALoadThatStandsStillForTenSecondsFails) {
  platform_.webViews->holdLoads = true;
  open();
  platform_.runLoop->advance(Seconds{9});
  page_->progress = 0.5;
  platform_.runLoop->advance(Seconds{9});
  EXPECT_THAT(lines_, IsEmpty());
  platform_.runLoop->advance(Seconds{2});
  EXPECT_THAT(lines_, ElementsAre("didFail -1001"));
  platform_.runLoop->advance(Seconds{60});
  EXPECT_THAT(lines_, SizeIs(1));
  EXPECT_EQ(platform_.runLoop->activeTimers(), 0U);
}

TEST_F(InAppBrowserTest, ClosesThenTells) {
  open();
  bool presented = true;
  const auto events = std::make_shared<XInAppBrowserDelegate>(
      XInAppBrowserDelegate{.XInAppBrowserClose = [&](XInAppBrowser& browser) {
        presented = browser.presentingViewController() != nullptr;
        browser_.reset();  // the last one who holds it
      }});
  browser_->delegate.set(events);
  press("Close");
  EXPECT_FALSE(presented);
  EXPECT_EQ(browser_, nullptr);
  EXPECT_EQ(root_->presentedViewController(), nullptr);
}

TEST_F(InAppBrowserTest, TheActionButtonOpensThePageOutside) {
  settings_->hideToolbarButton(4, false);
  open();
  page_->loadUrl(Url::fromText("http://page.example/now"));
  settle();
  press("Open in browser");
  EXPECT_THAT(lines_, ElementsAre("willLeaveApplication"));
  EXPECT_THAT(platform_.application->openedUrls,
              ElementsAre(Url::fromText("http://page.example/now")));
  EXPECT_THAT(platform_.log->messages(), Contains("Webview URL: http://page.example/now"));
  EXPECT_NE(root_->presentedViewController(), nullptr);
}

TEST_F(InAppBrowserTest, WhatIsNoPageGoesToTheSystemWhenAPersonChoseIt) {
  open();
  EXPECT_FALSE(navigate("tel:1"));
  EXPECT_THAT(lines_, IsEmpty()) << "nobody here makes calls";
  platform_.application->openableSchemes = {"tel", "mailto", "market"};
  for (const char* url : {"tel:+41123", "mailto:a@b.example", "market:details"}) {
    const Url link = Url::fromText(url);
    EXPECT_FALSE(page_->navigate({link, link, NavigationType::other})) << "by itself";
    EXPECT_THAT(lines_, IsEmpty());
    EXPECT_FALSE(navigate(url));
    EXPECT_THAT(std::exchange(lines_, {}), ElementsAre("willLeaveApplication"));
    ASSERT_FALSE(platform_.application->openedUrls.empty());
    EXPECT_EQ(platform_.application->openedUrls.back(), link);
  }
  for (const char* url : {"https://a.example/", "about:blank", "data:text/html,x", "blob:x"}) {
    EXPECT_TRUE(navigate(url)) << url;
  }
}

TEST_F(InAppBrowserTest, AFailureIsAPageFromWhichReloadTriesAgain) {
  open();
  page_->failLoad(makeError(TransportError::cannotConnect, "No <b>answer</b>."));
  settle();
  EXPECT_THAT(page_->html(),
              AllOf(HasSubstr("<b>page.example</b>"), HasSubstr("No &lt;b&gt;answer&lt;/b&gt;."),
                    HasSubstr("href=\"http://page.example/\"")));
  page_->failLoad(makeError(TransportError::cannotConnect, "Again."));
  settle();
  EXPECT_THAT(lines_, ElementsAre("didFail -1004")) << "what tells of a failure does not fail";
  press("Reload");
  settle();
  EXPECT_EQ(page_->uncachedLoads, 2);
  EXPECT_EQ(page_->url().text(), pageUrl);
  page_->failLoad(makeError(TransportError::cancelled, "Left."));
  settle();
  EXPECT_EQ(page_->url().text(), pageUrl) << "nobody is told of what they did themselves";
}

TEST_F(InAppBrowserTest, AFileIsToldOfAndMayGoOutside) {
  open();
  for (const bool goes : {false, true}) {
    navigate("http://page.example/a.zip");
    page_->failLoad({std::string{webErrorDomain}, cannotShowUrlError, "A zip."});
    settle();
    EXPECT_EQ(page_->url().text(), pageUrl) << "the page stays";
    ASSERT_EQ(alerts_->shown.back().message, "A zip.");
    lines_.clear();
    alerts_->answers.back()(goes ? 1 : 0);
    EXPECT_EQ(lines_.size(), goes ? 1U : 0U);
  }
  EXPECT_THAT(platform_.application->openedUrls,
              ElementsAre(Url::parse("http://page.example/a.zip")));
}

TEST(PageSign, SaysWhosePageItIsAndWhetherOthersReadAlong) {
  struct Row {
    const char* page;
    const char* title;
    PageSign sign;
  };
  for (const Row& row : {Row{"https://bank.example/a", "", {"bank.example", true}},
                         Row{"HTTPS://bank.example/", "Bank", {"bank.example \u2013 Bank", true}},
                         Row{"http://page.example/",
                             "bank.example",
                             {"Not secure: page.example \u2013 bank.example", false}},
                         Row{"about:blank", "Title", {"Title", false}}, Row{"", "", {"", false}}}) {
    EXPECT_EQ(pageSign(Url::fromText(row.page), row.title), row.sign) << row.page;
  }
}

TEST_F(InAppBrowserTest, AStoreLinkOpensTheSheetWhichClosesTheBrowserToo) {
  open();
  EXPECT_TRUE(navigate("http://page.example/id123"));
  EXPECT_FALSE(navigate("http://www.STORE.example/app/id123?x"));
  EXPECT_EQ(browser_->presentedViewController(), nullptr);
  platform_.runLoop->advance(Seconds{0.5});
  EXPECT_EQ(browser_->presentedViewController(), platform_.composers->lastSheet().get());
  EXPECT_THAT(platform_.composers->products,
              ElementsAre(StoreProduct{123, Url::fromText("http://store.example/id123")}));
  platform_.composers->storeFinished();
  EXPECT_EQ(root_->presentedViewController(), nullptr);
  EXPECT_THAT(lines_, ElementsAre("close"));
  EXPECT_THAT(platform_.log->messages(), Contains("AppStore dismissed"));
}

TEST_F(InAppBrowserTest, AStoreLinkWithoutASheetStaysOutOfTheBrowser) {
  open();
  EXPECT_FALSE(navigate("http://store.example/app"));
  EXPECT_THAT(platform_.log->messages(),
              Contains("TAVOSDK: store.example error: couldn't locate id."));
  EXPECT_THAT(lines_, IsEmpty());
  platform_.device->version = "5.0";
  EXPECT_FALSE(navigate("http://store.example/id1"));
  EXPECT_THAT(lines_, ElementsAre("willLeaveApplication"));
  EXPECT_THAT(platform_.application->openedUrls,
              ElementsAre(Url::fromText("http://store.example/id1")));
  browser_->setURL(Url::fromText("http://store.example/"));  // refused: it never finishes
  platform_.runLoop->advance(Seconds{30});
  EXPECT_THAT(platform_.composers->products, IsEmpty());
  EXPECT_EQ(platform_.runLoop->activeTimers(), 0U);
}

}  // namespace
}  // namespace tavo::test
