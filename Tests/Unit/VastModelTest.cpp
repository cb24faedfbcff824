#include <tavo/Runtime.h>

#include "Headless/HeadlessPlatform.h"
#include "Model/VASTDataModel/XVASTAd.h"
#include "Support/Testing.h"
#include "UserInterface/NativeView/TrackingList.h"

namespace tavo::test {
namespace {

class VastModelTest : public ::testing::Test {
 protected:
  Runtime runtime_{headless::HeadlessPlatform{}.platform()};
};

TEST_F(VastModelTest, eventNamesHaveFixedNumbers) {
  const std::pair<std::string_view, int> names[] = {{"start", 1},
                                                    {"midpoint", 2},
                                                    {"firstQuartile", 3},
                                                    {"thirdQuartile", 4},
                                                    {"complete", 5},
                                                    {"mute", 6},
                                                    {"unmute", 7},
                                                    {"pause", 8},
                                                    {"rewind", 9},
                                                    {"resume", 10},
                                                    {"fullscreen", 11},
                                                    {"acceptInvitationLinear", 14},
                                                    {"acceptInvitation", 14},
                                                    {"closeLinear", 15},
                                                    {"close", 15},
                                                    {"exitFullscreen", 16},
                                                    {"skip", 17},
                                                    {"progress", 18},
                                                    {"Start", 0},
                                                    {"creativeView", 0},
                                                    {"", 0},
                                                    {" start", 0}};
  for (const auto& [name, number] : names) {
    const XTrackingEvent event = XTrackingEvent::getTrackingEventWithEvent(name, "u");
    EXPECT_EQ(static_cast<int>(event.eventType), number) << name;
    EXPECT_EQ(event.eventURL, "u") << name;
  }
}

TEST_F(VastModelTest, theLastValueOfARepeatedAttributeCounts) {
  AttributeMap attributes{{"id", "1"}, {"sequence", "2"}, {"id", "3"}};
  XVASTAd ad;
  ad.VASTAdAttributes(attributes);
  EXPECT_EQ(ad.identifier, "3");
  EXPECT_EQ(ad.sequence, "2");
}

// Each operation that fills attributes reads its own keys only and empties what is absent.
template <typename Record, typename... Fields>
void expectFills(
    void (Record::*set)(const AttributeMap&),
    std::initializer_list<std::pair<std::string_view, OptionalText Record::*>> fields) {
  AttributeMap all{{"other", "x"}};
  for (const auto& field : fields) {
    all.set(field.first, field.first);
  }
  Record record;
  (record.*set)(all);
  for (const auto& [key, member] : fields) {
    EXPECT_EQ(record.*member, OptionalText{key});
  }
  (record.*set)({});
  for (const auto& [key, member] : fields) {
    EXPECT_EQ(record.*member, std::nullopt) << key;
  }
}

// The records whose attributes the parser does not read: no document of the tests shows these.
TEST_F(VastModelTest, attributesFillTheirFields) {
  expectFills<XExtension>(&XExtension::setExtensionAttributes, {{"type", &XExtension::type}});
  expectFills<XPricing>(&XPricing::setPricingAttributes,
                        {{"model", &XPricing::model}, {"currency", &XPricing::currency}});
  expectFills<XCompanion>(&XCompanion::setCompanionAttributes,
                          {{"id", &XCompanion::identifier},
                           {"width", &XCompanion::width},
                           {"height", &XCompanion::height},
                           {"assetWidth", &XCompanion::assetWidth},
                           {"assetHeight", &XCompanion::assetHeight},
                           {"expandedHeight", &XCompanion::expandedHeight},
                           {"expandedWidth", &XCompanion::expandedWidth},
                           {"apiFramework", &XCompanion::apiFramework},
                           {"adSlotID", &XCompanion::adSlotID}});
}

TEST_F(VastModelTest, whatAHostKeepsInAnAdStaysThere) {
  const auto ad = XVASTAd::sharedInstance();
  ad->inlineAd = std::make_shared<XInlineAd>();
  ad->inlineAd->tempObject = 7;
  auto& linear = ad->inlineAd->creativesArray->emplace_back().linearAds;
  linear.mediaFilesArray.emplace(1);
  linear.trackingEventsArray.emplace(1);
  const auto wrapper = ad->wrapperAd.emplace_back(std::make_shared<XWrapperAd>());
  wrapper->creativesArray->emplace_back().linearAds.trackingEventsArray.emplace(1);
  EXPECT_EQ(mergedTracking(ad)->size(), 2U);
  EXPECT_EQ(mergedTracking(ad)->size(), 2U) << "once is enough";
  EXPECT_EQ(std::any_cast<int>(ad->inlineAd->tempObject), 7);
}

TEST_F(VastModelTest, aResetGivesAnEmptyRootAndLeavesTheOldOne) {
  const auto old = XVASTAd::sharedInstance();
  old->inlineAd = std::make_shared<XInlineAd>();
  old->wrapperAd.push_back(std::make_shared<XWrapperAd>());
  old->errorArray.emplace_back("e");
  EXPECT_EQ(XVASTAd::sharedInstance(), old);

  XVASTAd::resetInstance();
  const auto fresh = XVASTAd::sharedInstance();
  EXPECT_NE(fresh, old);
  EXPECT_EQ(fresh->inlineAd, nullptr);
  EXPECT_TRUE(fresh->wrapperAd.empty());
  EXPECT_TRUE(fresh->creativesArray.empty());
  EXPECT_TRUE(fresh->errorArray.empty());
  EXPECT_EQ(old->wrapperAd.size(), 1U);
  EXPECT_NE(old->inlineAd, nullptr);
}

}  // namespace
}  // namespace tavo::test
