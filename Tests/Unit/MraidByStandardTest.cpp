// Ads that are treated by the standard: what their pages are told of their place, and the second
// page of an ad in two parts, to the end of each way it can go.

#include <tavo/Button.h>
#include <tavo/TapRecognizer.h>

#include "Unit/AdViewFixture.h"
#include "UserInterface/WebView/BaseViews/PlaceReport.h"

namespace tavo::test {
namespace {

TEST(PlaceReport, OnlyWhatCanBeSeenIsExposed) {
  const Rect ad{20, 100, 320, 50};
  const Rect window{0, 0, 360, 640};
  struct Case {
    const char* name;
    ExposureFacts facts;
    Rect expected;
  };
  const Case cases[] = {
      {"all of it", {.ad = ad, .window = window}, ad},
      {"without a window", {.ad = ad, .window = {}}, {}},
      {"beyond the edge", {.ad = {20, 620, 320, 50}, .window = window}, {20, 620, 320, 20}},
      {"below the edge", {.ad = {20, 640, 320, 50}, .window = window}, {}},
      {"cut by the host",
       {.ad = ad, .window = window, .shown = Rect{0, 30, 320, 20}},
       {20, 130, 320, 20}},
      {"scrolled away", {.ad = ad, .window = window, .shown = Rect{}}, {}},
      {"hidden", {.ad = ad, .window = window, .isHidden = true}, {}},
      {"covered", {.ad = ad, .window = window, .isCovered = true}, {}}};
  for (const auto& [name, facts, expected] : cases) {
    const Rect part = exposedPart(facts);
    EXPECT_EQ(part.empty() ? Rect{} : part, expected) << name;
  }
}

TEST(PlaceReport, TellsEachStateInTheCoordinatesOfTheRoom) {
  const PlaceFacts facts{.screen = {360, 640},
                         .room = {0, 20, 360, 620},
                         .slot = {20, 120, 320, 50},
                         .resized = {30, 140, 300, 250},
                         .isExposed = true};
  const auto told = [&](MRAIDState state, bool isElsewhere = false, bool isInterstitial = false) {
    PlaceFacts changed = facts;
    changed.state = state;
    changed.isElsewhere = isElsewhere;
    changed.isInterstitial = isInterstitial;
    return placeReport(changed);
  };
  const Rect slot{20, 100, 320, 50};
  const Rect whole{0, 0, 360, 640};
  const Size screen{360, 640};
  const Size room{360, 620};
  using State = MRAIDState;
  const std::pair<MraidPlace, MraidPlace> cases[] = {
      {told(State::normal), {State::normal, screen, room, slot, slot, true}},
      {told(State::resized), {State::resized, screen, room, slot, {30, 120, 300, 250}, true}},
      {told(State::expanded), {State::expanded, screen, screen, slot, whole, true}},
      {told(State::expanded, true), {State::expanded, screen, room, slot, slot, false}},
      {told(State::hidden), {State::hidden, screen, room, slot, slot, false}},
      {told(State::normal, false, true), {State::normal, screen, screen, whole, whole, true}}};
  for (const auto& [is, expected] : cases) EXPECT_EQ(is, expected);
}

class MraidByStandardTest : public AdViewTest {
 protected:
  MraidByStandardTest() {
    slot_->standardsMode = true;
    platform_.application->statusBar = {};
    slot_->bannerRefreshInterval = 30;
    recordsScripts_ = true;
    showBanner(htmlAnswer(), {0, 430, 320, 50});
    first_ = platform_.webViews->last();
    creative("init");
    happened();
  }

  // The first page asks for the second one; the lines that it and the host hear.
  Lines expand(const std::string& address = "http://ads.example/second.html") {
    advance(2);
    first_->navigate({Url::fromText("mraid://expand?url=" + address), Url::parse("about:blank"),
                      NavigationType::other});
    settle();
    return happened();
  }
  // The second page, shown and ready.
  std::shared_ptr<headless::HeadlessWebView> open() {
    expand();
    creative("init");
    happened();
    return platform_.webViews->last();
  }
  [[nodiscard]] bool isFullScreen() const { return root_->presentedViewController() != nullptr; }
  [[nodiscard]] bool isHome() const { return first_->superview() == banner_.get(); }

