#include <filesystem>
#include <fstream>

#include "AdController/ResponseParser/JsonObject.h"
#include "AdInfo/AnswerMembers.h"
#include "AdManager/AdVerdict.h"
#include "AdServer/AdServer.h"
#include "AdServer/CampaignFolder.h"
#include "AdServer/Route.h"
#include "Support/AdServerThread.h"
#include "Support/HostLoop.h"
#include "Support/Places.h"
#include "Support/RawExchange.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace tavo::test {
namespace {

namespace fs = std::filesystem;

using namespace adserver;

TEST(RouteTest, NamesWhatAPathAsksFor) {
  const std::vector<std::pair<const char*, Route>> cases = {
      {"/Halvern/ads/spoolwire_dx.ads/sdk/image-banner/@Bottom1",
       AdRequest{"image-banner", "Bottom1"}},
      {"/any/path/sdkl/image-banner/@Top", AdRequest{"image-banner", "Top"}},
      {"/sdk/image-banner/@", AdRequest{"image-banner", ""}},
      {"/x/sdk/news.example/front/@Top,Bottom1", AdRequest{"front", "Top,Bottom1"}},
      {"/x/sdk/a%20page/@Top", AdRequest{"a page", "Top"}},
      {"/sdk/sdk/@Top", AdRequest{"sdk", "Top"}},
      {"/assets/image-banner/banner.png", AssetRequest{"image-banner", "banner.png"}},
      {"/track/image-banner/impression", TrackingPing{"image-banner", "impression"}},
      {"/clicked/image-banner", LandingPage{"image-banner"}},
      {"/Halvern/ads/default/empty.gif", EmptyPicture{}},
      {"/record", RecordPage{}},
      {"/campaigns", CampaignList{}},
      {"/sdk/@Top", UnknownPath{}},
      {"/x/html/image-banner/@Top", UnknownPath{}},
      {"/x/sdk/image-banner/Top", UnknownPath{}},
      {"/assets/image-banner", UnknownPath{}},
      {"/assets/image-banner/folder/banner.png", UnknownPath{}},
      {"/", LivePage{}},
      {"/events", EventStream{}},
      {"", UnknownPath{}},
  };
  for (const auto& [path, route] : cases) {
    EXPECT_EQ(routeOf(path), route) << path;
  }
}

class AdServerTest : public testing::Test {
 protected:
  [[nodiscard]] RawResponse ad(const std::string& campaign) const {
    return get(server_->url("/Halvern/ads/spoolwire_dx.ads/sdk/" + campaign + "/@Bottom1"));
  }

  TemporaryFolder folder_;
  std::unique_ptr<AdServerThread> server_ =
      std::make_unique<AdServerThread>(folder_.path("campaigns"));
};

TEST_F(AdServerTest, PutsTheCreativeAndItsOwnAddressIntoTheAnswer) {
  folder_.write("campaigns/one/answer.json",
                R"({"Ad":[{"Text":"${creative.html}","ImpUrl":"${server}/${other}"}]})");
  folder_.write("campaigns/one/creative.html",
                "<a href=\"${server}/clicked/${campaign}\">\n\t`${x}` C:\\\x01</a>");
  const auto base = server_->url("");
  EXPECT_EQ(ad("one").body, R"({"Ad":[{"Text":"<a href=\")" + base +
                                R"(/clicked/one\">\n\t`${x}` C:\\\u0001</a>","ImpUrl":")" + base +
                                R"(/${other}"}]})");
}

TEST_F(AdServerTest, AnswersAsTheCampaignSays) {
  folder_.write("campaigns/one/answer.html", "moved");
  folder_.write("campaigns/one/campaign.json",
                R"({"title":"One","description":"Moves.","status":302,"contentType":"text/html",
                    "answerFile":"answer.html","delayMilliseconds":150,
                    "headers":{"Set-Cookie":["a=1","b=2"],"Location":"${server}/elsewhere"}})");
  const auto start = g_get_monotonic_time();
  const auto answer = ad("one");
  EXPECT_GE(g_get_monotonic_time() - start, 150'000);
  EXPECT_EQ(answer.status, 302);
  EXPECT_EQ(answer.body, "moved");
  EXPECT_EQ(answer.header("Content-Type"), "text/html");
  EXPECT_EQ(answer.header("Location"), server_->url("/elsewhere"));
  EXPECT_NE(answer.head.find("Set-Cookie: a=1\r\nSet-Cookie: b=2"), std::string::npos);
  EXPECT_EQ(get(server_->url("/campaigns")).body,
            "[\n{\"name\":\"one\",\"title\":\"One\",\"description\":\"Moves.\","
            "\"placement\":\"banner\",\"problem\":\"\"}\n]\n");
}

