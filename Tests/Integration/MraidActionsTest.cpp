// What a creative can have done and be told beyond its own size: each command ends where a person
// would see it, and each answer is read back from the page.

#include "RequestEnrichment/XDeviceSupportProperties.h"
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
  std::ifstream clip{sampleCampaigns() + "/vast-preroll/clip.mp4", std::ios::binary};
  server.on("/clip.mp4", PlainAnswer{.body = {std::istreambuf_iterator<char>{clip}, {}},
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
}

TEST_F(MraidActionsTest, StoresAPictureThatAPersonAgreesTo) {
  HostileServer server;
  std::ifstream file{sampleCampaigns() + "/image-banner/banner.png", std::ios::binary};
  const std::string picture{std::istreambuf_iterator<char>{file}, {}};
  server.on("/tea.png", PlainAnswer{.body = picture, .contentType = "image/png"});
  show("ad");
  for (const char* answer : {"No_Title", "Yes_Title"}) {
    tapAndDo("mraid.storePicture('" + server.url("/tea.png") + "')");
    ASSERT_TRUE(press(answer)) << answer;
  }
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
  EXPECT_GT(fs::file_size(stored().front()), 0U);
}

TEST_F(MraidActionsTest, EntersACalendarEventThatAPersonSaves) {
  show("ad");
  tapAndDo(
      "mraid.createCalendarEvent({ description: 'Tea at 5', location: 'The \"Halvern\"',"
      " start: '2030-01-02T03:04:00Z', end: '2030-01-02T04:00:00Z' })");
  ASSERT_TRUE(press("Save"));
  const auto files = received();
  ASSERT_EQ(files.size(), 1U);
  std::string path = files.front();
  if (path.starts_with("file://")) path.erase(0, 7);
  std::ifstream file{path};
  const std::string event{std::istreambuf_iterator<char>{file}, {}};
  EXPECT_THAT(event, HasSubstr("Tea at 5"));
  EXPECT_THAT(event, HasSubstr("The \"Halvern\""));
  EXPECT_THAT(event, HasSubstr("20300102T030400Z"));
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

TEST_F(MraidActionsTest, AnAdInTwoPartsIsRefused) {
  show("ad");
  heard();
  tapAndDo("mraid.expand('http://127.0.0.1:9/second.html')");
  EXPECT_THAT(heard(), testing::EndsWith(" expand"));
  EXPECT_EQ(evaluate("mraid.getState()"), "default");
  EXPECT_THAT(host().calls(), ElementsAre("shouldDisplay?", "didLoad"));
}

TEST_F(MraidActionsTest, CustomCloseIsRememberedAndHidesOnlyThePicture) {
  show("ad");
  evaluate("mraid.useCustomClose(true); mraid.setExpandProperties({ width: 200, height: 100 })");
  EXPECT_EQ(evaluate("JSON.stringify(mraid.getExpandProperties())"),
            R"({"isModal":true,"width":200,"height":100,"useCustomClose":true})");
  for (const bool custom : {true, false}) {
    tapAndDo("mraid.useCustomClose(" + std::string{custom ? "true" : "false"} +
             "); mraid.expand()");
    ASSERT_TRUE(becomesSized("expanded", width(), height()));
    GtkWidget* button = buttonAt(host().window(), width() - 15, 8 + 15);
    ASSERT_NE(button, nullptr);
    const auto pictures = widgetsBelow<Gtk::Picture>(
        *Glib::wrap(button),
        [](Gtk::Picture& picture) { return picture.get_paintable() != nullptr; });
    EXPECT_EQ(pictures.empty(), custom);
    EXPECT_TRUE(pressButtonAt(host().window(), width() - 15, 8 + 15));
    ASSERT_TRUE(becomesSized("default", 320, 50));
  }
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

TEST_F(MraidActionsTest, HearsWhetherItCanBeSeenWhenItAsks) {
  show("ad");
  heard();
  for (const bool seen : {false, true}) {
    host().banner()->setHidden(!seen);
    evaluate(
        "var frame = document.createElement('iframe'); frame.src = 'mraid://updateCurrentPosition';"
        "document.body.appendChild(frame);");
    ASSERT_TRUE(becomes("mraid.isViewable()", seen ? "true" : "false"));
  }
  EXPECT_EQ(heard(), "viewableChange false\nviewableChange true");
}

TEST_F(MraidActionsTest, AListenerThatWasRemovedHearsNothing) {
  show("ad");
  evaluate(
      "function first(state) { heard.push('first ' + state) }"
      "function second(state) { heard.push('second ' + state) }"
      "mraid.removeEventListener('stateChange'); mraid.removeEventListener('sizeChange');"
      "mraid.addEventListener('stateChange', first);"
      "mraid.addEventListener('stateChange', second);");
  heard();
  tapAndDo("mraid.expand()");
  ASSERT_TRUE(becomesSized("expanded", width(), height()));
  evaluate("mraid.removeEventListener('stateChange', first); mraid.close()");
  ASSERT_TRUE(becomesSized("default", 320, 50));
  EXPECT_EQ(heard(), "first expanded\nsecond expanded\nsecond default");
}

}  // namespace
}  // namespace tavo::test