  static std::string place(const std::string& state, const std::string& current,
                           const std::string& max = "480", bool viewable = true) {
    return "mraid.setPlace({state:'" + state +
           "',screen:{width:320,height:480},max:{width:320,height:" + max +
           "},normal:{x:0,y:430,width:320,height:50},current:{" + current +
           "},viewable:" + (viewable ? "true" : "false") + "});";
  }
  const std::string home_ = "x:0,y:430,width:320,height:50";
  const std::string whole_ = "x:0,y:0,width:320,height:480";
  std::shared_ptr<headless::HeadlessWebView> first_;
};

TEST_F(MraidByStandardTest, OnePageIsToldAllInOneStatement) {
  EXPECT_THAT(first_->documentStartScripts(), Contains("window.mraidFollowsStandards = true;"));
  creative("init");
  EXPECT_EQ(happened(), Lines{place("default", home_)});
  creative("expand");
  EXPECT_EQ(happened(), (Lines{"didExpand", place("expanded", whole_)}));
  creative("close");
  EXPECT_THAT(happened(), Contains(place("default", home_)));
  creative("close");
  EXPECT_EQ(happened(), Lines{place("hidden", home_, "480", false)});
  EXPECT_TRUE(first_->isHidden());
  creative("setResizeProperties?width=300&height=250");
  creative("resize");
  EXPECT_THAT(happened(), ElementsAre(HasSubstr("while loading or hidden")));
}

TEST_F(MraidByStandardTest, WhatNobodySeesIsToldAndRests) {
  banner_->shownPartDidChange({});
  EXPECT_EQ(happened(), Lines{place("default", home_, "480", false)});
  EXPECT_FALSE(first_->isAtRest()) << "it may be back with the next frame";
  advance(1);
  EXPECT_TRUE(first_->isAtRest());
  banner_->shownPartDidChange({0, 0, 320, 1});
  EXPECT_FALSE(first_->isAtRest());
  happened();
  root_->presentViewController(std::make_shared<ViewController>(), Animated::no);
  EXPECT_EQ(happened(), Lines{place("default", home_, "480", false)});
  root_->dismissViewController(Animated::no);
  EXPECT_EQ(happened(), Lines{place("default", home_)});
}

TEST_F(MraidByStandardTest, ExpandsToASecondPageAndReturnsTwice) {
  for (const bool bySecond : {true, false}) {
    SCOPED_TRACE(bySecond);
    EXPECT_THAT(expand(), Contains("didExpand"));
    const auto second = platform_.webViews->last();
    ASSERT_NE(second, first_);
    EXPECT_EQ(second->url().text(), "http://ads.example/second.html");
    EXPECT_TRUE(isHome());
    EXPECT_EQ(second->frame(), (Rect{0, 0, 320, 480}));
    EXPECT_EQ(second->window(), window_.get());
    happened();
    creative("init");
    EXPECT_EQ(happened(), Lines{place("expanded", whole_)});
    creative("expand?url=http://ads.example/third.html");
    EXPECT_EQ(platform_.webViews->last(), second);
    EXPECT_THAT(happened(), testing::IsEmpty());
    creative("setExpandProperties?useCustomClose=true");
    const auto* button = dynamic_cast<const Button*>(window_->hitTest({271, 49}));
    ASSERT_NE(button, nullptr);
    EXPECT_TRUE(button->image().empty());
    happened();
    if (bySecond) {
      creative("close");
    } else {
      deliverTap(*window_, {319, 1});
    }
    const auto told = happened();
    EXPECT_THAT(told, Contains("didCollapse"));
    EXPECT_THAT(told, Contains(place("default", home_)));
    EXPECT_THAT(told, Contains(place("default", home_, "480", false)));
    EXPECT_FALSE(isFullScreen());
    EXPECT_TRUE(isHome());
    settle();
  }
}

TEST_F(MraidByStandardTest, ASecondPageThatEndsLeavesTheAdInItsPlace) {
  platform_.webViews->holdLoads = true;
  for (const char* way : {"closed", "failed", "died", "died later"}) {
    SCOPED_TRACE(way);
    expand();
    const auto second = platform_.webViews->last();
    EXPECT_EQ(second->superview(), nullptr) << "it is still loading";
    const std::string end = way;
    if (end == "closed") deliverTap(*window_, {300, 20});
    if (end == "failed") second->failLoad({"test", 404, "Nothing there."});
    if (end == "died later") second->finishLoad();
    settle();
    if (end.starts_with("died")) second->terminateProcess();
    settle();
    const auto told = happened();
    EXPECT_THAT(told, Contains("didCollapse"));
    EXPECT_THAT(told, Contains(place("default", home_)));
    if (end != "closed") {
      EXPECT_THAT(told, Contains(HasSubstr("The second page is gone")));
    }
    EXPECT_FALSE(isFullScreen());
    EXPECT_TRUE(isHome());
  }
}

TEST_F(MraidByStandardTest, WhateverTakesTheAdTakesTheSecondPage) {
  const std::pair<const char*, std::function<void()>> ways[] = {
      {"the first page dies", [this] { first_->terminateProcess(); }},
      {"released", [this] { banner_->releaseMemory(); }},
      {"dropped", [this] { drop(); }},
      {"background", [this] { post(notifications::didEnterBackground); }}};
  for (const auto& [name, act] : ways) {
    SCOPED_TRACE(name);
    showBanner(htmlAnswer(), {0, 430, 320, 50});
    first_ = platform_.webViews->last();
    creative("init");
    const std::weak_ptr<WebView> second = open();
    ASSERT_TRUE(isFullScreen());
    act();
    for (int turn = 0; turn < 3; ++turn) settle();
    EXPECT_FALSE(isFullScreen());
    EXPECT_TRUE(second.expired());
  }
}

TEST_F(MraidByStandardTest, AnOpenSecondPageIsNotReplaced) {
  open();
  advance(100);
  EXPECT_THAT(happened(), testing::IsEmpty());
  creative("close");
  happened();
  advance(31);
  EXPECT_THAT(happened(), Contains(getAd));
}

TEST_F(MraidByStandardTest, RefusalsAreToldAndChangeNothing) {
  EXPECT_THAT(expand("file:///etc/passwd"), ElementsAre(HasSubstr("'expand'")));
  EXPECT_THAT(expand("javascript:1"), ElementsAre(HasSubstr("'expand'")));
  root_->presentViewController(std::make_shared<ViewController>(), Animated::no);
  happened();
  EXPECT_THAT(expand(), ElementsAre(HasSubstr("something else covers the screen")));
  root_->dismissViewController(Animated::no);
  expand();
  creative("close");
  happened();
  first_->navigate(
      {Url::fromText("mraid://expand"), Url::parse("about:blank"), NavigationType::other});
  first_->navigate({Url::fromText("mraid://playVideo?url=http://a.example/"),
                    Url::parse("about:blank"), NavigationType::other});
  settle();
  EXPECT_THAT(happened(), Contains(HasSubstr("'Too many actions without a touch.'")));
}

}  // namespace
}  // namespace tavo::test