TEST_F(AdServerTest, SaysWhereACampaignIsWrongAndWhatWasExpected) {
  const std::vector<std::pair<const char*, const char*>> cases = {
      {R"({"status": "soon"})", "campaign.json:1: \"status\": expected a whole number from 200"},
      {"{\n\"title\": \"x\",\n\"status\": 99}", "campaign.json:3: \"status\""},
      {R"({"delayMilliseconds": -1})", "\"delayMilliseconds\": expected"},
      {R"({"behaviour": "sulk"})", "\"behaviour\": expected \"answer\""},
      {R"({"slot": [320]})", "\"slot\": expected a list"},
      {R"({"placement": "roof"})", "\"placement\": expected \"banner\""},
      {R"({"redirects": "often"})", "\"redirects\": expected"},
      {R"({"files": {"a.png": {"gzip": 1}}})", "\"gzip\": expected true or false"},
      {"{\n\"tittle\": \"Typo\"}",
       "campaign.json:2: \"tittle\" is not a key; did you mean \"title\""},
      {R"({"headers": {"X-A": "1\r\nX-B: 2"}})", "\"headers\": expected"},
      {R"({"answerFile": "../../secret.txt"})", "no file \"../../secret.txt\""},
      {"{\n\"title\": ", "campaign.json:1: expected one object"},
      {"{\n\"title\" \"x\"}", "campaign.json:2: "},
      {R"(["title"])", "campaign.json:1: expected one object"},
      {R"({} {})", "campaign.json:1: text after the end"},
  };
  folder_.write("campaigns/one/answer.json", "{}");
  folder_.write("secret.txt", "secret");
  for (const auto& [json, complaint] : cases) {
    folder_.write("campaigns/one/campaign.json", json);
    const auto answer = ad("one");
    EXPECT_EQ(answer.status, 500) << json;
    EXPECT_NE(answer.body.find(complaint), std::string::npos) << answer.body;
    EXPECT_NE(answer.header("X-AdServer-Problem"), "") << json;
  }
  folder_.write("campaigns/one/campaign.json", "");
  folder_.write("campaigns/one/answer.json", "{\n\"Text\": \"${gone.html}\"}");
  EXPECT_EQ(ad("one").header("X-AdServer-Problem"),
            "answer.json:2: the campaign has no file \"gone.html\"");
  EXPECT_NE(ad("won").body.find("did you mean \"one\"?"), std::string::npos);
}

TEST_F(AdServerTest, HangsUpWhenACampaignWantsIt) {
  folder_.write("campaigns/early/answer.json", "{}");
  folder_.write("campaigns/early/campaign.json", R"({"behaviour": "close-early"})");
  EXPECT_EQ(rawExchange(server_->url("/"), "GET /sdk/early/@x HTTP/1.1\r\nHost: h\r\n\r\n"), "");
}

