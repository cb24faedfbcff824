#include <tuple>

#include <tavo/XAdSlotConfiguration.h>
#include <tavo/XGlobalConfiguration.h>
#include <tavo/XMediationConfiguration.h>

#include "Configuration/MediationSwitch.h"
#include "Unit/TransportFixture.h"

namespace tavo::test {
namespace {

class Settings : public test::TransportTest {};

// The values that mean something where a host sets nothing: numbers that stand for "not set", and
// those that are not nothing.
TEST_F(Settings, HaveTheirDefaults) {
  const XAdSlotConfiguration slot;
  EXPECT_EQ(std::tuple(slot.bannerRefreshInterval, slot.canMediate, slot.mediationTargetedAge,
                       slot.mediationTargetedGender, slot.skipOffsetTime),
            std::tuple(120.0F, -1, -1, -1, -1));
  EXPECT_TRUE(slot.dismissVideoOnClickThrough);
  EXPECT_FALSE(slot.shouldOpenClickThroughURLInAppBrowser);
  const auto& global = XGlobalConfiguration::sharedInstance();
  EXPECT_EQ(global.canMediate, -1);
  EXPECT_EQ(global.browserConfiguration->toolbarPosition, 1U);
  EXPECT_EQ(global.browserConfiguration->barStyle, 1);
  EXPECT_TRUE(
      XMediationConfiguration{}.TAVOURLTemplateWithDomainName("ads.test", "page", "Top").empty());
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

TEST(SettingsMediation, QuirkTheSwitchHasTwoReadersThatDisagreeWhereOnlyTheApplicationWantsIt) {
  using Case = std::tuple<std::int32_t, std::int32_t, bool, bool>;
  const Case cases[] = {{-1, -1, false, false}, {0, -1, false, false}, {1, -1, true, true},
                        {5, -2, true, true},    {-1, 0, false, false}, {-1, 1, true, true},
                        {0, 1, true, true},     {0, 7, true, true},    {1, 1, true, true},
                        {0, 0, false, false},   {1, 0, true, false}};
  for (const auto& [global, slot, followsFailure, switchedOn] : cases) {
    EXPECT_EQ(mediationFollowsFailure(global, slot), followsFailure) << global << " " << slot;
    EXPECT_EQ(mediationIsSwitchedOn(global, slot), switchedOn) << global << " " << slot;
  }
}

}  // namespace
}  // namespace tavo::test
