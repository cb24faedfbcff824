#include <tavo/XGlobalConfiguration.h>

#include "Support/Testing.h"
#include "Unit/FakeAdNetwork.h"
#include "XMediation/XMediation.h"
#include "XMediation/XMediationBanner.h"
#include "XMediation/XMediationInterstitial.h"

namespace tavo::test {
namespace {

// A slot to be filled, without an ad view around it.
class Slot : public View, public MediatedView {
 public:
  using View::View;
  std::shared_ptr<void> hold() override { return shared_from_this(); }
  View& sceneView() override { return *this; }
  PlacementType placementType() const override { return PlacementType::inlined; }
  void setIsMediationAdServed(bool served) override { isServed = served; }
  bool isServed = false;
};

const char* const thrown = "failed 1008 The mediation network raised an exception.";
const char* const missing = "failed 1008 Missing required mediation classes.";

// The coordinator and its adapters between a slot and a network, with everything that the slot's
// owner is told as one list.
class MediationNetworkTest : public testing::Test {
 protected:
  MediationNetworkTest() {
    network_.install();
    settings_->canMediate = 1;
    coordinator_.slotConfiguration = settings_;
    coordinator_.delegate.set(events_);
  }

  void load(MediationType type = MediationType::banner, const Size& size = {300, 250}) {
    coordinator_.xMediationType = type;
    coordinator_.loadAdWithXAdView(slot_, "place", size, root_.get());
  }
  std::vector<std::string> told() { return std::exchange(told_, {}); }
  void settle() { platform_.runLoop->runPending(); }
  FakeAdNetwork::Ad& ad() { return network_.ads.back(); }

  FakeAdNetwork network_;
  headless::HeadlessPlatform platform_;
  Runtime runtime_{platform_.platform()};
  std::shared_ptr<Slot> slot_ = std::make_shared<Slot>(Rect{20, 7, 320, 50});
  std::shared_ptr<ViewController> root_ = std::make_shared<ViewController>();
  std::shared_ptr<XAdSlotConfiguration> settings_ = std::make_shared<XAdSlotConfiguration>();
  XMediation& coordinator_ = XMediation::sharedInstance();

