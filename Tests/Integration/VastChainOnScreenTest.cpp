// Chains of wrappers from real servers: what of them is counted, and how those end that lead
// nowhere.

#include "Integration/VideoOnScreen.h"
#include "Services/RunLoop.h"
#include "Support/HostileServer.h"

namespace tavo::test {
namespace {

const std::string invalidUrl = "Invalid URL. Unable to parse XML.";

// A document that leads to another one; its pings carry `name`.
std::string wrapper(const std::string& name, const std::string& target) {
  const std::string track = "${server}/track/${campaign}/" + name;
  return "<VAST version='3.0'><Ad><Wrapper><VASTAdTagURI><![CDATA[" + target +
         "]]></VASTAdTagURI><Impression>" + track +
         "-impression</Impression><Creatives><Creative><Linear><TrackingEvents>"
         "<Tracking event='start'>" +
         track + "-start</Tracking><Tracking event='complete'>" + track +
         "-complete</Tracking></TrackingEvents></Linear></Creative></Creatives></Wrapper></Ad>"
         "</VAST>";
}

std::string documentNamed(const std::string& file) {
  return "${server}/assets/${campaign}/" + file;
}

class VastChainOnScreenTest : public VideoOnScreen {
 protected:
  // Loads, and waits for the failure that ends it. Returns how often the host's loop turned.
  int loadInVain(const std::string& campaign) {
    told_.clear();
    host().server().record().clear();
    int turns = 0;
    const Timer alive =
        Runtime::current().platform().runLoop->every(Seconds{0.02}, [&] { ++turns; });
    host().load(campaign);
    EXPECT_TRUE(host().runUntil([this] { return !told_.empty(); }));
    return turns;
  }
};

TEST_F(VastChainOnScreenTest, TheSampleOfTwoWrappersIsCountedByAll) {
  host().load("vast-wrapped");
  ASSERT_TRUE(waitFor("handedBack"));
  EXPECT_TRUE(waitForPing("second-complete"));
  EXPECT_THAT(pings(),
              UnorderedElementsAre("first-impression", "second-impression", "inline-impression",
                                   "impression", "start", "first-start", "second-start",
                                   "firstQuartile", "midpoint", "thirdQuartile", "complete",
                                   "first-complete", "second-complete"));
}

TEST_F(VastChainOnScreenTest, FiveWrappersAreFetchedInOrderAndCountedOnce) {
  constexpr int depth = 5;
  Lines documents;
  Lines expected{"inline-impression", "start",         "firstQuartile",
                 "midpoint",          "thirdQuartile", "complete"};
  for (int level = 1; level <= depth; ++level) {
    const std::string name = "w" + std::to_string(level);
    documents.push_back(level < depth ? "w" + std::to_string(level + 1) + ".xml" : "inline.xml");
    const std::string text = wrapper(name, documentNamed(documents.back()));
    level == 1 ? campaigns().add("deep", text) : campaigns().addFile("deep", name + ".xml", text);
    for (const char* event : {"-impression", "-start", "-complete"}) {
      expected.push_back(name + event);
    }
  }
  campaigns().addFile("deep", "inline.xml", campaigns().document());
  host().load("deep");
  ASSERT_TRUE(waitFor("handedBack"));
  EXPECT_TRUE(host().runUntil([&] { return pings().size() >= expected.size(); }));
  EXPECT_THAT(pings(), UnorderedElementsAreArray(expected));
  auto fetched = recorded(RequestKind::Asset);
  std::erase(fetched, "clip.mp4");
  EXPECT_EQ(fetched, documents);
}

TEST_F(VastChainOnScreenTest, DocumentsThatLeadNowhereEndInOneFailure) {
  campaigns().add("cycle", wrapper("w", documentNamed("a.xml")));
  campaigns().addFile("cycle", "a.xml", wrapper("a", documentNamed("b.xml")));
  campaigns().addFile("cycle", "b.xml", wrapper("b", documentNamed("a.xml")));
  campaigns().add("no-markup", "no markup at all");
  campaigns().add("cut-target", wrapper("w", documentNamed("a.xml")));
  campaigns().addFile("cut-target", "a.xml", wrapper("a", "http://nowhere.example").substr(0, 90));
  std::string untracked = campaigns().document();
  const auto start = untracked.find("<TrackingEvents>");
  untracked.erase(start, untracked.find("</VideoClicks>") - start);
  untracked.insert(start, "<VideoClicks>");
  campaigns().add("untracked", untracked);
  struct Case {
    const char* campaign;
    const char* failure;
    std::string why;
    Lines fetched;
  };
  const Case cases[] = {
      {"untracked", "didFail 1010", "Missing tracking data in the XML", {}},
      {"no-markup", "didFail 1011", "The XML response has an invalid XML format", {}},
      {"cut-target", "didFail 1012", invalidUrl, {"a.xml"}},
      {"vast-missing-target", "didFail 1012", invalidUrl, {"gone.xml"}},
      {"cycle", "didFail 1012", invalidUrl, {"a.xml", "b.xml"}},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.campaign);
    loadInVain(test.campaign);
    EXPECT_THAT(told_, ElementsAre(test.failure));
    EXPECT_EQ(why_, test.why);
    EXPECT_EQ(recorded(RequestKind::Asset), test.fetched);
    EXPECT_THAT(pings(), IsSubsetOf({"impression"})) << "nothing of the chain is counted";
  }
}

TEST_F(VastChainOnScreenTest, AChainWithoutEndIsGivenUpWhileTheHostLivesOn) {
  HostileServer server;
  server.on("/next", EndlessChain{.document = wrapper("w", "${next}")});
  campaigns().add("endless", wrapper("w", server.url("/next")));
  const int turns = loadInVain("endless");
  EXPECT_THAT(told_, ElementsAre("didFail 1012"));
  EXPECT_EQ(why_, invalidUrl);
  EXPECT_GT(server.requests().size(), 10U);
  EXPECT_GT(turns, 30) << "of the 150 that there is time for";
}

}  // namespace
}  // namespace tavo::test