TEST_F(AdServerTest, DeliversInTheOddWaysThatACampaignNames) {
  const std::string answer = R"({"Ad":[]})";
  const auto whole = [&](const char* keys) {
    folder_.write("campaigns/odd/answer.json", answer);
    folder_.write("campaigns/odd/campaign.json", keys);
    return ad("odd");
  };
  EXPECT_EQ(whole(R"({"behaviour": "cut"})").body, answer.substr(0, answer.size() / 2));
  EXPECT_EQ(whole(R"({"behaviour": "cut"})").header("Content-Length"), "9");
  EXPECT_EQ(whole(R"({"padToBytes": 200000})").body, answer + std::string(199'991, ' '));
  EXPECT_EQ(whole(R"({"bytesPerSecond": 100})").body, answer);
  const auto packed = whole(R"({"gzip": true, "padToBytes": 3000000})");
  EXPECT_EQ(packed.header("Content-Encoding"), "gzip");
  EXPECT_LT(packed.body.size(), 10'000U);
  EXPECT_GT(packed.body.size(), 1'000U);

  const auto hop = whole(R"({"redirects": 2})");
  EXPECT_EQ(hop.status, 302);
  EXPECT_EQ(hop.header("Set-Cookie"), "adserver-hop=1; Path=/");
  EXPECT_EQ(get(get(hop.header("Location")).header("Location")).body, answer);
  folder_.write("campaigns/odd/campaign.json", R"({"redirects": "endless"})");
  EXPECT_EQ(get(server_->url("/sdk/odd/@x?a=1&adserver-hop=900")).header("Location"),
            server_->url("/sdk/odd/@x?a=1&adserver-hop=901"));
}

TEST_F(AdServerTest, DeliversFilesAndPingsInOddWaysToo) {
  folder_.write("campaigns/one/campaign.json",
                R"({"files": {"gone.png": {"status": 404}, "a.xml": {"contentType": "image/png"},
                              "track/start": {"status": 500}}})");
  folder_.write("campaigns/one/a.xml", "a.xml?adserver-hop=${hop}");
  EXPECT_EQ(get(server_->url("/assets/one/gone.png")).status, 404);
  EXPECT_EQ(get(server_->url("/assets/one/a.xml?adserver-hop=4")).body, "a.xml?adserver-hop=5");
  EXPECT_EQ(get(server_->url("/assets/one/a.xml")).header("Content-Type"), "image/png");
  EXPECT_EQ(get(server_->url("/track/one/start")).status, 500);
  EXPECT_EQ(get(server_->url("/track/one/stop")).status, 200);
}

TEST_F(AdServerTest, ServesBareFilesAsCampaigns) {
  folder_.write("campaigns/a page.html", "<img src='dot.png'>");
  folder_.write("campaigns/dot.png", "dot");
  folder_.write("campaigns/key.pem", "secret");
  folder_.write("campaigns/film.xml", "<VAST></VAST>");
  folder_.write("campaigns/kept.json", R"({"Ad":[]})");
  const auto base = server_->url("/assets/a%20page.html/");
  EXPECT_NE(ad("a%20page.html").body.find("\"FileUrl\":\"" + base + "\""), std::string::npos);
  EXPECT_EQ(get(base + "dot.png").body, "dot");
  EXPECT_EQ(get(base + "key.pem").status, 404);
  EXPECT_NE(ad("film.xml").body.find(R"("AdType":"text/xml","Text":"<VAST></VAST>")"),
            std::string::npos);
  EXPECT_EQ(ad("kept.json").body, R"({"Ad":[]})");
}

TEST_F(AdServerTest, ShowsWhatItWasAskedToThisMachineOnly) {
  (void)get(server_->url("/track/one/impression"));
  EXPECT_NE(get(server_->url("/")).body.find("<title>Ad server</title>"), std::string::npos);
  const auto stream = [&](const std::string& host) {
    return rawExchange(server_->url("/"), "GET /events HTTP/1.1\r\nHost: " + host + "\r\n\r\n",
                       400);
  };
  const auto own = server_->url("").substr(7);
  EXPECT_NE(stream(own).find("\"detail\":\"impression\""), std::string::npos);
  for (const char* path : {"/", "/record", "/events", "/campaigns"}) {
    EXPECT_EQ(
        rawExchange(server_->url("/"),
                    "GET " + std::string{path} + " HTTP/1.1\r\nHost: evil.example\r\n\r\n", 12),
        "HTTP/1.1 403");
  }
}

TEST_F(AdServerTest, RecordsARealServersAnswersAsCampaigns) {
  folder_.write("campaigns/front/answer.json",
                R"({"Ad":[{"FileUrl":"${server}/assets/front/a.png"}]})");
  folder_.write(
      "campaigns/front/campaign.json",
      R"({"headers":{"Set-Cookie":"a=1; Domain=ads.example; Secure","X-At":"${server}"}})");
  folder_.write("campaigns/front/a.png", "\x01picture");
  const auto recorded = folder_.path("recorded");
  {
    const AdServerThread proxy{folder_.path("none"), {server_->url("/"), recorded}};
    const auto answer = get(proxy.url("/x/sdk/front/@Top?k=1"), "X-Kept: yes\r\n");
    EXPECT_EQ(answer.body, R"({"Ad":[{"FileUrl":")" + proxy.url("/assets/front/a.png") + "\"}]}");
    EXPECT_EQ(answer.header("Set-Cookie"), "a=1");
    EXPECT_EQ(answer.header("X-At"), proxy.url(""));
    EXPECT_EQ(get(proxy.url("/assets/front/a.png")).body, "\x01picture");
    EXPECT_EQ(server_->record().requests().front().header("X-Kept"), "yes");
  }
  const AdServerThread again{recorded};
  EXPECT_EQ(get(again.url("/y/sdk/front/@Top")).body,
            R"({"Ad":[{"FileUrl":")" + again.url("/assets/front/a.png") + "\"}]}");
  EXPECT_EQ(get(again.url("/assets/front/a.png")).body, "\x01picture");
}

