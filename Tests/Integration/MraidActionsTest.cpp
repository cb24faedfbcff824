// What a creative can have done and be told beyond its own size: each command ends where a person
// would see it, and each answer is read back from the page.

#include <sstream>

#include <tavo/XErrorHandler.h>

#include "Gtk/Services/GtkFolders.h"
#include "Gtk/Services/HelperProgram.h"
#include "RequestEnrichment/XDeviceSupportProperties.h"
#include "Services/Folders.h"
#include "Support/CreativeScreenTest.h"
#include "Support/HostileServer.h"
#include "Support/Places.h"
#include "Support/StandInHandlers.h"
#include "UserInterface/Movie/MovieViewController.h"

namespace tavo::test {
namespace {

namespace fs = std::filesystem;

StandInHandlers handlers;  // before GLib reads where the user's folders are

class MraidActionsTest : public CreativeScreenTest {
 protected:
  MraidActionsTest() { handlers.clear(); }

  static std::vector<std::string> received() {
    host().runUntil([] { return !handlers.received().empty(); });
    return handlers.received();
  }

  // Presses a button of whatever window has it, once it is there.
  static bool press(const std::string& label) {
    bool pressed = false;
    return host().runUntil([&] {
      const auto all = Gtk::Window::list_toplevels();
      pressed = pressed || std::any_of(all.begin(), all.end(), [&](auto* window) {
                  return window->get_mapped() && pressButton(*window, label);
                });
      return pressed;
    });
  }

  static ViewController* shown() {
    return host().banner()->getRootViewController()->presentedViewController();
  }

