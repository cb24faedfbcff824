// The checklist of MRAID 2.0 in the real engine: by the standard every point is met, and otherwise
// those are not that the document says.

#include <gtkmm.h>

#include <fstream>

#include <tavo/Runtime.h>
#include <tavo/gtk/GtkPlatform.h>

#include "AdPlayer/MraidChecklist/MraidChecklist.h"
#include "Support/HostLoop.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace tavo::test {
namespace {

// The points of the document's table of what is not met without the mode.
Lines documentedAsNotMet() {
  Lines names;
  std::ifstream document{TAVO_STANDARDS_DOCUMENT};
  bool isInTable = false;
  for (std::string line; std::getline(document, line);) {
    if (line.starts_with("### ")) isInTable = line == "### Points not met without the mode";
    if (isInTable && line.starts_with("| `"))
      names.push_back(line.substr(3, line.find('`', 3) - 3));
  }
  return names;
}

class MraidChecklistTest : public testing::Test {
 protected:
  // The names of the points that are not met, each with what the creative saw.
  Lines notMet(bool standards, double patience) {
    adplayer::MraidChecklist checklist{{.stage = {.standards = standards, .patience = patience},
                                        .creatives = TAVO_MRAID_CREATIVES}};
    std::optional<adplayer::MraidChecklist::Results> results;
    checklist.onNote = [](const std::string& note) { std::printf("%s\n", note.c_str()); };
    checklist.start([&](const auto& all) { results = all; });
    EXPECT_TRUE(runUntil([&] { return results.has_value(); }, std::chrono::seconds{280}));
    Lines names;
    for (const auto& point : results.value_or(adplayer::MraidChecklist::Results{})) {
      if (point.isMet) continue;
      names.push_back(point.name);
      std::printf("not met: %s, found: %s\n", point.name.c_str(), point.found.c_str());
    }
    return names;
  }

 private:
  const Glib::RefPtr<Gtk::Application> application_ =
      Gtk::Application::create({}, Gio::Application::Flags::NON_UNIQUE);
  TemporaryFolder folder_;
  Runtime runtime_{gtk::makePlatform(
      {.applicationId = "tavo-test", .dataFolder = folder_.path("data"), .assumeReachable = true})};
};

TEST_F(MraidChecklistTest, ByTheStandardEveryPointIsMet) {
  EXPECT_THAT(notMet(true, 20), ElementsAre());
}

TEST_F(MraidChecklistTest, OtherwiseThoseAreNotThatTheDocumentNames) {
  EXPECT_EQ(notMet(false, 6), documentedAsNotMet());
}

}  // namespace
}  // namespace tavo::test
