// What clicks may carry: whatever it is, it ends in a refusal or in the error that is meant for it,
// on the real services and with a real creative that hears of it.

#include <filesystem>
#include <fstream>
#include <sstream>

#include "AdController/AdGenerator/XMRAIDEventEmitter.h"
#include "ClickToAction/XPictureManager.h"
#include "Gtk/Services/GtkApplication.h"
#include "Gtk/Sheets/GtkAlerts.h"
#include "Services/Composers.h"
#include "Services/Folders.h"
#include "Services/PhotoAlbum.h"
#include "Support/GtkHost.h"
#include "Support/HostileServer.h"
#include "Support/Places.h"
#include "Support/StandInHandlers.h"
#include "Support/Testing.h"
#include "Support/WidgetTree.h"
#include "UserInterface/WebView/InAppBrowser/XInAppBrowser.h"

namespace tavo::test {
namespace {

namespace fs = std::filesystem;

StandInHandlers handlers;  // before GLib reads where the user's folders are

const std::string oneMegabyte(1'000'000, 'x');

std::string campaignOfCreative(const TemporaryFolder& folder) {
  const fs::path campaign = folder.path("errors");
  fs::create_directories(campaign);
  fs::copy_file(testData() + "/creatives/errors.html", campaign / "creative.html");
  std::ofstream{campaign / "answer.json"}
      << R"({"Ad": [{"AdType": "text/html", "Text": "${creative.html}"}]})";
  return folder.path("");
}

class HostileClicks : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    folder_ = std::make_unique<TemporaryFolder>();
    shared_ = std::make_unique<GtkHost>(campaignOfCreative(*folder_));
    host().runUntil([] { return host().window().get_mapped() && host().window().get_width() > 0; });
    host().load("errors");
    host().runUntil([] { return !host().calls().empty() && host().calls().back() == "didLoad"; });
  }
  static void TearDownTestSuite() {
    shared_.reset();
    folder_.reset();
  }
  HostileClicks() {
    handlers.clear();
    fs::remove_all(handlers.picturesFolder());
    evaluate("heard = []");
  }
  ~HostileClicks() override {
    while (pressKey(host().window(), GDK_KEY_Escape)) settle();
  }

  static GtkHost& host() { return *shared_; }
  static XAdView& ad() { return *host().banner(); }
  static void settle() {
    bool settled = false;
    Runtime::current().platform().runLoop->post([&] { settled = true; });
    host().runUntil([&] { return settled; });
  }
  static std::string evaluate(const std::string& script) {
    const auto page = ad().webViewInstance();
    if (!page) return "no page";
    std::optional<std::string> answer;
    page->evaluate(script, [&](const std::string& result) { answer = result; });
    EXPECT_TRUE(host().runUntil([&] { return answer.has_value(); }));
    return answer.value_or("no answer");
  }
  // What the creative was told last; waits until there is something.
  static std::string toldCreative() {
    std::string last;
    host().runUntil([&] {
      if (last.empty()) last = evaluate("heard.pop() || ''");
      return !last.empty();
    });
    return last;
  }
  static ViewController* shown() { return ad().getRootViewController()->presentedViewController(); }
  static bool forEachWindow(const std::function<bool(Gtk::Window&)>& found) {
    const auto all = Gtk::Window::list_toplevels();
    return std::any_of(all.begin(), all.end(),
                       [&](auto* window) { return window->get_mapped() && found(*window); });
  }
  // Presses a button of a sheet or an alert once it is there, and waits until it is gone: the next
  // sheet may have one like it.
  static bool press(const std::string& label) {
    bool pressed = false;
    host().runUntil([&] {
      pressed = pressed || forEachWindow([&](auto& window) { return pressButton(window, label); });
      return pressed;
    });
    return pressed && host().runUntil([&] {
      return !forEachWindow([&](auto& window) {
        return !widgetsBelow<Gtk::Button>(window, [&](Gtk::Button& button) {
                  return button.get_label().raw() == label;
                }).empty();
      });
    });
  }
  // What has reached other applications, once one that is known to arrive has.
  static std::vector<std::string> receivedBefore(const std::string& last) {
    EXPECT_TRUE(Runtime::current().platform().application->openUrl(Url::parse(last)));
    host().runUntil([&] {
      const auto all = handlers.received();
      return std::find(all.begin(), all.end(), last) != all.end();
    });
    auto all = handlers.received();
    std::erase(all, last);
    return all;
  }