  // Both sizes and the default position, as the page has them.
  static std::string places() {
    return evaluate(
        "[mraid.getMaxSize(), mraid.getScreenSize(), mraid.getDefaultPosition(),"
        " mraid.getCurrentPosition()].map(function (place) {"
        "  return ['x', 'y', 'width', 'height'].map(function (key) {"
        "    return key in place ? place[key] : '-';"
        "  }).join(' '); }).join(', ')");
  }
};

TEST_F(MraidActionsTest, OpensUrlsInOtherApplications) {
  show("ad");
  tapAndDo("mraid.open('tel:123')");
  EXPECT_THAT(received(), ElementsAre("tel:123"));
}

TEST_F(MraidActionsTest, OpensTheWindowsThatATapAsksFor) {
  show("ad");
  evaluate("frame = document.createElement('iframe'); document.body.append(frame);");
  for (const char* opener : {"window", "frame.contentWindow"}) {
    handlers.clear();
    const std::string open = std::string{opener} + ".open('http://127.0.0.1:9/click')";
    evaluate(open + "; " + open);
    EXPECT_THAT(handlers.received(), testing::IsEmpty());
    tapAndDo(open);
    EXPECT_THAT(received(), ElementsAre("http://127.0.0.1:9/click")) << opener;
  }
}

TEST_F(MraidActionsTest, PlaysAVideoOverTheWindow) {
  HostileServer server;
  server.on("/clip.mp4",
            PlainAnswer{.body = contentsOf(sampleCampaigns() + "/vast-preroll/clip.mp4"),
                        .contentType = "video/mp4"});
  show("ad");
  tapAndDo("mraid.playVideo('" + server.url("/clip.mp4") + "?a=b&c=%20d')");
  ASSERT_TRUE(
      host().runUntil([] { return dynamic_cast<MovieViewController*>(shown()) != nullptr; }));
  ASSERT_TRUE(host().runUntil([&] { return !server.requests().empty(); }));
  EXPECT_THAT(server.requests().front(), HasSubstr("/clip.mp4?a=b&c=%20d "));
  EXPECT_TRUE(pressEscape());
  EXPECT_EQ(shown(), nullptr);
  EXPECT_EQ(evaluate("mraid.getState()"), "default");
  tapAndDo("mraid.playVideo('" + server.url("/clip.mp4") + "')");
  // The second of the clip's seven bars stands in the middle of the window.
  EXPECT_TRUE(host().runUntil([] {
    const Color pixel = adplayer::Screenshot{host().window()}.pixel(width() * 3 / 14, height() / 2);
    return pixel.red > 0.9F && pixel.green > 0.9F && pixel.blue < 0.15F;
  }));
  host().keepPicture("click-video");
  EXPECT_TRUE(host().runUntil([] { return shown() == nullptr; })) << "it goes at its end";
}

TEST_F(MraidActionsTest, StoresAPictureThatAPersonAgreesTo) {
  HostileServer server;
  server.on("/tea.png",
            PlainAnswer{.body = contentsOf(sampleCampaigns() + "/image-banner/banner.png"),
                        .contentType = "image/png"});
  show("ad");
  heard();
  const std::string ask = "mraid.storePicture('" + server.url("/tea.png") + "')";
  tapAndDo(ask);
  ASSERT_TRUE(press("No_Title"));
  ASSERT_TRUE(becomes("heard.join()", "error The user canceled the action. storePicture"));
  tapAndDo(ask);
  ASSERT_TRUE(press("Yes_Title"));
  const auto stored = [] {
    std::vector<fs::path> all;
    std::error_code none;
    for (const auto& entry : fs::recursive_directory_iterator{handlers.picturesFolder(), none}) {
      if (entry.is_regular_file()) all.push_back(entry.path());
    }
    return all;
  };
  ASSERT_TRUE(host().runUntil([&] { return stored().size() == 1; }));
  EXPECT_EQ(server.requests().size(), 1U) << "a refused picture is not even fetched";
  EXPECT_EQ(contentsOf(stored().front()),
            contentsOf(sampleCampaigns() + "/image-banner/banner.png"));
}

// The lines that a reader of ours, a script on another program's libraries, says of a file.
Lines readBack(const std::string& reader, const std::string& file) {
  const std::string script = testData() + "/readers/" + reader + ".py";
  const auto output = gtk::runHelperProgram({"python3", script, file}, Seconds{60});
  Lines lines;
  std::istringstream text{output.value_or("the reader refused it")};
  for (std::string line; std::getline(text, line);) lines.push_back(line);
  return lines;
}

// With more than a line, letters beyond ASCII, and everything that the format gives a meaning to.
TEST_F(MraidActionsTest, EntersACalendarEventThatAPersonSaves) {
  show("ad");
  tapAndDo(
      "mraid.createCalendarEvent({ description: 'Premi\u00e8re, one; two: \\\\ BEGIN:VEVENT',"
      " summary: '\u00dcn\u00ef ' + new Array(201).join('x'), location: 'Hall \"1\"',"
      " start: '2026-11-21T20:00:00Z', end: '2026-11-21T22:30:00Z', reminder: '-600000' })");
  ASSERT_TRUE(press("Save"));
  const auto files = received();
  ASSERT_EQ(files.size(), 1U);
  std::string path = files.front();
  if (path.starts_with("file://")) path.erase(0, 7);
  const auto lines = readBack("event", path);
  EXPECT_THAT(lines, IsSupersetOf({"VCALENDAR.VERSION=2.0", "VEVENT.DTSTART=20261121T200000Z",
                                   "VEVENT.DTEND=20261121T223000Z", "VEVENT.LOCATION=Hall \"1\"",
                                   "VALARM.TRIGGER=-PT10M", "VALARM.ACTION=DISPLAY"}));
  EXPECT_THAT(lines, Contains("VEVENT.DESCRIPTION=\u00dcn\u00ef " + std::string(200, 'x')));
  EXPECT_THAT(lines,
              Contains(AllOf(StartsWith("VEVENT.SUMMARY="), testing::EndsWith("BEGIN:VEVENT"))));
}

TEST_F(MraidActionsTest, TheErrorLogLiesAmongTheUsersData) {
  XErrorHandler::addErrorWithErrorId("1004", "URI was not valid; \"quoted\"");
  const auto folder = Runtime::current().platform().folders->documentFolders().back();
  EXPECT_THAT(readBack("errorlog", folder + "/CorvaneTAVOSDKDB.sqlite"),
              ElementsAre("ErrorLogs ['errorId', 'errorDesc', 'timeStamp']",
                          R"(('1004', 'URI was not valid; "quoted"'))"));
  const gtk::GtkFolders folders{gtk::GtkFolders::defaultFolder("org.example.App")};
  const auto all = folders.documentFolders();
  ASSERT_THAT(all, ElementsAre(std::string{g_get_user_data_dir()} + "/org.example.App"));
  EXPECT_EQ(fs::status(all.back()).permissions() & fs::perms::others_all, fs::perms::none);
}

TEST_F(MraidActionsTest, AnEditorGoesWithItsSlot) {
  show("ad");
  tapAndDo("mraid.createCalendarEvent({ description: 'Tea', start: '2030-01-02T03:04:00Z' })");
  ASSERT_TRUE(host().runUntil([] { return shown() != nullptr; }));
  host().makeBanner();
  EXPECT_TRUE(host().runUntil([] { return shown() == nullptr; }));
  EXPECT_FALSE(pressEscape());
}

TEST_F(MraidActionsTest, ABrowserGoesWithTheExpandedAdThatClosesBelowIt) {
  HostileServer server;
  server.on("/", PlainAnswer{.body = "<title>Shop</title>", .contentType = "text/html"});
  host().settings->shouldOpenClickThroughURLInAppBrowser = true;
  show("ad");
  tapAndDo("mraid.expand()");
  ASSERT_TRUE(becomesSized("expanded", width(), height()));
  tapAndDo("mraid.open('" + server.url("/") + "')");
  ASSERT_TRUE(host().runUntil([] { return host().banner()->appBrowserOpen(); }));
  ASSERT_TRUE(host().runUntil([] { return shown()->presentedViewController() != nullptr; }));
  evaluate("mraid.close()");
  ASSERT_TRUE(becomesSized("default", 320, 50));
  EXPECT_EQ(shown(), nullptr);
  EXPECT_FALSE(host().banner()->appBrowserOpen());
  EXPECT_THAT(host().calls(), ElementsAre("shouldDisplay?", "didLoad", "didExpand", "didCollapse"));
}

TEST_F(MraidActionsTest, TellsWhatTheMachineCanDo) {
  const std::string ask =
      "['sms', 'tel', 'calendar', 'storePicture', 'inlineVideo', 'levitation']"
      ".map(mraid.supports).join()";
  show("ad");
  EXPECT_EQ(evaluate(ask), "true,true,true,true,true,false");
  handlers.setRegistered("x-scheme-handler/sms", false);
  handlers.setRegistered("text/calendar", false);
  ASSERT_TRUE(host().runUntil([] {
    return !XDeviceSupportProperties::defaultProperty(Runtime::current().platform())
                .deviceSupportsSms;
  }));
  host().makeBanner();
  show("ad");
  EXPECT_EQ(evaluate(ask), "false,true,false,true,true,false");
  handlers.setRegistered("x-scheme-handler/sms", true);
  handlers.setRegistered("text/calendar", true);
}

TEST_F(MraidActionsTest, PlacesAreTrueInEveryState) {
  const std::string screen = "- - " + std::to_string(width()) + ' ' + std::to_string(height());
  const std::string both = screen + ", " + screen + ", ";
  const std::string full = "0 0 " + std::to_string(width()) + ' ' + std::to_string(height());
  const std::string slot = "20 30 320 50, ";
  host().column().set_margin_top(30);
  host().makeBanner({500, 900, 320, 50});  // a host's own place means nothing in a layout
  show("ad");
  EXPECT_EQ(host().banner()->frame(), (Rect{20, 30, 320, 50}));
  EXPECT_EQ(host().slot().get_width(), 320);
  EXPECT_EQ(places(), both + slot + "0 0 320 50");
  evaluate("resizeTo(300, 250, 0, 0, 'top-right')");
  ASSERT_TRUE(becomesSized("resized", 300, 250));
  EXPECT_EQ(places(), both + slot + "0 0 300 250");
  tapAndDo("mraid.expand()");
  ASSERT_TRUE(becomesSized("expanded", width(), height()));
  EXPECT_EQ(places(), both + slot + full);
  evaluate("mraid.close()");
  ASSERT_TRUE(becomesSized("default", 320, 50));
  EXPECT_EQ(places(), both + slot + "0 0 320 50");
  host().column().set_margin_top(0);
  EXPECT_TRUE(becomes("mraid.getDefaultPosition().y", "0"));
}

TEST_F(MraidActionsTest, AForcedOrientationIsTheExpandedAdsOwn) {
  show("ad");
  tapAndDo("mraid.expand()");
  ASSERT_TRUE(becomesSized("expanded", width(), height()));
  heard();
  const std::pair<const char*, int> cases[] = {
      {"landscape", 240}, {"portrait", height()}, {"none", height()}};
  for (const auto& [orientation, tall] : cases) {
    evaluate("mraid.setOrientationProperties({ allowOrientationChange: false, forceOrientation: '" +
             std::string{orientation} + "' })");
    EXPECT_EQ(evaluate("JSON.stringify(mraid.getOrientationProperties())"),
              R"({"allowOrientationChange":false,"forceOrientation":")" + std::string{orientation} +
                  "\"}");
    EXPECT_TRUE(becomesSized("expanded", width(), tall));
    const int top = (height() - tall) / 2;
    EXPECT_TRUE(host().runUntil([&] { return nameAt(width() - 15, top + 8 + 15) != "no button"; }));
    host().keepPicture(std::string{"forced-"} + orientation);
  }
  EXPECT_EQ(heard(), "sizeChange " + std::to_string(width()) + " 240\nsizeChange " +
                         std::to_string(width()) + " " + std::to_string(height()));
  evaluate("mraid.close()");
  ASSERT_TRUE(becomesSized("default", 320, 50));
  EXPECT_THAT(host().calls(), ElementsAre("shouldDisplay?", "didLoad", "didExpand", "didCollapse"));
}

}  // namespace
}  // namespace tavo::test
