#include <array>
#include <filesystem>
#include <fstream>
#include <future>

#include "AdServer/AdServer.h"
#include "AdServer/CampaignFolder.h"
#include "AdServer/Placeholders.h"
#include "AdServer/Route.h"
#include "Support/AdServerThread.h"
#include "Support/HostLoop.h"
#include "Support/HostileServer.h"
#include "Support/Places.h"
#include "Support/RawExchange.h"
#include "Support/Testing.h"

namespace tavo::test {
namespace {

namespace fs = std::filesystem;

using namespace adserver;

// ---- Routes -------------------------------------------------------------------------------------

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
      {"/", UnknownPath{}},
      {"", UnknownPath{}},
  };
  for (const auto& [path, route] : cases) {
    EXPECT_EQ(routeOf(path), route) << path;
  }
}

TEST(RouteTest, RefusesNamesThatLeadElsewhere) {
  for (const char* path :
       {"/assets/../secret.txt", "/assets/%2e%2e/secret.txt", "/assets/one/..%2f..%2fsecret.txt",
        "/assets/one/..%5csecret.txt", "/assets/one/.hidden", "/assets/one/a%00.png",
        "/assets/one/%zz", "/assets//secret.txt", "/x/sdk/../@Top", "/x/sdk/.git/@Top",
        "/x/sdk/a%2fb/@Top", "/track/one/."}) {
    EXPECT_EQ(routeOf(path), Route{RefusedPath{}}) << path;
  }
}

TEST(PlaceholdersTest, FillsKnownNamesAndLeavesTheRest) {
  const auto filled = [](std::string_view text) {
    return fillServerAndCampaign(text, "http://s", "c");
  };
  EXPECT_EQ(filled("${server}/${campaign}"), "http://s/c");
  EXPECT_EQ(filled("`${width} px` ${server}"), "`${width} px` http://s");
  EXPECT_EQ(filled("${a${server}}"), "${ahttp://s}");
  EXPECT_EQ(filled("${server"), "${server");
  EXPECT_EQ(filled("$ {} ${} $${server}"), "$ {} ${} $http://s");
}

// ---- The server on campaigns of the test's own --------------------------------------------------

// A folder below the system's temporary one, gone at the end.
class TemporaryFolder {
 public:
  TemporaryFolder() : name_{g_dir_make_tmp("adserver-XXXXXX", nullptr)}, path_{name_.get()} {}
  ~TemporaryFolder() { fs::remove_all(path_); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  [[nodiscard]] const fs::path& path() const { return path_; }

  void write(const fs::path& file, std::string_view text) const {
    fs::create_directories((path_ / file).parent_path());
    std::ofstream{path_ / file, std::ios::binary} << text;
  }

 private:
  gtk::GText name_;
  fs::path path_;
};

class AdServerTest : public testing::Test {
 protected:
  [[nodiscard]] RawResponse ad(const std::string& campaign) const {
    return get(server_->url("/Halvern/ads/spoolwire_dx.ads/sdk/" + campaign + "/@Bottom1"));
  }

