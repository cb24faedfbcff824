#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Configuration/XGlobalConfiguration.h"
#include "Unit/AdViewFixture.h"
#include "UserInterface/WebView/BaseViews/AdViewMediation.h"
#include "XMediation/XMediation.h"

namespace tavo::test {
namespace {

using testing::ElementsAre;

const std::string getAd = "GET http://ads.example/x/sdk/page/@Bottom1";
const std::string switchedOff =
    "didFail 1008 Cannot mediate. Please enable mediation at slot level or application level.";

TEST(MediationTypeTest, DecidesByTypeSubTypeAndPlacement) {
  // One letter per sub-type 0 to 8: b banner, i interstitial, - none.
  struct Case {
    MobileAdTypes type;
    PlacementType placement;
    const char* expected;
  };
  const Case cases[] = {
      {MobileAdTypes::banner, PlacementType::inlined, "bbb---bb-"},
      {MobileAdTypes::banner, PlacementType::interstitial, "---------"},
      {MobileAdTypes::interstitial, PlacementType::interstitial, "i--ii---i"},
      {MobileAdTypes::interstitial, PlacementType::inlined, "---------"},
  };
  for (const auto& test : cases) {
    std::string found;
    for (int subType = 0; subType <= 8; ++subType) {
      const auto type =
          mediationTypeFor(test.type, static_cast<MobileAdSubTypes>(subType), test.placement);
      found += !type ? '-' : *type == MediationType::banner ? 'b' : 'i';
    }
    EXPECT_EQ(found, test.expected);
  }
}

// An adapter that records its loads and lets the test report.
class RecordingAdapter : public XMediationInterface {
 public:
  void loadAdWithXAdView(const std::shared_ptr<MediatedView>& adView,
                         const std::string& placementId, const Size& size,
                         ViewController* rootViewController) override {
    loads.push_back(placementId + " " + std::to_string(static_cast<int>(size.width)) + "x" +
                    std::to_string(static_cast<int>(size.height)));
    view = adView;
    root = rootViewController;
  }
  std::vector<std::string> loads;
  std::shared_ptr<MediatedView> view;
  ViewController* root = nullptr;
};

class AdViewMediationTest : public AdViewTest {
 protected:
  AdViewMediationTest() {
    XMediation::sharedInstance().bannerAdapter = adapter_;
    slot_->mediationPlacementId = "place";
    slot_->mediationBannerWidth = 320;
    slot_->mediationBannerHeight = 50;
    makeBanner();
  }
  ~AdViewMediationTest() override { adapter_->view.reset(); }

  const std::shared_ptr<RecordingAdapter> adapter_ = std::make_shared<RecordingAdapter>();
};

TEST_F(AdViewMediationTest, AServersInstructionIsCarriedOutWhateverTheSwitchesSay) {
  slot_->canMediate = 0;
  answer(R"({"Ad":[{"AdType":"text/html","ImpUrl":"http://track.example/i",)"
         R"("Text":"<ClientSideMediation placementId='7' width='300' height='250'/>"}]})");
  load();
  settle();
  EXPECT_THAT(happened(), ElementsAre(getAd)) << "no impression of ours, no failure";
  EXPECT_THAT(adapter_->loads, ElementsAre("7 300x250"));
  EXPECT_EQ(adapter_->root, root_.get());
  EXPECT_TRUE(banner_->isMediationAdServed());
  using Table = XMediationInterfaceDelegate;
  adapter_->delegate.tell(&Table::adDidReceiveWithXAdView, *adapter_, *adapter_->view);
  adapter_->delegate.tell(&Table::adWasClickedWithXAdView, *adapter_, *adapter_->view);
  adapter_->delegate.tell(&Table::adWillPresentWithXAdView, *adapter_, *adapter_->view);
  adapter_->delegate.tell(&Table::adDidCloseWithXAdView, *adapter_, *adapter_->view);
  adapter_->delegate.tell(&Table::adWillLeaveApplicationWithXAdView, *adapter_, *adapter_->view);
  EXPECT_THAT(happened(),
              ElementsAre("didLoad", "didClick", "willOpenBrowser", "willLeaveApplication"));
}

TEST_F(AdViewMediationTest, AFailedRequestMayBeMediatedAndStillFails) {
  slot_->canMediate = 1;
  answer(noAdAnswer);
  load();
  settle();
  EXPECT_THAT(happened(), ElementsAre(getAd, "didFail 1002 No ads available from TAVO server."));
  EXPECT_THAT(adapter_->loads, ElementsAre("place 320x50"));
  adapter_->delegate.tell(&XMediationInterfaceDelegate::adRequestFailedWithError, *adapter_,
                          Error{"network", 3, "no fill"}, *adapter_->view);
  EXPECT_THAT(happened(), ElementsAre("didFail 3 no fill"));
}

TEST_F(AdViewMediationTest, ASlotThatSaysNoOverrulesTheApplicationInTheCheckOnly) {
  XGlobalConfiguration::sharedInstance().canMediate = 1;
  slot_->canMediate = 0;
  answer(noAdAnswer);
  load();
  settle();
  EXPECT_THAT(happened(), ElementsAre(getAd, switchedOff));
  EXPECT_TRUE(adapter_->loads.empty());
}

TEST_F(AdViewMediationTest, PlacementSizeAndNetworkMustBeThere) {
  slot_->canMediate = 1;
  answer(noAdAnswer);
  struct Case {
    const char* placement;
    float width;
    bool hasNetwork;
    const char* failure;
  };
  const Case cases[] = {
      {" \n", 320, true, "didFail 1008 Cannot Mediate: PlacementId not set."},
      {"p", 0, true, "didFail 1008 Cannot Mediate: BannerWidth or BannerHeight not set."},
      {"p", 320, false, "didFail 1008 Missing required mediation classes."},
  };
  for (const auto& test : cases) {
    slot_->mediationPlacementId = test.placement;
    slot_->mediationBannerWidth = test.width;
    XMediation::sharedInstance().bannerAdapter = test.hasNetwork ? adapter_ : nullptr;
    load();
    settle();
    EXPECT_THAT(happened(), ElementsAre(getAd, test.failure));
  }
}

TEST_F(AdViewMediationTest, PrerollsAndUnheardInterstitialsAreNotMediated) {
  slot_->canMediate = 1;
  answer(noAdAnswer);
  banner_->setMobileAdSubTypes(MobileAdSubTypes::vastBanner);
  load();
  settle();
  EXPECT_THAT(happened(),
              ElementsAre(getAd,
                          "didFail 1008 Failed to retrieve ad from TAVO. Cannot mediate for "
                          "Preroll ads.",
                          "didFail 1002 No ads available from TAVO server."));
  banner_->setMobileAdSubTypes(MobileAdSubTypes::unknown);
  banner_->setMobileAdTypes(MobileAdTypes::interstitial);
  banner_->setPlacementType(PlacementType::interstitial);
  load();
  settle();
  EXPECT_THAT(happened(),
              ElementsAre(getAd,
                          "didFail 1008 Failed to retrieve ad from TAVO. Cannot mediate as "
                          "required delegate xAdInterstitialDidLoad is not implemented.",
                          "didFail 1002 No ads available from TAVO server."));
}

}  // namespace
}  // namespace tavo::test