 private:
  using Table = XMediationInterfaceDelegate;
  Table::Event note(const char* text) {
    return [this, text](XMediationInterface&, MediatedView&) { told_.emplace_back(text); };
  }
  std::vector<std::string> told_;
  const std::shared_ptr<const Table> events_ = std::make_shared<Table>(
      Table{.XMediationInterfaceAdDidReceiveWithXAdView = note("received"),
            .XMediationInterfaceAdRequestFailedWithErrorXAdView =
                [this](XMediationInterface&, const Error& error, MediatedView&) {
                  told_.push_back("failed " + std::to_string(error.code) + " " + error.description);
                },
            .XMediationInterfaceAdWasClickedWithXAdView = note("clicked"),
            .XMediationInterfaceAdWillCloseWithXAdView = note("willClose"),
            .XMediationInterfaceAdDidCloseWithXAdView = note("didClose"),
            .XMediationInterfaceAdWillPresentWithXAdView = note("willPresent"),
            .XMediationInterfaceAdDidPresentWithXAdView = note("didPresent"),
            .XMediationInterfaceAdWillLeaveApplicationWithXAdView = note("willLeave")});
};

TEST_F(MediationNetworkTest, TheSwitchDecidesAndAMandateNeedsNone) {
  for (const auto& [slot, mandate, allowed] :
       {std::tuple{1, false, true}, std::tuple{0, false, false}, std::tuple{0, true, true}}) {
    settings_->canMediate = slot;
    coordinator_.isMediationMandate = mandate;
    EXPECT_EQ(!coordinator_.canMediateWithPlacementId("p", {1, 1}), allowed) << slot << mandate;
  }
}

TEST_F(MediationNetworkTest, PlacementComesBeforeSizeAndOnlyBannersNeedOne) {
  const auto reason = [&](MediationType type, const char* placement, const Size& size) {
    coordinator_.xMediationType = type;
    return coordinator_.canMediateWithPlacementId(placement, size).value_or("");
  };
  const std::string noPlacement = "Cannot Mediate: PlacementId not set.";
  const std::string noSize = "Cannot Mediate: BannerWidth or BannerHeight not set.";
  EXPECT_EQ(reason(MediationType::banner, " \n\t", {0, 0}), noPlacement);
  EXPECT_EQ(reason(MediationType::banner, "p", {0, 50}), noSize);
  EXPECT_EQ(reason(MediationType::banner, "p", {320, 0}), noSize);
  EXPECT_EQ(reason(MediationType::banner, "p", {320, 50}), "");
  EXPECT_EQ(reason(MediationType::interstitial, "   ", {}), noPlacement);
  EXPECT_EQ(reason(MediationType::interstitial, "p", {}), "");
}

TEST_F(MediationNetworkTest, ABannerIsSetUpInOrder) {
  settings_->mediationTargetedAge = 33;
  settings_->mediationTargetedGender = 0;
  settings_->mediationTargetedKeywords = {{"a", "1"}, {"b", "2"}};
  XGlobalConfiguration::sharedInstance().mediationTargetedLocation =
      Location{47.5, -8.25, 65, Date{std::chrono::seconds{1'000}}};
  slot_->addSubview(std::make_shared<View>());
  network_.onLoad = [this](std::size_t) {
    EXPECT_THAT(slot_->subviews(), ElementsAre(ad().view)) << "there before it loads";
  };
  load();
  EXPECT_THAT(network_.lines,
              ElementsAre("init", "frame 0 0 320 50", "center 170 25", "frame 10 0 320 50",
                          "placementId place", "root set", "adSize 300 250", "nativeBrowser 1",
                          "delegate set", "autoRefresh 0", "age 33", "gender 2",
                          "keywords a=1;b=2;", "location 47.5 -8.25 1000 65", "loadAd"));
  EXPECT_TRUE(slot_->isServed);
  EXPECT_EQ(XMediationBanner::sharedInstance().bannerWidth, 300.0F);
}

TEST_F(MediationNetworkTest, AnInterstitialIsSetUpInOrderAndDisplayedBeforeItIsTold) {
  coordinator_.shouldOpenInAppBrowser = true;
  network_.onDisplay = [this](std::size_t number) {
    EXPECT_THAT(told(), IsEmpty());
    network_.say(number, &CVAdDelegate::adWillPresent);
  };
  load(MediationType::interstitial, {});
  network_.say(0, &CVAdDelegate::adDidReceiveAd);
  EXPECT_THAT(network_.lines,
              ElementsAre("init", "placementId place", "delegate set", "nativeBrowser 0", "age -1",
                          "gender 0", "keywords ", "loadAd", "display"));
  EXPECT_THAT(told(), ElementsAre("willPresent", "received"));
}

TEST_F(MediationNetworkTest, QuirkTheCentreAddsTheViewsPlaceToItsWidth) {
  EXPECT_EQ(mediatedBannerCenter({0, 0, 320, 50}), (Point{160, 25}));
  EXPECT_EQ(mediatedBannerCenter({20, 90, 320, 50}), (Point{170, 25}));
  EXPECT_EQ(mediatedBannerCenter({-320, 0, 320, 50}), (Point{0, 25}));
}

TEST_F(MediationNetworkTest, QuirkGendersAreTurnedRound) {
  const std::pair<int, int> cases[] = {{-1, 0}, {0, 2}, {1, 1}, {2, 1}, {-2, 1}};
  for (const auto& [given, expected] : cases) EXPECT_EQ(networkGender(given), expected);
}

TEST_F(MediationNetworkTest, QuirkClosingAndHavingPresentedGoNowhere) {
  load();
  for (const auto event :
       {&CVAdDelegate::adDidReceiveAd, &CVAdDelegate::adWasClicked, &CVAdDelegate::adWillPresent,
        &CVAdDelegate::adDidPresent, &CVAdDelegate::adWillClose, &CVAdDelegate::adDidClose,
        &CVAdDelegate::adWillLeaveApplication}) {
    network_.say(0, event);
  }
  EXPECT_THAT(told(), ElementsAre("received", "clicked", "willPresent", "willLeave"));
}

TEST_F(MediationNetworkTest, AnExceptionInAnyOperationIsOneFailure) {
  struct Case {
    MediationType type;
    std::vector<const char*> operations;
  };
  const Case cases[] = {
      {MediationType::banner,
       {"frame", "center", "placementId", "root", "adSize", "nativeBrowser", "delegate",
        "autoRefresh", "age", "gender", "keywords", "location", "loadAd"}},
      {MediationType::interstitial,
       {"placementId", "delegate", "nativeBrowser", "age", "gender", "keywords", "location",
        "loadAd", "display"}},
  };
  XGlobalConfiguration::sharedInstance().mediationTargetedLocation = Location{1, 2, 3};
  for (const auto& [type, operations] : cases) {
    for (const char* operation : operations) {
      SCOPED_TRACE(operation);
      network_.throwsIn = operation;
      load(type);
      network_.say(network_.ads.size() - 1, &CVAdDelegate::adDidReceiveAd);
      EXPECT_THAT(told(), ElementsAre(thrown));
      EXPECT_THAT(slot_->subviews(), IsEmpty());
      settle();
      EXPECT_TRUE(ad().life.expired()) << "nothing of it is kept";
    }
  }
  network_.throwsIn = "init";
  load();
  EXPECT_THAT(told(), ElementsAre(missing));
}

TEST_F(MediationNetworkTest, OneOutcomeIsTold) {
  struct Case {
    const char* name;
    MediationType type;
    std::function<void(std::size_t)> inLoad;
    std::function<void(std::size_t)> later;
    std::vector<std::string> expected;
  };
  const auto receive = [this](std::size_t n) { network_.say(n, &CVAdDelegate::adDidReceiveAd); };
  const auto fail = [this](std::size_t n) { network_.fail(n); };
  const auto both = [](auto first, auto second) {
    return [=](std::size_t n) {
      first(n);
      second(n);
    };
  };
  const Case cases[] = {
      {"received twice", MediationType::banner, {}, both(receive, receive), {"received"}},
      {"failed twice", MediationType::banner, {}, both(fail, fail), {"failed 3 no fill"}},
      {"received, failed", MediationType::banner, {}, both(receive, fail), {"received"}},
      {"failed, received", MediationType::banner, {}, both(fail, receive), {"failed 3 no fill"}},
      {"received inside", MediationType::banner, receive, receive, {"received"}},
      {"failed inside", MediationType::banner, fail, receive, {"failed 3 no fill"}},
      {"interstitials twice", MediationType::interstitial, receive, receive, {"received"}},
      {"clicked only",
       MediationType::banner,
       {},
       [this](std::size_t n) { network_.say(n, &CVAdDelegate::adWasClicked); },
       {}},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    network_.onLoad = test.inLoad;
    load(test.type);
    const auto late = ad().delegate.lock();
    test.later(network_.ads.size() - 1);
    settle();
    EXPECT_EQ(told(), test.expected);
  }
}

TEST_F(MediationNetworkTest, ANetworkThatFailsWhileItIsSetUpNeitherLoadsNorShows) {
  const auto own = std::make_shared<View>();
  slot_->addSubview(own);
  network_.onDelegate = [this](std::size_t number) { network_.fail(number); };
  for (const auto type : {MediationType::banner, MediationType::interstitial}) {
    load(type);
    EXPECT_THAT(told(), ElementsAre("failed 3 no fill"));
    EXPECT_NE(network_.lines.back(), "loadAd");
    EXPECT_THAT(slot_->subviews(), ElementsAre(own));
  }
}

TEST_F(MediationNetworkTest, AnInterstitialThatCannotBeDisplayedHasFailed) {
  network_.onDisplay = [this](std::size_t number) { network_.fail(number); };
  load(MediationType::interstitial);
  network_.say(0, &CVAdDelegate::adDidReceiveAd);
  EXPECT_THAT(told(), ElementsAre("failed 3 no fill"));
  load(MediationType::interstitial);
  root_.reset();
  network_.lines.clear();
  network_.say(1, &CVAdDelegate::adDidReceiveAd);
  EXPECT_THAT(told(), ElementsAre("failed 1008 There is no view controller to present the mediated "
                                  "ad over."));
  EXPECT_THAT(network_.lines, IsEmpty()) << "nothing is displayed over nothing";
}

TEST_F(MediationNetworkTest, AnAdThatLostItsPlaceIsNotHeard) {
  load();
  network_.say(0, &CVAdDelegate::adDidReceiveAd);
  slot_->removeAllSubviews();
  network_.say(0, &CVAdDelegate::adWasClicked);
  EXPECT_THAT(told(), ElementsAre("received"));
}

TEST_F(MediationNetworkTest, CallsFromAnotherThreadArriveOnTheMainOneWhileTheyInterest) {
  for (const bool interests : {true, false}) {
    load();
    const auto called = ad();
    const auto delegate = called.delegate.lock();
    platform_.runLoop->background([&] {
      delegate->adDidReceiveAd(*called.object);
      delegate->adWasClicked(*called.object);
      EXPECT_THAT(told(), IsEmpty()) << "not on this thread";
    });
    if (!interests) coordinator_.releaseAdOf(*slot_);
    settle();
    EXPECT_EQ(told(), interests ? (std::vector<std::string>{"received", "clicked"})
                                : std::vector<std::string>{});
  }
}

TEST_F(MediationNetworkTest, AHostMayEndEverythingInsideACall) {
  const auto ending = std::make_shared<XMediationInterfaceDelegate>(XMediationInterfaceDelegate{
      .XMediationInterfaceAdDidReceiveWithXAdView = [this](XMediationInterface&, MediatedView&) {
        coordinator_.releaseMemory();
        slot_.reset();
      }});
  coordinator_.delegate.set(ending);
  load();
  network_.say(0, &CVAdDelegate::adDidReceiveAd);
  EXPECT_FALSE(ad().life.expired()) << "not while it may be in a call of its own";
  EXPECT_FALSE(slot_);
  settle();
  EXPECT_TRUE(ad().life.expired());
}

}  // namespace
}  // namespace tavo::test