 private:
  static inline std::unique_ptr<TemporaryFolder> folder_;
  static inline std::unique_ptr<GtkHost> shared_;
};

TEST_F(HostileClicks, WhatNoApplicationCanTakeGoesNowhere) {
  const std::string texts[] = {"",
                               "foo:1",
                               "javascript:alert(1)",
                               "file:///etc/passwd",
                               "tel:" + oneMegabyte,
                               "http://127.0.0.1:1/" + oneMegabyte,
                               "data:text/html,x",
                               "%",
                               std::string("\0\x01\x7f", 3)};
  host().settings->shouldOpenClickThroughURLInAppBrowser = false;
  for (const auto& text : texts) {
    const Url url = Url::fromText(text);
    ad().openDiallerWithUrl(url);
    ad().makeFaceTimeCallWithUrl(url);
    ad().openAppStoreWithURL(url);
    ad().openUrlInBrowser(url);
    EXPECT_EQ(shown(), nullptr) << text.substr(0, 20);
  }
  EXPECT_THAT(receivedBefore("tel:1"), IsEmpty());
}

TEST_F(HostileClicks, DraftsLeaveAsTheUserSawThem) {
  struct Row {
    const char* url;
    const char* received;
  };
  const Row rows[] = {
      {"sms:1%0d%0a2,3?body=a%0Ab", "sms:1%250d%250a2,3?body=a%0Ab"},
      {"sms:1?body=50%", "sms:1?body=50%25"},
      {"sms:1?body=%4", "sms:1?body=%254"},
      {"sms:1\r\n2&body=%00%ff%1b[2J", "sms:1%250D%250A2?body=%EF%BF%BD%EF%BF%BD%20%5B2J"},
      {"mailto:a@b?subject=%zz&body=%", "mailto:a@b?subject=%2525zz&body=%2525"},
      {"mailto:a%0aBcc:x@y?subject=S%0d%0aTo:z",
       "mailto:a%250aBcc%3Ax@y?subject=S%250d%250aTo%3Az"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.url);
    handlers.clear();
    const Url url = Url::fromText(row.url);
    url.scheme() == "sms" ? ad().sendSMSWithUrl(url) : ad().sendEmailWithUrl(url);
    ASSERT_TRUE(press("Send"));
    EXPECT_TRUE(host().runUntil([] { return !handlers.received().empty(); }));
    EXPECT_THAT(handlers.received(), ElementsAre(row.received));
    settle();
  }
  ad().sendSMSWithUrl(Url::fromText("sms:" + oneMegabyte + "?body=" + oneMegabyte));
  ad().sendEmailWithUrl(Url::fromText("mailto:" + oneMegabyte + "?body=" + oneMegabyte));
  ASSERT_TRUE(press("Send"));
  settle();
  EXPECT_EQ(shown(), nullptr);
}

TEST_F(HostileClicks, EventsThatCannotBeReadAreReported) {
  for (const std::string& text :
       {std::string{}, std::string(100'000, '{'), std::string(100'000, '['),
        "{\"description\":\"" + oneMegabyte, std::string{R"({"reminder":5})"}, oneMegabyte}) {
    ad().createCalendarEvent(text);
    EXPECT_EQ(toldCreative(), "createCalendarEvent: Unable to parse event data.")
        << text.substr(0, 20);
  }
  EXPECT_EQ(shown(), nullptr);
}

TEST_F(HostileClicks, EventsThatCannotBeSavedAreReported) {
  const auto save = [](const std::string& event) {
    ad().createCalendarEvent(event);
    EXPECT_TRUE(press("Save"));
    return toldCreative();
  };
  EXPECT_EQ(save(R"({"start":"2026-11-21T10:00:00Z","end":"2026-11-21T09:00:00Z"})"),
            "createCalendarEvent: The event ends before it starts.");
  handlers.setRegistered("text/calendar", false);
  EXPECT_EQ(save(R"({"description":"x"})"),
            "createCalendarEvent: There is no calendar application.");
  handlers.setRegistered("text/calendar", true);
  const auto data = Runtime::current().platform().folders->documentFolders().back();
  std::ofstream{data + "/events"} << "a file where a folder should be";
  EXPECT_THAT(save(R"({"description":"x"})"),
              StartsWith("createCalendarEvent: The event could not be written: "));
  fs::remove(data + "/events");
  EXPECT_THAT(receivedBefore("tel:1"), IsEmpty());
}

// A date that no calendar has counts as none: the event is now, or an hour long.
TEST_F(HostileClicks, DatesOutOfRangeEndInAnEventOfTheUsers) {
  for (const char* date :
       {"99999-13-45T99:99:99Z", "0000-00-00T00:00:00Z", "-1T-1", "T", "2026-02-31T25:61:61+99:99",
        "9999-12-31T23:59:59Z", "0001-01-01T00:00:00Z"}) {
    SCOPED_TRACE(date);
    const std::string text{date};
    handlers.clear();
    std::string event = R"({"start":")";
    event.append(text).append(R"(","reminder":")").append(text).append(R"("})");
    ad().createCalendarEvent(event);
    ASSERT_TRUE(press("Save"));
    host().runUntil([] { return !handlers.received().empty(); });
    EXPECT_EQ(handlers.received().size(), 1U);
    settle();
    EXPECT_EQ(shown(), nullptr);
  }
}