TEST_F(AdServerTest, KeepsNoConnectionThatItsClientHasClosed) {
  folder_.write("campaigns/broken/answer.json", "broken");
  folder_.write("campaigns/broken/campaign.json", R"({"status": 500})");
  const auto descriptors = [] {
    return std::distance(fs::directory_iterator{"/proc/self/fd"}, {});
  };
  const auto before = descriptors();
  for (const char* path : {"/campaigns", "/sdk/broken/@x", "/nothing"}) {
    SCOPED_TRACE(path);
    const std::string request = "GET " + std::string{path} + " HTTP/1.1\r\nHost: h\r\n\r\n";
    EXPECT_EQ(rawExchange(server_->url("/"), request, 12).substr(0, 8), "HTTP/1.1");
    EXPECT_TRUE(runUntil([&] { return descriptors() <= before; }));
  }
}

TEST_F(AdServerTest, ServesAssetsWholeInPartAndByHead) {
  folder_.write("campaigns/one/picture.png", "0123456789");
  folder_.write("campaigns/one/wrapper.xml", "<Ad>${server}</Ad>");
  const auto url = server_->url("/assets/one/picture.png");
  EXPECT_EQ(get(url).body, "0123456789");
  EXPECT_EQ(get(url).header("Content-Type"), "image/png");
  EXPECT_EQ(get(url, "Range: bytes=2-4\r\n").status, 206);
  EXPECT_EQ(get(url, "Range: bytes=2-4\r\n").body, "234");
  EXPECT_EQ(get(url, "Range: bytes=7-99\r\n").body, "789");
  EXPECT_EQ(get(url, "Range: bytes=-99\r\n").body, "0123456789");
  EXPECT_EQ(get(url, "Range: bytes=10-\r\n").status, 416);
  EXPECT_EQ(request("HEAD", url).header("Content-Length"), "10");
  EXPECT_EQ(request("HEAD", url).body, "");
  EXPECT_EQ(get(server_->url("/assets/one/wrapper.xml")).body, "<Ad>" + server_->url("") + "</Ad>");
  EXPECT_EQ(request("POST", url).status, 405);
  EXPECT_EQ(request("POST", url, "Content-Length: 300000000\r\n").status, 405) << "without it";
}

TEST_F(AdServerTest, NeverReadsOutsideACampaign) {
  folder_.write("secret.txt", "secret");
  folder_.write("campaigns/secret.txt", "secret");
  folder_.write("campaigns/one/answer.json", "${../../secret.txt}${link.txt}");
  fs::create_symlink(folder_.path("secret.txt"), folder_.path("campaigns/one/link.txt"));
  fs::create_directory_symlink(folder_.path(""), folder_.path("campaigns/linked"));
  for (const char* path :
       {"/assets/../secret.txt", "/assets/one/../../../secret.txt",
        "/assets/one/..%2f..%2fsecret.txt", "/assets/%2e%2e/secret.txt",
        "/assets/one/%2e%2e%2fsecret.txt", "/assets/./secret.txt", "/assets/one/link.txt",
        "/assets/linked/secret.txt", "//assets/one/..\\..\\secret.txt",
        "/assets/one/%252e%252e%252fsecret.txt", "/sdk/../@x", "/sdk/%2e%2e/@x", "/sdk/one/@x"}) {
    const auto answer = get(server_->url(path));
    EXPECT_NE(answer.status, 0) << path;
    EXPECT_NE(answer.body, "secret") << path;
  }
  EXPECT_EQ(get(server_->url("/assets/one/..%2f..%2fsecret.txt")).status, 403);
  EXPECT_EQ(get(server_->url("/assets/one/link.txt")).status, 404);
  EXPECT_EQ(ad("one").body, "${../../secret.txt}${link.txt}");
}

