#include <thread>

#include <tavo/XAdSlotConfiguration.h>
#include <tavo/XGlobalConfiguration.h>
#include <tavo/XMediationConfiguration.h>
#include <tavo/XPrefetchConfiguration.h>
#include <tavo/XUserConfiguration.h>

#include "Configuration/MediationSwitch.h"
#include "Unit/TransportFixture.h"

namespace tavo::test {
namespace {

class Settings : public test::TransportTest {};

TEST_F(Settings, OfASlotHaveTheirDefaults) {
  XAdSlotConfiguration slot;
  slot.setRTBRequired();
  EXPECT_EQ(slot.bannerRefreshInterval, 120.0F);
  EXPECT_FALSE(slot.canShowCompanionAd);
  EXPECT_FALSE(slot.maintainAspectRatio);
  EXPECT_FALSE(slot.scalingAllowed);
  EXPECT_TRUE(slot.backGroundImage.empty());
  EXPECT_FALSE(slot.accessToGeoLocation);
  EXPECT_FALSE(slot.COPPAPermissions);
  EXPECT_FALSE(slot.RTBRequired);
  EXPECT_FALSE(slot.shouldOpenClickThroughURLInAppBrowser);
  EXPECT_EQ(slot.canMediate, -1);
  EXPECT_EQ(slot.mediationPlacementId, std::nullopt);
  EXPECT_EQ(slot.mediationBannerWidth, 0.0F);
  EXPECT_EQ(slot.mediationBannerHeight, 0.0F);
  EXPECT_EQ(slot.mediationTargetedAge, -1);
  EXPECT_EQ(slot.mediationTargetedGender, -1);
  EXPECT_TRUE(slot.mediationTargetedKeywords.empty());
  EXPECT_EQ(slot.countdownTimerPosition, 0U);
  EXPECT_EQ(slot.skipOffsetTime, -1);
  EXPECT_EQ(slot.skipOffsetType, 0);
  EXPECT_TRUE(slot.dismissVideoOnClickThrough);
}

TEST_F(Settings, OfTheApplicationHaveTheirDefaults) {
  const auto& global = XGlobalConfiguration::sharedInstance();
  EXPECT_EQ(global.canMediate, -1);
  EXPECT_FALSE(global.enableDebugLogs);
  EXPECT_EQ(global.mediationTargetedLocation, std::nullopt);
  const auto& browser = *global.browserConfiguration;
  EXPECT_EQ(browser.toolbarBGColor, std::nullopt);
  EXPECT_EQ(browser.toolbarBGImageName, std::nullopt);
  EXPECT_EQ(browser.toolbarPosition, 1U);
  EXPECT_TRUE(browser.toolbarDetails.empty());
  EXPECT_EQ(browser.barStyle, 1);
}

TEST_F(Settings, OfTheSmallRecordsHaveTheirDefaults) {
  const XMediationConfiguration mediation;
  EXPECT_EQ(mediation.secondaryServerPreference, std::nullopt);
  EXPECT_TRUE(mediation.TAVOURLTemplateWithDomainName("ads.test", "page", "Top").empty());
  EXPECT_EQ(XPrefetchConfiguration{}.numberOfAdsToPrefetch, 0);
  EXPECT_FALSE(XPrefetchConfiguration{}.bannerPrefetchRequired);
  EXPECT_EQ(XUserConfiguration{}.userAge, std::nullopt);
  EXPECT_EQ(XUserConfiguration{}.userGender, std::nullopt);
}

TEST_F(Settings, BrowserListsEveryCallInOrder) {
  XBrowserConfiguration browser;
  browser.hideToolbarButton(2, true);
  browser.setToolbarButton(1, "back.png");
  browser.hideToolbarButton(2, false);
  using Entry = XBrowserConfiguration::ToolbarDetail;
  EXPECT_THAT(browser.toolbarDetails,
              ElementsAre(Entry{"Visibility", "YES", "2"}, Entry{"Image", "back.png", "1"},
                          Entry{"Visibility", "NO", "2"}));
}

TEST_F(Settings, OfTheApplicationAreMadeOnce) {
  std::array<XGlobalConfiguration*, 8> found{};
  std::vector<std::thread> threads;
  for (auto& place : found) {
    threads.emplace_back([&place] { place = &XGlobalConfiguration::sharedInstance(); });
  }
  for (auto& thread : threads) thread.join();
  for (const auto* instance : found) EXPECT_EQ(instance, &XGlobalConfiguration::sharedInstance());
}

struct SwitchCase {
  std::int32_t global;
  std::int32_t slot;
  bool followsFailure;
  bool switchedOn;
};

constexpr SwitchCase switchCases[] = {
    {-1, -1, false, false}, {0, -1, false, false}, {1, -1, true, true}, {5, -2, true, true},
    {-1, 0, false, false},  {-1, 1, true, true},   {0, 1, true, true},  {0, 7, true, true},
    {1, 1, true, true},     {0, 0, false, false},
};

TEST(SettingsMediation, SwitchHasTwoReaders) {
  for (const auto& row : switchCases) {
    EXPECT_EQ(mediationFollowsFailure(row.global, row.slot), row.followsFailure)
        << row.global << " " << row.slot;
    EXPECT_EQ(mediationIsSwitchedOn(row.global, row.slot), row.switchedOn)
        << row.global << " " << row.slot;
  }
}

TEST(SettingsMediation, QuirkReadersDisagreeWhenOnlyTheApplicationWantsIt) {
  EXPECT_TRUE(mediationFollowsFailure(1, 0));
  EXPECT_FALSE(mediationIsSwitchedOn(1, 0));
}

}  // namespace
}  // namespace tavo::test