TEST_F(HostileClicks, PicturesThatAreNoneAreReported) {
  using namespace std::string_literals;
  const std::string huge =
      "\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\x75\x30\0\0\x75\x30\x08\x06\0\0\0"
      "\x6c\x6b\xb5\x2f"s;  // the head of 30,000 x 30,000 pixels
  HostileServer server;
  server.on("/text", PlainAnswer{.body = "<html>", .contentType = "image/png"});
  server.on("/huge", PlainAnswer{.body = huge, .contentType = "image/png"});
  server.on("/empty", PlainAnswer{.contentType = "image/png"});
  server.on("/gone", PlainAnswer{.status = 404, .body = "gone", .contentType = "text/html"});
  server.on("/endless", HugeBody{});
  server.on("/bomb", GzipBomb{});
  server.on("/cut", CloseInBody{});
  std::vector<std::string> told;
  const auto events = std::make_shared<XPictureManagerDelegate>(XPictureManagerDelegate{
      .pictureManagerDidFailToStorePictureWithError = [&](XPictureManager&, const Error& error) {
        told.push_back(error.domain + " " + std::to_string(error.code));
      }});
  const auto manager = XPictureManager::create(Runtime::current().environment(), events);
  const std::string noPicture = std::string{albumErrorDomain} + " 1";
  const auto transport = [](TransportError code) {
    std::string text{transportErrorDomain};
    return text.append(" ").append(std::to_string(static_cast<int>(code)));
  };
  std::ostringstream picture;
  picture
      << std::ifstream{sampleCampaigns() + "/image-banner/banner.png", std::ios::binary}.rdbuf();
  server.on("/picture", PlainAnswer{.body = picture.str(), .contentType = "image/png"});
  std::ofstream{handlers.picturesFolder()} << "a file where a folder should be";
  const std::pair<std::string, std::string> rows[] = {
      {"/picture", std::string{albumErrorDomain} + " 2"},
      {"/text", noPicture},
      {"/huge", noPicture},
      {"/empty", noPicture},
      {"/gone", noPicture},
      {"/endless", transport(TransportError::bodyTooLarge)},
      {"/bomb", transport(TransportError::bodyTooLarge)},
      {"/cut", transport(TransportError::connectionLost)},
  };
  for (const auto& [path, error] : rows) {
    SCOPED_TRACE(path);
    told.clear();
    manager->storePicture({{"url", server.url(path)}});
    ASSERT_TRUE(press("Yes_Title"));
    EXPECT_TRUE(host().runUntil([&] { return !told.empty(); }));
    EXPECT_THAT(told, ElementsAre(error));
  }
  EXPECT_FALSE(fs::is_directory(handlers.picturesFolder()));
}

TEST_F(HostileClicks, TheCreativeHearsOfItsPicture) {
  HostileServer server;
  server.on("/", PlainAnswer{.body = "GIF89a", .contentType = "image/gif"});
  evaluate("mraid.storePicture('" + server.url("/") + "')");
  ASSERT_TRUE(press("Yes_Title"));
  EXPECT_EQ(toldCreative(), "storePicture: There is no picture.");
}