TEST_F(AdServerTest, RecordsRequestsInOrderWithTheirHeaders) {
  const auto before = g_get_monotonic_time();
  (void)get(server_->url("/d/sdkl/one/@Top?a=1&b=%20"),
            "Cookie: DAPROPS=x\r\nUser-Agent: Tester\r\n");
  (void)get(server_->url("/track/one/impression?x"));
  (void)get(server_->url("/campaigns"));
  (void)get(server_->url("/clicked/one"));
  std::vector<std::string> lines;
  for (const auto& request : server_->record().requests()) {
    lines.push_back(std::to_string(request.sequence) + ' ' + nameOf(request.kind) + ' ' +
                    request.method + ' ' + request.path + ' ' + request.query + ' ' +
                    request.campaign + ' ' + request.detail + ' ' + std::to_string(request.status));
    EXPECT_GE(request.monotonicTime, before);
  }
  EXPECT_EQ(lines, (std::vector<std::string>{
                       "1 ad GET /d/sdkl/one/@Top a=1&b=%20 one Top 404",
                       "2 tracking GET /track/one/impression x one impression 200",
                       "3 click GET /clicked/one  one  200",
                   }));
  const auto ads = server_->record().requests(RequestKind::Ad);
  ASSERT_EQ(ads.size(), 1U);
  EXPECT_EQ(ads[0].header("cookie"), "DAPROPS=x");
  EXPECT_EQ(ads[0].header("user-agent"), "Tester");
}

// Each example of the guide is a file that is served, word for word, and is taken for what it says.
TEST(FormatGuideTest, ShowsRealFilesAndKnownKeysOnly) {
  const std::string guide = contentsOf(sampleCampaigns() + "/../../../docs/ad-server-format.md");
  const std::vector<std::pair<std::string, std::size_t>> examples = {
      {"image-banner", Verdict{ShowImage{}}.index()},
      {"html-banner", Verdict{ShowHtml{}}.index()},
      {"interstitial-html", Verdict{ShowHtml{}}.index()},
      {"vast-preroll", Verdict{PlayVast{}}.index()},
      {"interstitial-redirect", Verdict{FollowRedirect{}}.index()},
      {"mediated-banner", Verdict{Mediate{}}.index()},
      {"empty-ad", Verdict{RefuseEmptyPicture{}}.index()},
      {"no-ad", Verdict{NoAd{}}.index()},
  };
  const CampaignFolder folder{sampleCampaigns()};
  for (const auto& [name, kind] : examples) {
    const std::string shown = "/answer.json):\n\n```json\n" +
                              contentsOf(sampleCampaigns() + "/" + name + "/answer.json") + "```\n";
    EXPECT_NE(guide.find("[" + name), std::string::npos) << name;
    EXPECT_NE(guide.find(name + shown), std::string::npos) << name;
    const auto answer = folder.answer(folder.campaign(name).value_or(Campaign{}), "http://s");
    const auto document = JsonObject::read(answer.value_or(""), 64);
    const XAdInfo info{document ? &*document : nullptr};
    EXPECT_EQ(classify(info, {.canStartMediation = true}).index(), kind) << name;
  }
  int keys = 0;
  const auto table =
      guide.substr(0, guide.find("After a redirect, an")).substr(guide.find("### Keys"));
  for (auto at = table.find("\n| `"); at != table.npos; at = table.find("\n| `", at + 1), ++keys) {
    const auto key = table.substr(at + 4, table.find('`', at + 4) - at - 4);
    const auto members = AnswerMembers::of("{\"Ad\":[{\"" + key + "\":1}]}", 64);
    ASSERT_EQ(members.ad.size(), 1U);
    EXPECT_TRUE(members.ad[0].isKnown) << key;
  }
  EXPECT_EQ(keys, 23);
}

TEST(SampleCampaignsTest, ComeWithTitlesAndDescriptionsAndNoMistakes) {
  const CampaignFolder folder{sampleCampaigns()};
  for (const char* name :
       {"image-banner", "html-banner", "empty-ad", "no-ad", "server-error", "broken-json"}) {
    EXPECT_TRUE(folder.campaign(name).has_value()) << name;
  }
  for (const auto& name : folder.names()) {
    const auto campaign = folder.campaign(name).value_or(Campaign{});
    EXPECT_EQ(campaign.problem, "");
    EXPECT_NE(campaign.title, name);
    EXPECT_TRUE(campaign.description.ends_with('.')) << name;
    EXPECT_TRUE(folder.answer(campaign, "http://s").has_value()) << name;
  }
}

}  // namespace
}  // namespace tavo::test
