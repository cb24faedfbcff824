// What the library writes to disk for the user, on its way through everything, and read back by
// another program.

#include <filesystem>
#include <fstream>
#include <sstream>

#include <tavo/XErrorHandler.h>

#include "AdController/AdGenerator/XMRAIDEventEmitter.h"
#include "ClickToAction/XPictureManager.h"
#include "Gtk/Services/GtkFolders.h"
#include "Gtk/Services/HelperProgram.h"
#include "Services/Folders.h"
#include "Support/GtkHost.h"
#include "Support/HostileServer.h"
#include "Support/Places.h"
#include "Support/StandInHandlers.h"
#include "Support/Testing.h"
#include "Support/WidgetTree.h"

namespace tavo::test {
namespace {

namespace fs = std::filesystem;

StandInHandlers handlers;  // before GLib reads where the user's folders are

// The lines that a reader of ours, a script on another program's libraries, says of a file.
std::vector<std::string> readBack(const std::string& reader, const std::string& file) {
  constexpr Seconds longerThanEver{60};
  const std::string script = testData() + "/readers/" + reader + ".py";
  const auto output = gtk::runHelperProgram({"python3", script, file}, longerThanEver);
  if (!output) return {"the reader refused it"};
  std::vector<std::string> lines;
  std::istringstream text{*output};
  for (std::string line; std::getline(text, line);) lines.push_back(line);
  return lines;
}

class KeptFiles : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    shared_ = std::make_unique<GtkHost>(sampleCampaigns());
    host().runUntil([] { return host().window().get_mapped() && host().window().get_width() > 0; });
  }
  static void TearDownTestSuite() { shared_.reset(); }
  static GtkHost& host() { return *shared_; }

  static bool pressOnceThere(const std::string& label) {
    bool pressed = false;
    return host().runUntil([&] {
      for (auto* window : Gtk::Window::list_toplevels()) {
        if (!pressed && window->get_mapped()) pressed = pressButton(*window, label);
      }
      return pressed;
    });
  }

 private:
  static inline std::unique_ptr<GtkHost> shared_;
};

TEST_F(KeptFiles, AnEventThatACreativeAskedForAndTheUserSaved) {
  host().banner()->eventEmitter()->setState(MRAIDState::normal, nullptr);
  // More than a line, letters beyond ASCII, and everything that the format gives a meaning to.
  host().banner()->createCalendarEvent(
      R"({"description":"Premi\u00e8re, one; two: \\ BEGIN:VEVENT","summary":"Ünï )" +
      std::string(200, 'x') +
      R"(","location":"Hall 1","start":"2026-11-21T20:00:00Z","end":"2026-11-21T22:30:00Z",)"
      R"("reminder":"-600000"})");
  ASSERT_TRUE(pressOnceThere("Save"));
  ASSERT_TRUE(host().runUntil([] { return !handlers.received().empty(); }));
  const auto lines = readBack("event", handlers.received().front());
  EXPECT_THAT(lines, IsSupersetOf({"VCALENDAR.VERSION=2.0", "VEVENT.DTSTART=20261121T200000Z",
                                   "VEVENT.DTEND=20261121T223000Z", "VEVENT.LOCATION=Hall 1",
                                   "VALARM.TRIGGER=-PT10M", "VALARM.ACTION=DISPLAY"}));
  EXPECT_THAT(lines, Contains("VEVENT.DESCRIPTION=Ünï " + std::string(200, 'x')));
  EXPECT_THAT(lines,
              Contains(AllOf(StartsWith("VEVENT.SUMMARY="), testing::EndsWith("BEGIN:VEVENT"))));
}

TEST_F(KeptFiles, APictureThatTheUserAgreedTo) {
  HostileServer server;
  const fs::path banner = fs::path{sampleCampaigns()} / "image-banner" / "banner.png";
  std::ostringstream bytes;
  bytes << std::ifstream{banner, std::ios::binary}.rdbuf();
  server.on("/a.png", PlainAnswer{.body = bytes.str(), .contentType = "image/png"});
  const auto manager = XPictureManager::create(Runtime::current().environment(), nullptr);
  manager->storePicture({{"url", server.url("/a.png")}});
  ASSERT_TRUE(pressOnceThere("Yes_Title"));
  const auto picture = [] {
    std::error_code absent;
    const fs::directory_iterator files{handlers.picturesFolder(), absent};
    return files == fs::directory_iterator{} ? std::string{} : files->path().string();
  };
  const auto expected = readBack("picture", banner);
  ASSERT_THAT(expected, ElementsAre(testing::ContainsRegex("^[0-9]+x[0-9]+ #[0-9a-f]{6}$")));
  EXPECT_TRUE(host().runUntil(
      [&] { return !picture().empty() && readBack("picture", picture()) == expected; }));
}

TEST_F(KeptFiles, TheErrorLogAmongTheUsersData) {
  XErrorHandler::addErrorWithErrorId("1004", "URI was not valid; \"quoted\"");
  const auto folder = Runtime::current().platform().folders->documentFolders().back();
  EXPECT_THAT(readBack("errorlog", folder + "/CorvaneTAVOSDKDB.sqlite"),
              ElementsAre("ErrorLogs ['errorId', 'errorDesc', 'timeStamp']",
                          R"(('1004', 'URI was not valid; "quoted"'))"));
}

TEST(GtkFolders, AreTheApplicationsOwnAmongTheUsersData) {
  const gtk::GtkFolders folders{gtk::GtkFolders::defaultFolder("org.example.App")};
  const auto all = folders.documentFolders();
  ASSERT_THAT(all, ElementsAre(std::string{g_get_user_data_dir()} + "/org.example.App"));
  EXPECT_TRUE(fs::is_directory(all.back()));
  EXPECT_EQ(fs::status(all.back()).permissions() & fs::perms::others_all, fs::perms::none);
}

}  // namespace
}  // namespace tavo::test
