#include <gtest/gtest.h>

#include <string>
#include <thread>

#include <tavo/Runtime.h>

#include "Headless/HeadlessPlatform.h"
#include "Model/VASTDataModel/XVASTAd.h"

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

TEST_F(VastModelTest, attributesFillTheirFields) {
  expectFills<XImpression>(&XImpression::setImpressionAttributes,
                           {{"id", &XImpression::identifier}});
  expectFills<XClickTracking>(&XClickTracking::setClickTrackingAttributes,
                              {{"id", &XClickTracking::identifier}});
  expectFills<XCustomClick>(&XCustomClick::setCustomClickAttributes,
                            {{"id", &XCustomClick::identifier}});
  expectFills<XVideoClick>(&XVideoClick::setVideoClickAttributes,
                           {{"id", &XVideoClick::clickThroughIdentifier}});
  expectFills<XExtension>(&XExtension::setExtensionAttributes, {{"type", &XExtension::type}});
  expectFills<XLinear>(&XLinear::setLinearAttributes, {{"skipOffset", &XLinear::skipOffset}});
  expectFills<XResource>(&XResource::setResourceAttributes,
                         {{"creativeType", &XResource::staticResourceCreativeType}});
  expectFills<XPricing>(&XPricing::setPricingAttributes,
                        {{"model", &XPricing::model}, {"currency", &XPricing::currency}});
  expectFills<XCreative>(&XCreative::setCreativeAttributes,
                         {{"id", &XCreative::identifier},
                          {"sequence", &XCreative::sequence},
                          {"adIdentifier", &XCreative::adIdentifier},
                          {"apiFramework", &XCreative::apiFramework}});
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

TEST_F(VastModelTest, freshRecordsHoldWhatTheyAreMadeWith) {
  const XWrapperAd wrapper;
  EXPECT_EQ(wrapper.adSystem, "");
  EXPECT_EQ(wrapper.vastTagURI, "");
  EXPECT_TRUE(wrapper.creativesArray.has_value());
  const XInlineAd inLine;
  EXPECT_EQ(inLine.adSystem, std::nullopt);
  EXPECT_TRUE(inLine.creativesArray.has_value());
  EXPECT_FALSE(inLine.tempObject.has_value());
}

TEST_F(VastModelTest, theRootIsMadeOnceWhateverThreadAsksFirst) {
  std::shared_ptr<XVASTAd> other;
  std::thread thread{[&other] { other = XVASTAd::sharedInstance(); }};
  const auto mine = XVASTAd::sharedInstance();
  thread.join();
  EXPECT_EQ(mine, other);
}

}  // namespace
}  // namespace tavo::test
