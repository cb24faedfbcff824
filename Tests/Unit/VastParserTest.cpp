#include <filesystem>
#include <fstream>
#include <iterator>

#include <tavo/Runtime.h>

#include "AdController/ResponseParser/VASTXMLParser/XVASTXMLParser.h"
#include "Headless/HeadlessPlatform.h"
#include "Support/Testing.h"
#include "Unit/VastPrinter.h"
#include "UserInterface/NativeView/TrackingList.h"

namespace tavo::test {
namespace {

const std::filesystem::path dataFolder = std::filesystem::path{TAVO_TEST_DATA} / "vast";

std::string fileContent(const std::filesystem::path& path) {
  std::ifstream file{path, std::ios::binary};
  return {std::istreambuf_iterator<char>{file}, {}};
}

class VastParserTest : public ::testing::Test {
 protected:
  XVASTXMLParser& parser() { return *parser_; }

  // The reason of the failure, or nothing.
  template <typename Load>
  std::string failureOf(const Load& load) {
    const VastOutcome outcome = outcomeOf(load);
    return outcome.failure ? outcome.failure->name() + "/" + outcome.failure->reason() + "/" +
                                 outcome.failure->localizedDescription()
                           : "";
  }
  std::string failureOfText(const std::string& text) {
    return failureOf([&] { return parser().loadXMLContentFromString(text); });
  }
  std::string failureOfData(const std::string& data) {
    return failureOf([&] { return parser().parseXMLData(data); });
  }
  // The only creative of the only ad of a document that holds `content` as its creative.
  XCreative creativeWith(const std::string& content) {
    XVASTAd::resetInstance();
    const auto root =
        parser().loadXMLContentFromString("<VAST><Ad><InLine><Creatives><Creative>" + content +
                                          "</Creative></Creatives></InLine></Ad></VAST>");
    return root->inlineAd->creativesArray->at(0);
  }

