#include <tavo/Runtime.h>
#include <tavo/SdkErrors.h>
#include <tavo/XGlobalConfiguration.h>

#include "AdManager/XAdManager.h"
#include "Headless/HeadlessPlatform.h"
#include "Unit/RecordingAdView.h"
#include "Unit/VastFixture.h"

namespace tavo::test {
namespace {

using Sub = MobileAdSubTypes;

constexpr const char* url = "http://ads.example/x/sdk/page/@Bottom1";

std::string answerOf(const std::string& type, const std::string& text, const std::string& ping) {
  return R"({"Ad":[{"AdType":")" + type + R"(","FileUrl":"http://cdn.example/a.png","ImpUrl":")" +
         "http://track.example/" + ping + R"(","Text":")" + text + R"("}]})";
}

const std::string instruction = "<ClientSideMediation placementId='7' width='3' height='2'/>";

// A manager between an ad view that only writes down and a server in memory.
class AdManagerTest : public testing::Test {
 protected:
  AdManagerTest() {
    platform_.http->onSend = [this](const HttpRequest& request) {
      lines_.push_back("GET " + request.url.text());
    };
    platform_.http->answerWith("http://cdn.example/a.png", "image/png", "image 640x100");
  }

  void receive(const std::string& body, const std::string& mime = "application/json",
               int status = 200) {
    platform_.http->forget(url);
    platform_.http->answer(url,
                           {.status = status, .headers = {{"Content-Type", mime}}, .body = body});
    manager_->loadAdWithDomainName({"ads.example/x", "page", "Bottom1", {}, {}});
    platform_.runLoop->runPending();
  }
  std::vector<std::string> happened() {
    auto lines = std::exchange(lines_, {});
    std::erase(lines, getAd);
    return lines;
  }
  void settle() { platform_.runLoop->runPending(); }

  headless::HeadlessPlatform platform_;
  Runtime runtime_{platform_.platform()};
  std::vector<std::string> lines_;
  std::shared_ptr<RecordingAdView> view_ =
      std::make_shared<RecordingAdView>(Rect{0, 0, 320, 50}, lines_);
  std::function<void()> onRefresh_{};
  const std::shared_ptr<const XAdManagerDelegate> events_ =
      std::make_shared<XAdManagerDelegate>(XAdManagerDelegate{
          .adManagerDidLoad = [this](XAdManager&) { lines_.emplace_back("didLoad"); },
          .adManagerDidReceiveEmptyAd = [this](XAdManager&) { lines_.emplace_back("emptyAd"); },
          .adManagerDidFailWithError =
              [this](const std::optional<Error>& error) {
                lines_.push_back("didFail " + std::to_string(error ? error->code : 0));
              },
          .refreshAd =
              [this] {
                if (onRefresh_) std::exchange(onRefresh_, {})();
              },
          .startMediationWithAdView =
              [this](const std::string& placement, const Size&, bool) {
                lines_.push_back("mediate " + placement + " as " +
                                 std::to_string(static_cast<int>(view_->subType)));
                return true;
              }});
  std::shared_ptr<XAdManager> manager_ = XAdManager::create(runtime_.environment(), view_, events_);
};

TEST_F(AdManagerTest, AnAnswersKindBeginsAsNotYetKnown) {
  struct Case {
    const char* name;
    MobileAdTypes type;
    Sub before;
    std::string answer;
    Sub after;
  };
  const std::string html = answerOf("text/html", "<b>", "i");
  const std::string nothing = R"({"Ad":[]})";
  const Case cases[] = {
      {"a page after a film", MobileAdTypes::interstitial, Sub::vastInterstitial, html,
       Sub::richMediaInterstitial},
      {"a page after a picture", MobileAdTypes::interstitial, Sub::image, html,
       Sub::richMediaInterstitial},
      {"a page where a film could not play", MobileAdTypes::banner, Sub::vastBanner, html,
       Sub::richMediaBanner},
      {"mediation", MobileAdTypes::interstitial, Sub::image, answerOf("x", instruction, "i"),
       Sub::unknown},
      {"nothing after a film", MobileAdTypes::banner, Sub::vastBanner, nothing, Sub::unknown},
      {"nothing beside a page that stays", MobileAdTypes::banner, Sub::redirectHtmlBanner, nothing,
       Sub::redirectHtmlBanner},
      {"a film without a player", MobileAdTypes::banner, Sub::image,
       vastAnswer(VastDocument{}.text()), Sub::image},
  };
  for (const auto& test : cases) {
    view_->type = test.type;
    view_->subType = test.before;
    receive(test.answer);
    EXPECT_EQ(view_->subType, test.after) << test.name;
  }
}

TEST_F(AdManagerTest, ALentPlayerMakesEveryAnswerAPrerolls) {
  manager_->moviePlayerInstance = platform_.moviePlayers->create({});
  view_->subType = Sub::vastBanner;
  for (const auto& answer : {answerOf("text/html", "<b>", "i"), std::string{R"({"Ad":[]})"}}) {
    receive(answer);
    EXPECT_EQ(view_->subType, Sub::vastBanner);
  }
}