  TemporaryFolder folder_;
  std::unique_ptr<AdServerThread> server_ =
      std::make_unique<AdServerThread>(folder_.path() / "campaigns");
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

TEST_F(AdServerTest, ReadsACampaignAnewForEachRequest) {
  folder_.write("campaigns/one/answer.json", "before");
  EXPECT_EQ(ad("one").body, "before");
  folder_.write("campaigns/one/answer.json", "after");
  EXPECT_EQ(ad("one").body, "after");
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
            "[\n{\"name\":\"one\",\"title\":\"One\",\"description\":\"Moves.\"}\n]\n");
}

TEST_F(AdServerTest, SaysWhatIsWrongWithACampaign) {
  const std::vector<std::pair<const char*, const char*>> cases = {
      {R"({"status": "soon"})", "\"status\""},
      {R"({"status": 99})", "\"status\""},
      {R"({"delayMilliseconds": -1})", "\"delayMilliseconds\""},
      {R"({"behaviour": "sulk"})", "\"behaviour\""},
      {R"({"tittle": "Typo"})", "\"tittle\""},
      {R"({"headers": {"X-A": "1\r\nX-B: 2"}})", "\"headers\""},
      {R"({"answerFile": "../../secret.txt"})", "no file \"../../secret.txt\""},
      {R"({"title": )", "campaign.json: "},
      {R"(["title"])", "campaign.json: "},
  };
  folder_.write("campaigns/one/answer.json", "{}");
  folder_.write("secret.txt", "secret");
  for (const auto& [json, complaint] : cases) {
    folder_.write("campaigns/one/campaign.json", json);
    const auto answer = ad("one");
    EXPECT_EQ(answer.status, 500) << json;
    EXPECT_NE(answer.body.find(complaint), std::string::npos) << answer.body;
  }
}

TEST_F(AdServerTest, HangsUpOrStaysSilentWhenACampaignWantsIt) {
  folder_.write("campaigns/early/answer.json", "{}");
  folder_.write("campaigns/early/campaign.json", R"({"behaviour": "close-early"})");
  folder_.write("campaigns/never/answer.json", "{}");
  folder_.write("campaigns/never/campaign.json", R"({"behaviour": "never-answer"})");
  EXPECT_EQ(rawExchange(server_->url("/"), "GET /sdk/early/@x HTTP/1.1\r\nHost: h\r\n\r\n"), "");

  std::promise<unsigned> recorded;
  server_->record().setListener(
      [&recorded](const RecordedRequest& request) { recorded.set_value(request.status); });
  auto answer = std::async(std::launch::async, [url = server_->url("/")] {
    return rawExchange(url, "GET /sdk/never/@x HTTP/1.1\r\nHost: h\r\n\r\n");
  });
  EXPECT_EQ(recorded.get_future().get(), 0U);
  server_.reset();  // ends the silence too
  EXPECT_EQ(answer.get(), "");
}

TEST_F(AdServerTest, SurvivesAClientThatLeavesBeforeALateAnswer) {
  folder_.write("campaigns/late/answer.json", "late");
  folder_.write("campaigns/late/campaign.json", R"({"delayMilliseconds": 50})");
  const std::string request = "GET /sdk/late/@x HTTP/1.1\r\nHost: h\r\n\r\n";
  EXPECT_EQ(rawExchange(server_->url("/"), request, 0), "");
  EXPECT_EQ(ad("late").body, "late");
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
  EXPECT_EQ(request("HEAD", url).header("Content-Length"), "10");
  EXPECT_EQ(request("HEAD", url).body, "");
  EXPECT_EQ(get(server_->url("/assets/one/wrapper.xml")).body, "<Ad>" + server_->url("") + "</Ad>");
  EXPECT_EQ(request("POST", url).status, 405);
}

TEST_F(AdServerTest, NeverReadsOutsideACampaign) {
  folder_.write("secret.txt", "secret");
  folder_.write("campaigns/secret.txt", "secret");
  folder_.write("campaigns/one/answer.json", "${../../secret.txt}${link.txt}");
  fs::create_symlink(folder_.path() / "secret.txt", folder_.path() / "campaigns/one/link.txt");
  fs::create_directory_symlink(folder_.path(), folder_.path() / "campaigns/linked");
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

TEST_F(AdServerTest, HandsOutItsRecordAndForgetsItWhenAsked) {
  (void)get(server_->url("/track/one/start"), "X-Odd: \"\xff\"\r\n");
  const auto json = get(server_->url("/record")).body;
  EXPECT_TRUE(json.starts_with("[\n{\"sequence\":1,\"monotonicTime\":")) << json;
  EXPECT_NE(json.find(R"("kind":"tracking","campaign":"one","detail":"start","method":"GET",)"
                      R"("path":"/track/one/start","query":"","status":200,"headers":[)"),
            std::string::npos)
      << json;
  EXPECT_NE(json.find("{\"name\":\"X-Odd\",\"value\":\"\\\"\xef\xbf\xbd\\\"\"}"), std::string::npos)
      << json;
  EXPECT_EQ(request("DELETE", server_->url("/record")).status, 204);
  EXPECT_EQ(get(server_->url("/record")).body, "[\n]\n");
  EXPECT_TRUE(server_->record().requests().empty());
}

// ---- The campaigns that come with the server ----------------------------------------------------

std::size_t countOf(std::string_view part, std::string_view text) {
  std::size_t count = 0;
  for (auto at = text.find(part); at != text.npos; at = text.find(part, at + part.size())) {
    ++count;
  }
  return count;
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

TEST(SampleCampaignsTest, AnswerAsTheirNamesSay) {
  AdServerThread server{sampleCampaigns()};
  const auto ad = [&server](const std::string& campaign) {
    return get(server.url("/Halvern/ads/spoolwire_dx.ads/sdk/" + campaign + "/@Bottom1"));
  };
  const auto image = ad("image-banner");
  EXPECT_EQ(image.header("Content-Type"), "application/json");
  for (const char* path : {"/assets/image-banner/banner.png", "/track/image-banner/impression",
                           "/clicked/image-banner"}) {
    EXPECT_EQ(countOf('"' + server.url(path) + '"', image.body), 1U) << path;
    EXPECT_EQ(get(server.url(path)).status, 200) << path;
  }
  EXPECT_TRUE(get(server.url("/assets/image-banner/banner.png")).body.starts_with("\x89PNG\r\n"));
  EXPECT_EQ(countOf("<script>", ad("html-banner").body), 1U);
  for (const char* part : {"<a href", "<img ", "/default/empty.gif"}) {
    EXPECT_EQ(countOf(part, ad("empty-ad").body), 1U) << part;
  }
  EXPECT_EQ(ad("no-ad").body, "{\"Ad\":[]}\n");
  EXPECT_EQ(ad("server-error").status, 500);
  EXPECT_EQ(ad("broken-json").status, 200);
  EXPECT_EQ(ad("unheard-of").status, 404);
}

// ---- The hostile server of the other tests ------------------------------------------------------

TEST(HostileServerTest, AnswersHonestlyInTurnAndKeepsTheRequests) {
  HostileServer server;
  server.on("/a", {PlainAnswer{.body = "first", .headers = {{"X-Turn", "1"}}},
                   PlainAnswer{.status = 503, .body = "second"}});
  EXPECT_EQ(get(server.url("/a?q"), "Cookie: c=1\r\n").header("X-Turn"), "1");
  EXPECT_EQ(get(server.url("/a")).status, 503);
  EXPECT_EQ(get(server.url("/a")).body, "second");
  EXPECT_EQ(request("HEAD", server.url("/a")).body, "");
  EXPECT_EQ(get(server.url("/b")).status, 404);
  ASSERT_TRUE(server.waitForRequests(5));
  EXPECT_EQ(server.requests()[0],
            "GET /a?q HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(server.port()) +
                "\r\nConnection: close\r\nCookie: c=1\r\n\r\n");
}

TEST(HostileServerTest, BreaksOffAndTalksNonsense) {
  HostileServer server;
  server.on("/early", CloseBeforeAnswer{});
  server.on("/half", CloseInBody{.body = "half", .promisedBytes = 8});
  server.on("/garbage", Garbage{});
  server.on("/header", HugeHeader{});
  const auto early = get(server.url("/early"));
  EXPECT_EQ(early.head + early.body, "");
  EXPECT_EQ(get(server.url("/half")).header("Content-Length"), "8");
  EXPECT_EQ(get(server.url("/half")).body, "half");
  EXPECT_EQ(get(server.url("/garbage")).status, 0);
  EXPECT_EQ(get(server.url("/header")).header("X-Huge").size(), 1'000'000U);
}

TEST(HostileServerTest, SendsBodiesOfAnySize) {
  HostileServer server;
  server.on("/declared", HugeBody{.bytes = 2'500'000});
  server.on("/undeclared", HugeBody{.bytes = 2'500'000, .length = HugeBody::Length::Undeclared});
  const auto declared = get(server.url("/declared"));
  EXPECT_EQ(declared.header("Content-Length"), "2500000");
  EXPECT_EQ(declared.body.size(), 2'500'000U);
  EXPECT_TRUE(declared.body.ends_with("xx\"}]}"));
  const auto undeclared = get(server.url("/undeclared"));
  EXPECT_EQ(undeclared.header("Content-Length"), "");
  EXPECT_EQ(undeclared.body, declared.body);
}

std::size_t expandedSize(const std::string& gzip) {
  const auto bytes = gtk::GPtr<GInputStream>::adopt(
      g_memory_input_stream_new_from_data(gzip.data(), static_cast<gssize>(gzip.size()), nullptr));
  const auto decompressor =
      gtk::GPtr<GZlibDecompressor>::adopt(g_zlib_decompressor_new(G_ZLIB_COMPRESSOR_FORMAT_GZIP));
  const auto expanded = gtk::GPtr<GInputStream>::adopt(
      g_converter_input_stream_new(bytes.get(), G_CONVERTER(decompressor.get())));
  std::array<char, 65'536> chunk{};
  std::size_t total = 0;
  for (gssize size = 1; size > 0; total += static_cast<std::size_t>(std::max<gssize>(size, 0))) {
    size = g_input_stream_read(expanded.get(), chunk.data(), chunk.size(), nullptr, nullptr);
  }
  return total;
}

TEST(HostileServerTest, SendsGzipBombs) {
  HostileServer server;
  server.on("/small", GzipBomb{.expandedBytes = 10'500'000});
  server.on("/endless", GzipBomb{});
  const auto small = get(server.url("/small"));
  EXPECT_EQ(small.header("Content-Encoding"), "gzip");
  EXPECT_LT(small.body.size(), 20'000U);
  EXPECT_EQ(expandedSize(small.body), 10'500'000U);
  const auto start = rawExchange(server.url("/endless"), "GET /endless HTTP/1.1\r\n\r\n", 100'000);
  EXPECT_EQ(start.size(), 100'000U);
  EXPECT_GT(expandedSize(start.substr(start.find("\r\n\r\n") + 4)), 50'000'000U);
}

TEST(HostileServerTest, DripsIntoTheBodyAndIntoTheHeader) {
  HostileServer server;
  server.on("/body", Drip{.pause = std::chrono::milliseconds{1}});
  server.on("/header", Drip{.place = Drip::Place::Header, .pause = std::chrono::milliseconds{1}});
  const auto body = rawExchange(server.url("/"), "GET /body HTTP/1.1\r\n\r\n", 200);
  EXPECT_NE(body.find("\r\n\r\n   "), std::string::npos);
  const auto header = rawExchange(server.url("/"), "GET /header HTTP/1.1\r\n\r\n", 200);
  EXPECT_NE(header.find("\r\nX-Drip:    "), std::string::npos);
  EXPECT_EQ(header.find("\r\n\r\n"), std::string::npos);
}

TEST(HostileServerTest, RedirectsToOtherHostsAndInCircles) {
  HostileServer other;
  HostileServer server;
  server.on("/away", Redirect{.location = other.url("/landed", "localhost"), .status = 307});
  server.on("/circle", RedirectLoop{});
  EXPECT_EQ(get(server.url("/away")).status, 307);
  EXPECT_EQ(get(server.url("/away")).header("Location"),
            "http://localhost:" + std::to_string(other.port()) + "/landed");
  EXPECT_EQ(get(server.url("/circle")).header("Location"), "/circle?hop=1");
  EXPECT_EQ(get(server.url("/circle?hop=41")).header("Location"), "/circle?hop=42");
}

TEST(HostileServerTest, HangsUpOnWaitingClientsWhenItEnds) {
  auto server = std::make_unique<HostileServer>();
  server->on("/never", NeverAnswer{});
  auto answer = std::async(std::launch::async, [url = server->url("/never")] { return get(url); });
  ASSERT_TRUE(server->waitForRequests(1));
  server.reset();
  EXPECT_EQ(answer.get().head, "");
}

}  // namespace
}  // namespace tavo::test