  Runtime runtime_{headless::HeadlessPlatform{}.platform()};
  std::shared_ptr<XVASTXMLParser> parser_ = std::make_shared<XVASTXMLParser>();
};

constexpr std::string_view invalidXML =
    "INVALIDXMLFOUND/INVALIDXMLFORMAT/The XML response has an invalid XML format";
constexpr std::string_view invalidURL = "INVALIDURL/INVALIDURL/Invalid URL. Unable to parse XML.";

// Recorded documents, each with the whole model that it becomes.
class VastDocumentTest : public VastParserTest,
                         public ::testing::WithParamInterface<const char*> {};

TEST_P(VastDocumentTest, becomesTheWholeModel) {
  const auto root =
      parser().loadXMLContentFromFile(dataFolder / (std::string{GetParam()} + ".xml"));
  EXPECT_EQ(VastPrinter::print(*root),
            fileContent(dataFolder / (std::string{GetParam()} + ".model")));
  EXPECT_EQ(root, XVASTAd::sharedInstance());
}

INSTANTIATE_TEST_SUITE_P(Documents, VastDocumentTest,
                         ::testing::Values("inline-linear", "inline-all-kinds", "wrapper-two-hops",
                                           "oddities"));

TEST_F(VastParserTest, badTextFailsAsInvalidXml) {
  for (const std::string text : {"", "   ", "no markup", "<!-- only a comment -->", "<VAST"}) {
    EXPECT_EQ(failureOfText(text), invalidXML) << text;
    EXPECT_FALSE(parser().isXMLValid()) << text;
  }
  EXPECT_EQ(failureOfText("<VAST/>"), "");
  EXPECT_TRUE(parser().isXMLValid());
}

TEST_F(VastParserTest, badDataFailsAsInvalidUrl) {
  for (const std::string data : {"", "no markup", "{\"json\": true}", "<?xml version='1.0'?>"}) {
    EXPECT_EQ(failureOfData(data), invalidURL) << data;
  }
  EXPECT_EQ(failureOf([&] { return parser().loadXMLContentFromFile(dataFolder / "missing.xml"); }),
            invalidURL);
  EXPECT_EQ(failureOfData("<html><body>Not found</body></html>"), "");
}

TEST_F(VastParserTest, documentsBeyondALimitFailAsInvalidXml) {
  Limits limits;
  limits.vastBytes = 100;
  limits.vastNodes = 5;
  limits.vastDepth = 3;
  parser_ = std::make_shared<XVASTXMLParser>(limits);
  const std::string inside = "<VAST><Ad><InLine/></Ad></VAST>";
  const std::string documents[] = {inside + std::string(70, ' '), "<a><b/><c/><d/><e/><f/></a>",
                                   "<a><b><c><d></d></c></b></a>", std::string(101, '\xFF')};
  EXPECT_EQ(failureOfText(inside), "");
  for (const std::string& document : documents) {
    EXPECT_EQ(failureOfText(document), invalidXML) << document;
    EXPECT_EQ(failureOfData(document), invalidXML) << document;
    EXPECT_FALSE(parser().isXMLValid());
  }
}

// The quirk that a creative with extensions cannot be read.
TEST_F(VastParserTest, creativeExtensionsRefuseTheDocumentAndKeepWhatWasParsed) {
  const std::string before =
      "<VAST><Ad><InLine><AdTitle>kept</AdTitle></InLine></Ad><Ad><InLine><Creatives><Creative>";
  const std::string after = "</Creative></Creatives></InLine></Ad></VAST>";
  for (const std::string extensions :
       {"<CreativeExtensions/>",
        "<CreativeExtensions><CreativeExtension>x</CreativeExtension>"
        "</CreativeExtensions>"}) {
    EXPECT_EQ(failureOfText(before + extensions + after), invalidXML);
    EXPECT_EQ(failureOfData(before + extensions + after), invalidXML);
  }
  ASSERT_NE(XVASTAd::sharedInstance()->inlineAd, nullptr);
}

TEST_F(VastParserTest, theLastInLineOfTheDocumentWins) {
  const auto root = parser().loadXMLContentFromString(
      "<VAST><Ad><InLine><AdTitle>1</AdTitle></InLine></Ad>"
      "<Ad><InLine><AdTitle>2</AdTitle></InLine></Ad></VAST>");
  EXPECT_EQ(root->inlineAd->adTitle, "2");
}

TEST_F(VastParserTest, documentsAddToTheSameRoot) {
  const auto wrapper = [](const std::string& uri) {
    return "<VAST><Ad><Wrapper><VASTAdTagURI>" + uri + "</VASTAdTagURI></Wrapper></Ad></VAST>";
  };
  parser().loadXMLContentFromString(wrapper("http://a/"));
  const auto root = parser().loadXMLContentFromString(wrapper("http://b/"));
  ASSERT_EQ(root->wrapperAd.size(), 2U);
  EXPECT_EQ(root->wrapperAd[0]->vastTagURI, "http://a/");
  EXPECT_EQ(root->vastTagURI, "http://b/");
  EXPECT_EQ(parser().wrapperAd(), root->wrapperAd[1]);
  EXPECT_EQ(parser().VASTAd(), root);
}

// The quirk that only the InLine's impressions must have a text.
TEST_F(VastParserTest, emptyImpressionsCountUnderWrapperOnly) {
  const auto root = parser().loadXMLContentFromString(
      "<VAST><Ad><InLine><Impression/></InLine></Ad>"
      "<Ad><Wrapper><Impression/></Wrapper></Ad></VAST>");
  EXPECT_TRUE(root->inlineAd->impresssionArray.empty());
  ASSERT_EQ(root->wrapperAd[0]->impresssionArray.size(), 1U);
  EXPECT_EQ(root->wrapperAd[0]->impresssionArray[0].url, "");
}

// Texts of the model are views into its documents: what is held must keep them, alone and after the
// parser, the root and the wrapper that it came with.
TEST_F(VastParserTest, theModelKeepsTheDocumentsItsTextsStandIn) {
  const auto adOf = [](const std::string& name) {
    return "<Creatives><Creative><Linear><MediaFiles><MediaFile/></MediaFiles><TrackingEvents>"
           "<Tracking event='start'><![CDATA[http://" +
           name + "/]]></Tracking></TrackingEvents></Linear></Creative></Creatives>";
  };
  const std::string refused =
      "<VAST><Ad><Wrapper><VASTAdTagURI>http://refused/</VASTAdTagURI><Creatives><Creative>"
      "<CreativeExtensions/></Creative></Creatives></Wrapper></Ad></VAST>";
  parser().loadXMLContentFromString("<VAST><Ad><Wrapper>" + adOf("wrapper") +
                                    "</Wrapper></Ad></VAST>");
  auto root = parser().loadXMLContentFromString("<VAST><Ad><InLine>" + adOf("inline") +
                                                "</InLine></Ad></VAST>");
  auto events = mergedTracking(root);
  const auto ad = root->inlineAd;
  EXPECT_EQ(failureOfData(refused), invalidXML);
  parser_.reset();
  EXPECT_EQ(root->vastTagURI, "http://refused/");
  root.reset();
  XVASTAd::resetInstance();
  events.reset();
  std::string texts;
  for (const auto& event : *ad->creativesArray->front().linearAds.trackingEventsArray) {
    texts.append(event.eventURL.value_or("none")).append(" ");
  }
  EXPECT_EQ(texts, "http://inline/ http://wrapper/ ");
}

// The quirk that reading attributes takes them.
TEST_F(VastParserTest, attributesAreThereOnce) {
  const XTBXML document{"<a id='1' b='2' id='3'/>"};
  const auto attributes = parser().parseAttributesData(document.rootXMLElement());
  ASSERT_TRUE(attributes.has_value());
  EXPECT_EQ((*attributes)["id"], "3");
  EXPECT_EQ((*attributes)["b"], "2");
  EXPECT_FALSE(parser().parseAttributesData(document.rootXMLElement()).has_value());
  EXPECT_FALSE(parser().parseAttributesData(nullptr).has_value());
}

// The quirk that the first attribute names the event.
TEST_F(VastParserTest, theFirstAttributeNamesTheEvent) {
  const auto events = *creativeWith(
                           "<Linear><TrackingEvents>"
                           "<Tracking event='firstQuartile'>u</Tracking>"
                           "<Tracking foo='x' event='start'>v</Tracking><Tracking>w</Tracking>"
                           "</TrackingEvents><TrackingEvents><Tracking event='skip'/>"
                           "</TrackingEvents></Linear>")
                           .linearAds.trackingEventsArray;
  std::string line;
  for (const XTrackingEvent& event : events) {
    line += std::to_string(static_cast<int>(event.eventType)).append(*event.eventURL) + " ";
  }
  EXPECT_EQ(line, "3u 0v 0w 17 ");
}

TEST_F(VastParserTest, trackingIsValidWhenTheLastLinearHasIt) {
  EXPECT_FALSE(parser().isTrackingEventValid());
  creativeWith("<Linear><TrackingEvents/></Linear>");
  EXPECT_TRUE(parser().isTrackingEventValid());
  creativeWith("<CompanionAds/>");
  EXPECT_TRUE(parser().isTrackingEventValid());
  creativeWith("<Linear/>");
  EXPECT_FALSE(parser().isTrackingEventValid());
}

// The quirk that click tracking of non-linear ads is hardly read.
TEST_F(VastParserTest, nonLinearClickTrackingIsOneEmptyRecord) {
  const auto ads = *creativeWith(
                        "<NonLinearAds><NonLinear id='n'><NonLinearClickTracking id='1'>u"
                        "</NonLinearClickTracking><NonLinearClickTracking id='2'/></NonLinear>"
                        "</NonLinearAds>")
                        .nonLinearAdsArray;
  const auto& tracking = ads[0].nonLinearArray[0].nonLinearClickTrackingArray;
  ASSERT_EQ(tracking.size(), 1U);
  EXPECT_EQ(tracking[0].identifier, std::nullopt);
  EXPECT_EQ(tracking[0].url, std::nullopt);
}

TEST_F(VastParserTest, splitsTextAtSeparators) {
  using List = std::vector<std::string>;
  EXPECT_EQ(parser().getArraySeparatedByCommasFromString(" a , b,"), (List{"a", "b", ""}));
  EXPECT_EQ(parser().getArraySeparatedByCommasFromString(""), (List{""}));
  EXPECT_EQ(parser().getArraySeparatedBy("::", "a::\tb c\n::::d"), (List{"a", "b c", "", "d"}));
  EXPECT_EQ(parser().getArraySeparatedBy("", "a,b"), (List{"a,b"}));
}

TEST_F(VastParserTest, brokenUtf8BecomesReplacementCharacters) {
  const auto root = parser().loadXMLContentFromString(
      "\xEF\xBB\xBF<VAST><Ad><InLine><AdTitle>a\xC3(b</AdTitle></InLine></Ad></VAST>");
  EXPECT_EQ(root->inlineAd->adTitle, "a\xEF\xBF\xBD(b");
}

// Walks whose cost grows with the square of the document would take minutes here.
TEST_F(VastParserTest, hostileDocumentsWithinTheLimitsAreOverSoon) {
  const auto many = [](const std::string& piece, std::size_t count) {
    std::string text;
    for (std::size_t turn = 0; turn < count; ++turn) {
      text += piece;
    }
    return text;
  };
  const std::string ad = "<VAST><Ad>";
  const std::string icons = ad + "<InLine><Creatives><Creative><Linear><Icons>";
  EXPECT_EQ(failureOfText(ad + many("<Wrapper/>", 99'000) + many("<InLine/>", 99'000)), invalidURL);
  EXPECT_EQ(failureOfText(ad + many("<InLine/>", 199'000)), "");
  EXPECT_EQ(failureOfText(icons + many("<Icon/>", 199'000)), "");
  EXPECT_EQ(failureOfText(ad + "<InLine><Creatives><Creative" + many(" a=''", 199'000) + "/>"), "");
  EXPECT_EQ(failureOfText(many("<VAST>", 199'000)), invalidXML);
  EXPECT_EQ(failureOfText(std::string(50'000'000, '<')), invalidXML);
}

}  // namespace
}  // namespace tavo::test