TEST_F(AdManagerTest, EachAnswerCountsItsOwnImpressionOnce) {
  const std::string bad = answerOf("text/xml", "no document", "b");
  for (const std::string& second : {std::string{R"({"Ad":[]})"}, bad}) {
    platform_.webViews->holdLoads = true;
    receive(answerOf("text/html", "<b>", "a"));
    EXPECT_THAT(happened(), ElementsAre()) << "the first page is still loading";
    receive(second);
    const auto lines = happened();
    EXPECT_THAT(lines, Not(Contains("GET http://track.example/a")));
    EXPECT_THAT(lines, Contains("GET http://track.example/b").Times(second == bad ? 1 : 0));
    platform_.webViews->last()->finishLoad();
    settle();
    EXPECT_THAT(happened(), ElementsAre("GET http://track.example/a", "didLoad"));
  }
}

TEST_F(AdManagerTest, APageActsForTheSiteOfItsFileUnlessItIsConfined) {
  const auto slot = std::make_shared<XAdSlotConfiguration>();
  manager_->slotConfiguration = slot;
  const std::string tag = "<base href=\"http://cdn.example/a.png\">";
  const auto shown = [&](const std::string& html) {
    receive(answerOf("text/html", html, "i"));
    const auto page = platform_.webViews->last();
    return page->baseUrl().text() +
           (page->html().find(tag) != std::string::npos ? " completed" : "");
  };
  EXPECT_EQ(shown("<b>"), "http://cdn.example/a.png");
  slot->confinesPagesToServingSite = true;
  EXPECT_EQ(shown("<b>"), " completed");
  EXPECT_EQ(shown("<html><head></head></html>"), " completed");
  EXPECT_EQ(shown("<BASE href='http://own.example/'>"), "");
}

TEST_F(AdManagerTest, WithoutAViewAnAnswerIsReportedAndNothingIsShown) {
  view_.reset();
  receive(answerOf("text/html", "<b>", "a"));
  receive(answerOf("image/png", "", "b"));
  receive(R"({"Ad":[]})");
  receive(answerOf("redirect", "", "c"), "application/json", 302);
  EXPECT_THAT(happened(), ElementsAre("didFail 1002", "didFail 1002", "didFail 1002",
                                      "GET http://cdn.example/a.png", "didFail 1002"));
}

TEST_F(AdManagerTest, APictureThatIsReplacedAtOnceStillCounts) {
  onRefresh_ = [this] {
    manager_->loadAdWithDomainName({"ads.example/x", "page", "Bottom1", {}, {}});
  };
  receive(answerOf("image/png", "", "a"));
  EXPECT_THAT(happened(), Contains("GET http://track.example/a").Times(2)) << "two answers";
}

TEST_F(AdManagerTest, APageWithoutTextIsNoAd) {
  receive(R"({"Ad":[{"AdType":"text/html","ImpUrl":"http://track.example/i"}]})");
  EXPECT_THAT(happened(), ElementsAre("didFail 1002"));
  platform_.http->forget(url);
  platform_.http->answer(url, {.error = makeError(SdkError::emptyAd, "Empty.")});
  manager_->loadAdWithDomainName({"ads.example/x", "page", "Bottom1", {}, {}});
  settle();
  EXPECT_THAT(happened(), ElementsAre("emptyAd"));
}

TEST_F(AdManagerTest, TheLogTellsWhichWayAnAnswerWent) {
  struct Case {
    std::string body;
    const char* platformLog;
    const char* debugLog;
    const char* mime = "application/json";
    int status = 200;
  };
  const std::string leads = R"({"Ad":[{"AdType":"redirect","FileUrl":"http://other.example/"}]})";
  const Case cases[] = {
      {answerOf("text/html", "<b>", "i"), "Request is Normal", "Loading MRAID/HTML Ad..."},
      {answerOf("image/png", "", "i"), "Request is Normal", "Loading Image Ad..."},
      {leads, "Request is redirected", "Redirect request response received"},
      {R"({"Ad":[]})", "Request is redirected", "", "text/plain", 302},
  };
  platform_.http->answerWith("http://other.example/", "text/html", "<b>");
  XGlobalConfiguration::sharedInstance().enableDebugLogs = true;
  for (const auto& test : cases) {
    const auto before = static_cast<std::ptrdiff_t>(platform_.log->messages().size());
    testing::internal::CaptureStderr();
    receive(test.body, test.mime, test.status);
    const std::string debugged = testing::internal::GetCapturedStderr();
    auto messages = platform_.log->messages();
    messages.erase(messages.begin(), messages.begin() + before);
    EXPECT_THAT(messages, Contains(std::string{"\n\n"} + test.platformLog)) << test.body;
    EXPECT_THAT(debugged, HasSubstr(std::string{"\n\n"} + test.debugLog)) << test.body;
  }
}

}  // namespace
}  // namespace tavo::test
