// Clicks from the ad view's face: what the host hears, and what it may do meanwhile.

#include "Unit/AdViewFixture.h"
#include "UserInterface/WebView/InAppBrowser/XInAppBrowser.h"

namespace tavo::test {
namespace {

class AdViewClickTest : public AdViewTest {
 protected:
  AdViewClickTest() {
    makeBanner();
    banner_->delegate.set(clickEvents_);
    platform_.application->openableSchemes.insert("tel");
    platform_.http->answerWith("http://click.example/", "text/html", "<p></p>");
  }

  void hear(const std::string& line) {
    heard_.push_back(line);
    if (onHeard_) onHeard_();
  }

  std::vector<std::string> heard_;
  std::function<void()> onHeard_;
  bool allows_ = true;
  const std::shared_ptr<const XAdViewDelegate> clickEvents_ =
      std::make_shared<XAdViewDelegate>(XAdViewDelegate{
          .xAdViewWillOpenInInAppBrowser = [this](XAdView&) { hear("willOpenInInAppBrowser"); },
          .xAdViewWillCloseInAppBrowser = [this](XAdView&) { hear("willCloseInAppBrowser"); },
          .xAdViewWillLeaveApplication = [this](XAdView&) { hear("willLeaveApplication"); },
          .xAdViewShouldHandleClickToAction =
              [this](XAdView&, ClickToAction action, const ClickToActionParameters&) {
                hear("asked " + std::to_string(static_cast<int>(action)));
                return allows_;
              }});
};

TEST_F(AdViewClickTest, TheHostIsAskedAndObeyed) {
  banner_->openDiallerWithUrl(Url::fromText("tel:1"));
  EXPECT_THAT(heard_, ElementsAre("asked 1", "willLeaveApplication"));
  allows_ = false;
  banner_->openDiallerWithUrl(Url::fromText("tel:2"));
  EXPECT_THAT(platform_.application->openedUrls, ElementsAre(Url::fromText("tel:1")));
}

TEST_F(AdViewClickTest, AHostWithoutTheQuestionLetsTheActionGoOn) {
  banner_->delegate.set(nullptr);
  banner_->openDiallerWithUrl(Url::fromText("tel:1"));
  EXPECT_THAT(platform_.application->openedUrls, ElementsAre(Url::fromText("tel:1")));
  EXPECT_THAT(heard_, IsEmpty());
}

TEST_F(AdViewClickTest, TheBrowserOpensAndClosesAboveTheBanner) {
  slot_->shouldOpenClickThroughURLInAppBrowser = true;
  banner_->openUrlInBrowser(Url::fromText("http://click.example/"));
  settle();
  EXPECT_THAT(heard_, ElementsAre("willOpenInInAppBrowser"));
  EXPECT_TRUE(banner_->appBrowserOpen());
  auto* browser = dynamic_cast<XInAppBrowser*>(root_->presentedViewController());
  ASSERT_NE(browser, nullptr);
  banner_->setHidden(true);
  browser->closeButtonItemClicked();
  EXPECT_THAT(heard_, ElementsAre("willOpenInInAppBrowser", "willCloseInAppBrowser"));
  EXPECT_FALSE(banner_->isHidden());
  EXPECT_FALSE(banner_->appBrowserOpen());
}

TEST_F(AdViewClickTest, TheBrowserGoesWithTheAdThatOpenedIt) {
  slot_->shouldOpenClickThroughURLInAppBrowser = true;
  for (const bool hasSheet : {false, true}) {
    SCOPED_TRACE(hasSheet);
    banner_->openUrlInBrowser(Url::fromText("http://click.example/"));
    settle();
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
  slot_->shouldOpenClickThroughURLInAppBrowser = true;
  onHeard_ = [this] {
    if (banner_) banner_->removeFromSuperview();
    banner_.reset();
  };
  const auto open = [this](void (XAdView::*operation)(const Url&), const char* url) {
    if (!banner_) {
      makeBanner();
      banner_->delegate.set(clickEvents_);
    }
    ((*banner_).*operation)(Url::fromText(url));
    settle();
    EXPECT_EQ(banner_, nullptr) << url;
  };
  open(&XAdView::openDiallerWithUrl, "tel:1");
  open(&XAdView::sendSMSWithUrl, "sms:1");
  open(&XAdView::sendEmailWithUrl, "mailto:a");
  open(&XAdView::openAppStoreWithURL, "http://store.example/");
  open(&XAdView::openUrlInBrowser, "http://click.example/");
}

}  // namespace
}  // namespace tavo::test
