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
                    ++completions_;
                    result_ = outcome.failure ? outcome.failure->reason() : "ok";
                  });
  }

  VastFetch fetch() {
    return [this](const Url& url, Seconds timeout, VastFetchCompletion completion) {
      fetched_.push_back(url.text() + " " + std::to_string(static_cast<int>(timeout.count())));
      auto answer = [this, found = web_.find(url.text()), completion = std::move(completion)] {
        now_ += fetchTime_;
        completion(found != web_.end() ? std::optional{found->second} : std::nullopt);
      };
      later_ ? waiting_.push_back(std::move(answer)) : answer();
    };
  }

  Runtime runtime_{headless::HeadlessPlatform{}.platform()};
  std::shared_ptr<XVASTXMLParser> parser_ = std::make_shared<XVASTXMLParser>();
  std::map<std::string, std::string> web_;
  Seconds now_{100};
  Seconds fetchTime_{1};
  bool later_ = false;
  std::vector<std::function<void()>> waiting_;
  std::vector<std::string> fetched_;
  std::string result_ = "nothing";
  int completions_ = 0;
};

using List = std::vector<std::string>;

TEST_F(VastChainTest, anInlineDocumentNeedsNoFetch) {
  XVASTAd::sharedInstance()->vastTagURI = "left over";
  run(inlineDocument);
  EXPECT_EQ(result_, "ok");
  EXPECT_EQ(fetched_, List{});
  EXPECT_EQ(XVASTAd::sharedInstance()->inlineAd->adTitle, "final");
  EXPECT_EQ(XVASTAd::sharedInstance()->vastTagURI, std::nullopt);
}

TEST_F(VastChainTest, wrappersAreFollowedInOrder) {
  web_ = {{"http://a/", wrapperTo(" http://b/ \n")}, {"http://b/", inlineDocument}};
  run(wrapperTo("http://a/"));
  EXPECT_EQ(result_, "ok");
  EXPECT_EQ(fetched_, (List{"http://a/ 4", "http://b/ 4"}));
  EXPECT_EQ(XVASTAd::sharedInstance()->wrapperAd.size(), 2U);
  EXPECT_EQ(XVASTAd::sharedInstance()->inlineAd->adTitle, "final");
}

TEST_F(VastChainTest, goesOnWhenAnAnswerArrivesLater) {
  later_ = true;
  web_ = {{"http://a/", wrapperTo("http://b/")}, {"http://b/", inlineDocument}};
  run(wrapperTo("http://a/"));
  EXPECT_EQ(completions_, 0);
  ASSERT_EQ(waiting_.size(), 1U);
  waiting_[0]();
  EXPECT_EQ(completions_, 0);
  ASSERT_EQ(waiting_.size(), 2U);
  waiting_[1]();
  EXPECT_EQ(result_, "ok");
  EXPECT_EQ(completions_, 1);
}

TEST_F(VastChainTest, endsWellWhenADocumentAddsNoOtherWrapper) {
  struct Case {
    const char* what;
    std::string answer;
  };
  const Case cases[] = {{"names itself", wrapperTo("http://a/")},
                        {"is no VAST", "<html><body>Hello</body></html>"},
                        {"is empty VAST", "<VAST/>"},
                        {"is wrapper without URI", "<VAST><Ad><Wrapper/></Ad></VAST>"}};
  for (const Case& one : cases) {
    web_ = {{"http://a/", one.answer}};
    fetched_.clear();
    run(wrapperTo("http://a/"));
    EXPECT_EQ(result_, "ok") << one.what;
    EXPECT_EQ(fetched_, (List{"http://a/ 4"})) << one.what;
  }
}

TEST_F(VastChainTest, failsAsInvalidUrl) {
  struct Case {
    const char* what;
    std::string first;
    std::map<std::string, std::string> web;
    List fetched;
  };
  const Case cases[] = {
      {"unreadable", wrapperTo("http://gone/"), {}, {"http://gone/ 4"}},
      {"no URL", wrapperTo("  "), {}, {}},
      {"no document", wrapperTo("http://a/"), {{"http://a/", "plain text"}}, {"http://a/ 4"}},
      {"cycle",
       wrapperTo("http://a/"),
       {{"http://a/", wrapperTo("http://b/")}, {"http://b/", wrapperTo("http://a/")}},
       {"http://a/ 4", "http://b/ 4"}},
  };
  for (const Case& one : cases) {
    web_ = one.web;
    fetched_.clear();
    completions_ = 0;
    run(one.first);
    EXPECT_EQ(result_, "INVALIDURL") << one.what;
    EXPECT_EQ(fetched_, one.fetched) << one.what;
    EXPECT_EQ(completions_, 1) << one.what;
  }
}

TEST_F(VastChainTest, failsAsInvalidXml) {
  run("no document");
  EXPECT_EQ(result_, "INVALIDXMLFORMAT");
  web_ = {{"http://a/",
           "<VAST><Ad><InLine><Creatives><Creative><CreativeExtensions/></Creative></Creatives>"
           "</InLine></Ad></VAST>"}};
  run(wrapperTo("http://a/"));
  EXPECT_EQ(result_, "INVALIDXMLFORMAT");
}

TEST_F(VastChainTest, endsWhenItsTimeIsOver) {
  fetchTime_ = Seconds{7};
  for (int hop = 0; hop < 10; ++hop) {
    web_["http://" + std::to_string(hop) + "/"] =
        wrapperTo("http://" + std::to_string(hop + 1) + "/");
  }
  run(wrapperTo("http://0/"));
  EXPECT_EQ(result_, "INVALIDURL");
  EXPECT_EQ(fetched_, (List{"http://0/ 4", "http://1/ 4", "http://2/ 2"}));
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
  EXPECT_EQ(completions_, 1);
}

}  // namespace
}  // namespace tavo::test
