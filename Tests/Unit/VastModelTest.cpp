#include <tavo/Runtime.h>

#include "External/TBXML/XTBXML.h"
#include "Headless/HeadlessPlatform.h"
#include "Model/VASTDataModel/XVASTAd.h"
#include "Unit/VastPrinter.h"
#include "UserInterface/NativeView/TrackingList.h"

namespace tavo::test {
namespace {

class VastModelTest : public ::testing::Test {
 protected:
  Runtime runtime_{headless::HeadlessPlatform{}.platform()};
};

TEST_F(VastModelTest, eventNamesHaveFixedNumbers) {
  const std::pair<const char*, int> names[] = {{"start", 1},
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
                                               {"closeLinear", 15},
                                               {"acceptInvitation", 14},
                                               {"close", 15},
                                               {"exitFullscreen", 16},
                                               {"skip", 17},
                                               {"progress", 18},
                                               {"Start", 0},
                                               {"creativeView", 0},
                                               {"", 0}};
  for (const auto& [name, number] : names) {
    const XTrackingEvent event = XTrackingEvent::getTrackingEventWithEvent(name, "u");
    EXPECT_EQ(static_cast<int>(event.eventType), number) << name;
    EXPECT_EQ(event.eventURL, "u") << name;
  }
}

// The records whose attributes the parser does not read: no document of the tests shows these.
template <typename Record>
std::string filled(void (Record::*set)(const AttributeMap&)) {
  std::string text = "<a other='x'";
  for (const std::string key :
       {"model", "currency", "id", "width", "height", "assetWidth", "assetHeight", "expandedHeight",
        "expandedWidth", "apiFramework", "adSlotID"}) {
    text += " " + key + "='" + key + "'";
  }
  const XTBXML document{text + "/>"};
  Record record;
  (record.*set)(AttributeMap{document.rootXMLElement()->firstAttribute});
  text = VastPrinter::print(record);
  (record.*set)({});
  EXPECT_EQ(VastPrinter::print(record), VastPrinter::print(Record{}))
      << "what is absent is emptied";
  return text;
}

TEST_F(VastModelTest, attributesFillTheirFields) {
  EXPECT_EQ(filled(&XPricing::setPricingAttributes), "2 \"model\"\n3 \"currency\"\n");
  EXPECT_THAT(filled(&XCompanion::setCompanionAttributes),
              StartsWith("1 \"id\"\n2 \"width\"\n3 \"height\"\n4 \"assetWidth\"\n"
                         "5 \"assetHeight\"\n6 \"expandedWidth\"\n7 \"expandedHeight\"\n"
                         "8 \"apiFramework\"\n9 \"adSlotID\"\n"));
  XExtension extension;
  const XTBXMLAttribute type{.name = "type", .value = "t"};
  extension.setExtensionAttributes(AttributeMap{&type});
  EXPECT_EQ(extension.type, "t");
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
