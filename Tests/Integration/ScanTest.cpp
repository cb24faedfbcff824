#include <gtkmm.h>

#include <set>

#include <tavo/gtk/GtkPlatform.h>

#include "AdController/ResponseParser/JsonObject.h"
#include "AdPlayer/Scan/Checks.h"
#include "AdPlayer/Scan/ScanPlay.h"
#include "AdPlayer/Scan/ScanReport.h"
#include "AdPlayer/Scan/ScanRun.h"
#include "AdServer/AdServer.h"
#include "Support/HostLoop.h"
#include "Support/Places.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace tavo::test {
namespace {

using namespace adplayer;

using Names = std::set<std::string>;

Names namesOf(const Findings& findings) {
  Names names;
  for (const auto& finding : findings) names.insert(finding.check);
  return names;
}

std::string linesOf(const Findings& findings) {
  std::string lines;
  for (const auto& finding : findings) lines += finding.check + ": " + finding.message + "\n";
  return lines;
}

// Plays creatives on a real screen, as the command does.
class ScanTest : public testing::Test {
 protected:
  ScanTest() { gtk_init(); }

  [[nodiscard]] ScanSubject subject(const std::string& page, const Size& size = {320, 50}) const {
    return {.name = page,
            .domain = server_.baseUrl().substr(7) + "/play",
            .page = page,
            .size = size,
            .server = server_.baseUrl()};
  }

  Recording play(const ScanSubject& subject, ScanSettings settings = {}) const {
    std::optional<Recording> recorded;
    ScanPlay scan{subject, std::move(settings),
                  [&](Recording recording) { recorded = std::move(recording); }};
    scan.start();
    runUntil([&] { return recorded.has_value(); }, std::chrono::seconds{120});
    settleRuntime();
    return recorded.value_or(Recording{});
  }

  // Until everything expected is found, or the time for that is over.
  Findings findingsOf(const std::string& page, const Names& expected,
                      const Size& size = {320, 50}) {
    ScanSettings settings{.watching = Seconds{15}};
    settings.isEnough = [&](const Recording& recording) {
      const bool isLookedOver = std::any_of(
          recording.events.begin(), recording.events.end(),
          [](const InspectionEvent& event) { return event.field("what") == "looked over"; });
      return recording.loaded && isLookedOver && !recording.pings.empty() &&
             recording.pings.back().state == PingState::answered &&
             namesOf(scanned(recording)) == expected;
    };
    return scanned(play(subject(page, size), settings));
  }

  TemporaryFolder folder_;
  std::shared_ptr<Gtk::Application> application_ =
      Gtk::Application::create({}, Gio::Application::Flags::NON_UNIQUE);
  adserver::AdServer server_{folder_.path("campaigns")};
  Runtime runtime_{gtk::makePlatform(
      {.applicationId = "tavo-test", .dataFolder = folder_.path("data"), .assumeReachable = true})};
};

// A film of the samples with tracking that fails, doubles and never comes due.
struct CampaignsOfFilm {
  explicit CampaignsOfFilm(const TemporaryFolder& folder) {
    folder.write("campaigns/film/answer.json",
                 R"({"Ad":[{"AdType":"text/xml","Text":"${a.xml}"}]})");
    folder.write("campaigns/film/campaign.json", R"({"files":{"track/start":{"status":500}}})");
    folder.write("campaigns/film/clip.mp4",
                 contentsOf(sampleCampaigns() + "/vast-preroll/clip.mp4"));
    std::string tracking;
    for (const char* event : {"start", "creativeView", "complete", "pause"}) {
      tracking += "<Tracking event=\"" + std::string{event} + "\"><![CDATA[${server}/track/film/" +
                  event + "]]></Tracking>";
    }
    folder.write("campaigns/film/a.xml",
                 "<VAST version=\"3.0\"><Ad id=\"1\"><InLine>"
                 "<Impression><![CDATA[${server}/track/film/impression]]></Impression>"
                 "<Impression>${server}/track/film/impression</Impression><Creatives><Creative>"
                 "<Linear><Duration>00:00:04</Duration><TrackingEvents>" +
                     tracking +
                     "</TrackingEvents><MediaFiles><MediaFile delivery=\"progressive\" "
                     "type=\"video/mp4\" width=\"320\" height=\"180\">"
                     "${server}/assets/film/clip.mp4</MediaFile></MediaFiles></Linear>"
                     "</Creative></Creatives></InLine></Ad></VAST>");
  }
};

constexpr const char* clean = R"(<!doctype html><html lang="en"><body style="margin:0">
<a href="#more" style="display:block;width:320px;height:50px">Read more</a>
<img alt="A dot" width="9" height="9" src="data:image/gif;base64,R0lGODlhAQABAIAAAAAAAP///ywAAAAAAQABAAACAUwAOw==">
</body></html>)";