TEST_F(HostileClicks, VideosAndPagesThatAreNoneCanBeLeft) {
  for (const std::string& text :
       {std::string{"file:///etc/passwd"}, std::string{"javascript:alert(1)"},
        std::string{"foo:bar"}, "http://127.0.0.1:1/" + oneMegabyte}) {
    ad().handlePlayVideoWithURL(Url::fromText(text));
    EXPECT_TRUE(host().runUntil([] { return shown() == nullptr; })) << text.substr(0, 20);
  }
  host().settings->shouldOpenClickThroughURLInAppBrowser = true;
  const HostileServer gone;
  ad().openUrlInBrowser(Url::fromText(gone.url("/" + oneMegabyte)));
  ASSERT_TRUE(host().runUntil([] { return shown() != nullptr; }));
  EXPECT_TRUE(pressKey(host().window(), GDK_KEY_Escape));
  EXPECT_EQ(shown(), nullptr);
  EXPECT_FALSE(ad().appBrowserOpen());
}

TEST_F(HostileClicks, WithoutAWindowNothingIsShownAndNothingBreaks) {
  const auto lonely = XAdView::create({0, 0, 320, 50});
  lonely->setSlotConfiguration(host().settings);
  host().settings->shouldOpenClickThroughURLInAppBrowser = true;
  for (const auto state : {MRAIDState::normal, MRAIDState::expanded}) {
    lonely->eventEmitter()->setState(state, nullptr);
    lonely->sendSMSWithUrl(Url::fromText("sms:1"));
    lonely->sendEmailWithUrl(Url::fromText("mailto:a@b"));
    lonely->createCalendarEvent(R"({"description":"x"})");
    lonely->handlePlayVideoWithURL(Url::fromText("http://127.0.0.1:1/v.mp4"));
    lonely->openUrlInBrowser(Url::fromText("http://127.0.0.1:1/"));
    settle();
  }
  EXPECT_EQ(shown(), nullptr);
  int reports = 0;
  auto& composers = *Runtime::current().platform().composers;
  const auto count = [&](auto...) { ++reports; };
  for (const auto& sheet : {composers.messageComposer({}, count), composers.mailComposer({}, count),
                            composers.eventEditor({}, count), composers.storeSheet({}, count)}) {
    sheet->dismissViewController(Animated::yes);
    EXPECT_TRUE(sheet->cancelOperation());
    EXPECT_TRUE(sheet->cancelOperation());
  }
  EXPECT_EQ(reports, 4) << "each once";
}

// What the toolkit's libraries complain about while this lives.
class Complaints {
 public:
  Complaints()
      : before_{g_log_set_default_handler(
            [](const char* domain, GLogLevelFlags level, const char* message, gpointer self) {
              if ((level & (G_LOG_LEVEL_WARNING | G_LOG_LEVEL_CRITICAL)) == 0) return;
              static_cast<Complaints*>(self)->texts.push_back(std::string{domain} + message);
            },
            this)} {}
  ~Complaints() { g_log_set_default_handler(before_, nullptr); }
  Complaints(const Complaints&) = delete;
  Complaints& operator=(const Complaints&) = delete;

  std::vector<std::string> texts;

 private:
  GLogFunc before_;
};

TEST_F(HostileClicks, AnAlertMayGoBeforeItsFirstFrame) {
  const Complaints complaints;
  std::size_t answered = 0;
  const auto& alerts = Runtime::current().platform().alerts;
  alerts->show({.title = "", .message = "?", .buttons = {"No", "Yes"}, .cancelButton = 0},
               [&](std::size_t button) { answered = button; });
  ASSERT_TRUE(forEachWindow([](auto& window) { return pressButton(window, "Yes"); }));
  host().waitForFrames();
  EXPECT_EQ(answered, 1U);
  EXPECT_THAT(complaints.texts, IsEmpty());
}

TEST_F(HostileClicks, AnAlertWithoutAWindowIsAnsweredWithNo) {
  const auto windowless = std::make_shared<gtk::GtkApplication>(
      Runtime::current().platform().notifications, Limits{}.widgetSide);
  gtk::GtkAlerts alerts{Runtime::current().platform().runLoop, windowless};
  std::vector<std::size_t> answers;
  alerts.show({.title = "", .message = "?", .buttons = {"Yes", "No"}, .cancelButton = 1},
              [&](std::size_t button) { answers.push_back(button); });
  EXPECT_THAT(answers, IsEmpty()) << "never inside the call";
  settle();
  EXPECT_THAT(answers, ElementsAre(1U));
}

}  // namespace
}  // namespace tavo::test
