#include <map>

#include <tavo/Runtime.h>

#include "AdController/ResponseParser/VASTXMLParser/VastWrapperChain.h"
#include "Headless/HeadlessPlatform.h"
#include "Support/Testing.h"

namespace tavo::test {
namespace {

std::string wrapperTo(const std::string& uri) {
  return "<VAST><Ad><Wrapper><VASTAdTagURI><![CDATA[" + uri +
         "]]></VASTAdTagURI></Wrapper></Ad></VAST>";
}

const std::string inlineDocument =
    "<VAST><Ad><InLine><AdTitle>final</AdTitle></InLine></Ad></VAST>";

// A small web: documents by URL, a clock that each fetch moves, and a record of what was fetched.
class VastChainTest : public ::testing::Test {
 protected:
  void run(const std::string& text) {
    loadVastChain(text, parser_, fetch(), {Seconds{4}, Seconds{16}, [this] { return now_; }},
                  [this](const VastOutcome& outcome) {
                    result_ = outcome.failure ? outcome.failure->reason() : "ok";
                  });
  }

  VastFetch fetch() {
    return [this](const Url& url, Seconds timeout, const VastFetchCompletion& completion) {
      fetched_.push_back(url.text() + " " + std::to_string(static_cast<int>(timeout.count())));
      now_ += fetchTime_;
      const auto found = web_.find(url.text());
      completion(found != web_.end() ? std::optional{found->second} : std::nullopt);
    };
  }

  Runtime runtime_{headless::HeadlessPlatform{}.platform()};
  std::shared_ptr<XVASTXMLParser> parser_ = std::make_shared<XVASTXMLParser>();
  std::map<std::string, std::string> web_;
  Seconds now_{100};
  Seconds fetchTime_{1};
  Lines fetched_;
  std::string result_ = "nothing";
};

TEST_F(VastChainTest, anInlineDocumentNeedsNoFetch) {
  XVASTAd::sharedInstance()->vastTagURI = "left over";
  run(inlineDocument);
  EXPECT_EQ(result_, "ok");
  EXPECT_THAT(fetched_, IsEmpty());
  EXPECT_EQ(XVASTAd::sharedInstance()->inlineAd->adTitle, "final");
  EXPECT_EQ(XVASTAd::sharedInstance()->vastTagURI, std::nullopt);
}

TEST_F(VastChainTest, endsWellWhenADocumentAddsNoOtherWrapper) {
  for (const std::string& answer :
       {wrapperTo("http://a/"), std::string{"<html><body>Hello</body></html>"},
        std::string{"<VAST/>"}, std::string{"<VAST><Ad><Wrapper/></Ad></VAST>"}}) {
    web_ = {{"http://a/", answer}};
    fetched_.clear();
    run(wrapperTo("http://a/"));
    EXPECT_EQ(result_, "ok") << answer;
    EXPECT_THAT(fetched_, ElementsAre("http://a/ 4")) << answer;
  }
}

TEST_F(VastChainTest, endsWhenItsTimeIsOver) {
  fetchTime_ = Seconds{7};
  for (int hop = 0; hop < 10; ++hop) {
    web_["http://" + std::to_string(hop) + "/"] =
        wrapperTo("http://" + std::to_string(hop + 1) + "/");
  }
  run(wrapperTo("http://0/"));
  EXPECT_EQ(result_, "INVALIDURL");
  EXPECT_THAT(fetched_, ElementsAre("http://0/ 4", "http://1/ 4", "http://2/ 2"));
}

TEST_F(VastChainTest, aLongChainIsNoReasonToFail) {
  fetchTime_ = Seconds{0};
  constexpr int hops = 20'000;
  for (int hop = 0; hop < hops; ++hop) {
    web_["http://" + std::to_string(hop) + "/"] =
        hop + 1 < hops ? wrapperTo("http://" + std::to_string(hop + 1) + "/") : inlineDocument;
  }
  run(wrapperTo("http://0/"));
  EXPECT_EQ(result_, "ok");
  EXPECT_EQ(XVASTAd::sharedInstance()->wrapperAd.size(), static_cast<std::size_t>(hops));
}

}  // namespace
}  // namespace tavo::test