TEST_F(ScanTest, FindsTheOneFaultOfACreative) {
  const auto body = [](const std::string& text) {
    return "<!doctype html><html><body style='margin:0'>" + text + "</body></html>";
  };
  const auto script = [&](const std::string& text) {
    return body("<p>Text</p><script>" + text + "</script>");
  };
  const std::vector<std::tuple<std::string, std::string, Names>> cases = {
      {"clean", clean, {}},
      {"error", script("undefinedThing();"), {"script-error"}},
      {"missing", body("<img alt='x' src='gone.png' width='9' height='9'>"), {"resource-missing"}},
      {"leaves",
       script("setTimeout(() => { location.href = 'https://shop.invalid/'; }, 100);"),
       {"navigation-without-tap"}},
      {"store",
       script("setTimeout(() => { location.href = 'market://details?id=x'; }, 100);"),
       {"store-without-tap", "refused"}},
      {"storage", script("localStorage.setItem('a', '1');"), {"storage"}},
      {"fingerprint", script("navigator.hardwareConcurrency;"), {"fingerprinting"}},
      {"plain",
       body("<img alt='x' src='http://cdn.invalid/a.png' width='9' height='9'>"),
       {"resource-missing", "mixed-content", "host-contacted"}},
      {"nameless", body("<img width='30' height='30' src='dot.gif'>"), {"picture-without-text"}},
      {"dialog", script("setTimeout(() => Notification.requestPermission(), 50);"), {"refused"}},
      {"heavy", script("new Image().src = 'large.png';"), {"bytes-before-load"}},
      {"many",
       script("for (let i = 0; i < 12; ++i) new Image().src = 'dot.gif?' + i;"),
       {"requests-before-load"}},
      {"film",
       body("<video aria-label='x' src='nofilm.mp4' width='90' height='40'></video>"),
       {"media-unplayable"}},
  };
  const std::string dot = "GIF89a\x01";
  for (const auto& [name, html, expected] : cases) {
    folder_.write("campaigns/" + name + ".html", html);
  }
  gsize size = 0;
  const gtk::GOwned<guchar, &g_free> gif{
      g_base64_decode("R0lGODlhAQABAIAAAAAAAP///ywAAAAAAQABAAACAUwAOw==", &size)};
  const std::string pixel{reinterpret_cast<const char*>(gif.get()), size};
  folder_.write("campaigns/dot.gif", pixel);
  folder_.write("campaigns/large.png", pixel + std::string(60'000, ' '));
  folder_.write("campaigns/nofilm.mp4", "no film at all");
  for (const auto& [name, html, expected] : cases) {
    const auto findings = findingsOf(name + ".html", expected);
    EXPECT_EQ(namesOf(findings), expected) << name << "\n" << linesOf(findings);
  }
}

TEST_F(ScanTest, TellsWhatChangesUnderOtherConditions) {
  folder_.write("campaigns/turncoat.html", R"(<!doctype html><html><body><p>Text</p><script>
      if (new Date().getFullYear() > 2100) new Image().src = 'dot.gif?later';
      if (navigator.language === 'ja') undefinedThing();
      if (innerWidth > 400) new Image().src = 'wide.gif';</script></body></html>)");
  for (const char* name : {"dot.gif", "wide.gif"}) {
    folder_.write("campaigns/" + std::string{name}, "GIF89a");
  }
  ScanSettings settings{.watching = Seconds{0.5}};
  auto recording = play(subject("turncoat.html"), settings);
  settings.variation = "the clock of a far future";
  settings.pretence = {.clock = Seconds{4e9}};
  recording.again.push_back(play(subject("turncoat.html"), settings));
  settings.variation = "the language ja";
  settings.pretence = {.language = "ja"};
  recording.again.push_back(play(subject("turncoat.html"), settings));
  settings.variation = "a wide slot";
  settings.pretence = {};
  recording.again.push_back(play(subject("turncoat.html", {480, 60}), settings));
  Findings found;
  lookForDifferences(recording, found);
  EXPECT_EQ(found.size(), 3U) << linesOf(found);
  const auto lines = linesOf(found);
  EXPECT_THAT(lines, HasSubstr("far future it fetches"));
  EXPECT_THAT(lines, HasSubstr("language ja it fails: "));
  EXPECT_THAT(lines, HasSubstr("wide slot it fetches"));
}

TEST_F(ScanTest, SeesFlashes) {
  folder_.write("campaigns/flash.html",
                R"(<!doctype html><html><body style="margin:0;background:#000">
      <p style="color:#888">Text</p><script>let on = false;
      setInterval(() => { document.body.style.background = (on = !on) ? '#fff' : '#000'; }, 100);
      </script></body></html>)");
  ScanSettings settings{.watching = Seconds{100}};  // a busy machine draws enough of them some time
  settings.isEnough = [](const Recording& recording) {
    Findings found;
    lookForFlashing(recording, found);
    return !found.empty();
  };
  const auto recording = play(subject("flash.html"), settings);
  EXPECT_GT(flashesPerSecond(recording.lights), 3);
  EXPECT_GT(recording.processorTime.count(), 0);
}

TEST_F(ScanTest, WatchesAFilmToItsEndAndMissesItsTracking) {
  const CampaignsOfFilm film{folder_};
  auto watched = subject("film", {320, 180});
  watched.placement = adserver::Placement::preroll;
  const auto findings = scanned(play(watched));
  EXPECT_THAT(linesOf(findings), HasSubstr("The event creativeView was never sent"));
  EXPECT_THAT(linesOf(findings), HasSubstr("/track/film/start was answered with status 500"));
  EXPECT_THAT(linesOf(findings), HasSubstr("/track/film/impression was sent 2 times"));
  EXPECT_EQ(namesOf(findings), (Names{"tracking-never-due", "tracking-failed", "tracking-doubled"}))
      << linesOf(findings);
}

TEST(ScanRunTest, TakesFilesAndSaysWhatItCannotPlay) {
  const TemporaryFolder folder;
  folder.write(
      "a page.html",
      "<!doctype html>\n<html><body><p>Text</p>\n<script>undefinedThing();</script></body></html>");
  folder.write("binary.html", std::string(100, '\0'));
  const auto scans =
      scanAll({folder.path("a page.html"), folder.path("gone.html"), folder.path("binary.html")},
              {.watching = Seconds{0.5}, .variations = false}, {});
  ASSERT_EQ(scans.size(), 3U);
  ASSERT_EQ(namesOf(scans[0].findings), Names{"script-error"}) << linesOf(scans[0].findings);
  EXPECT_EQ(scans[0].findings[0].place, folder.path("a page.html"));
  EXPECT_EQ(scans[0].findings[0].line, 3);
  EXPECT_THAT(scans[1].refusal, HasSubstr("there is no such file"));
  EXPECT_THAT(scans[2].refusal, HasSubstr("binary"));
  EXPECT_EQ(worst({scans[1]}), Severity::error);
}

// What the checks make of events that a play brings about only with luck or time.
TEST(ScanChecksTest, ReadsOtherEvents) {
  using Kind = InspectionKind;
  const std::vector<std::pair<InspectionEvent, Names>> cases = {
      {{.kind = Kind::pause, .text = "Paused, and to be ended: memory"}, {"limit-passed"}},
      {{.kind = Kind::process, .text = "crashed"}, {"limit-passed"}},
      {{.kind = Kind::command, .text = "expnd", .fields = {{"outcome", "unknown"}}}, {"refused"}},
      {{.kind = Kind::command,
        .text = "open",
        .fields = {{"name", "open"}, {"outcome", "carried out"}, {"? url", "https://a.example/"}}},
       {"navigation-without-tap"}},
      {{.kind = Kind::media, .text = "none", .fields = {{"dropped", "video/webm"}}},
       {"media-unplayable"}},
      {{.kind = Kind::wrapper, .text = "hop 2 failed", .fields = {{"why", "failed: 404"}}},
       {"wrapper-failed"}},
      {{.kind = Kind::classified,
        .text = "page",
        .fields = {{"dropped", "W = 3: has no effect"}, {"dropped", "w = 3: not a known key"}}},
       {"answer-dropped"}},
      {{.kind = Kind::request, .text = "", .fields = {{"url", "https://b.example/x"}}},
       {"host-contacted"}},
  };
  for (const auto& [event, expected] : cases) {
    Recording recording{.name = "x", .events = {event}, .loaded = Seconds{1}};
    EXPECT_EQ(namesOf(scanned(recording)), expected) << event.text;
  }
  const InspectionEvent ad{.kind = Kind::answer, .text = "", .fields = {{"status", "404"}}};
  EXPECT_EQ(namesOf(scanned({.events = {ad}, .loaded = Seconds{1}})), Names{});
  EXPECT_EQ(namesOf(scanned({.events = {ad, ad}, .loaded = Seconds{1}})),
            Names{"resource-missing"});
  EXPECT_EQ(namesOf(scanned({.failure = "1002 No ad"})), Names{"no-ad"});
  EXPECT_EQ(
      namesOf(scanned({.loaded = Seconds{1}, .length = Seconds{4}, .processorTime = Seconds{3}})),
      Names{"processor-time"});
}

TEST(ScanChecksTest, CountsFlashesOfAQuarterOfTheSlot) {
  const auto flickering = [](double hertz, int cells, float bright) {
    std::vector<Light> lights;
    for (int frame = 0; frame < 60; ++frame) {
      const bool on = static_cast<int>(frame / 30.0 * hertz * 2) % 2 == 1;
      Light light{Seconds{frame / 30.0}, std::vector<float>(144, 0.2F)};
      for (int cell = 0; cell < cells; ++cell) {
        light.luminance[static_cast<std::size_t>(cell)] = on ? bright : 0.2F;
      }
      lights.push_back(light);
    }
    return flashesPerSecond(lights);
  };
  EXPECT_NEAR(flickering(2, 144, 0.9F), 2, 0.6);
  EXPECT_NEAR(flickering(5, 144, 0.9F), 5, 0.6);
  EXPECT_EQ(flickering(5, 144, 0.25F), 0) << "too little change";
  EXPECT_EQ(flickering(5, 30, 0.9F), 0) << "too small a part";
  EXPECT_EQ(flashesPerSecond({}), 0);
}

TEST(ScanReportTest, WritesTextSarifAndJunit) {
  const std::vector<Scanned> scans = {
      {.name = "a \"b\".html",
       .recording = {.name = "a \"b\".html", .size = {320, 50}, .loaded = Seconds{0.5}},
       .findings = {{"script-error", Severity::error, "x < y", "a \"b\".html", 3, 7},
                    {"storage", Severity::note, "Uses a", "", 0, 0}}},
      {.name = "gone.html", .refusal = "gone.html: there is no such file."}};
  const auto text = textReport(scans[0]);
  EXPECT_THAT(text, HasSubstr("banner 320 x 50, loaded after 0.50 s"));
  EXPECT_THAT(text, HasSubstr("at a \"b\".html:3:7\n"));
  EXPECT_THAT(textReport(scans[1]), HasSubstr("error    gone.html: there is no such file"));
  EXPECT_THAT(summaryOf(scans), HasSubstr("2 creatives: 2 errors, 0 warnings, 1 note."));
  const auto sarif = sarifReport(scans);
  EXPECT_TRUE(JsonObject::read(sarif, 64).has_value());
  EXPECT_THAT(sarif,
              HasSubstr(R"("uri":"a%20%22b%22.html"},"region":{"startLine":3,"startColumn":7})"));
  const auto junit = junitReport(scans);
  EXPECT_THAT(junit, HasSubstr(R"(<testsuite name="a &quot;b&quot;.html")"));
  EXPECT_THAT(junit, HasSubstr("x &lt; y"));
  EXPECT_EQ(worst(scans), Severity::error);
  EXPECT_EQ(worst({scans[0]}), Severity::error);
  EXPECT_EQ(worst({}), std::nullopt);
}

}  // namespace
}  // namespace tavo::test
