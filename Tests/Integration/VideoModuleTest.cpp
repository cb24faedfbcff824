#include <gtk/gtk.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Gtk/GPtr.h"
#include "Gtk/Modules/GtkVideoModule.h"
#include "Headless/HeadlessServices.h"
#include "Support/GtkLoopTest.h"
#include "Support/PlayerThreads.h"

namespace tavo::test {
namespace {

class Recorder : public MoviePlayerClient {
 public:
  void movieDurationAvailable(MoviePlayer&) override { events.emplace_back("duration"); }
  void moviePlaybackStateDidChange(MoviePlayer&) override { events.emplace_back("state"); }
  void moviePlaybackDidFinish(MoviePlayer&, MovieFinishReason,
                              const std::optional<Error>& error) override {
    events.push_back(error ? "error " + std::to_string(error->code) : "ended");
  }
  void movieDidEnterFullscreen(MoviePlayer&) override {}
  void movieDidExitFullscreen(MoviePlayer&) override {}
  std::vector<std::string> events;
};

// The module, and not the framework: the toolkit may bring that for media files of its own.
bool moduleIsMapped() {
  std::ifstream maps{"/proc/self/maps"};
  const std::string text{std::istreambuf_iterator<char>{maps}, {}};
  return text.find("TavoGtkVideo") != std::string::npos;
}

class VideoModuleTest : public GtkLoopTest {
 protected:
  void SetUp() override { ASSERT_TRUE(gtk_init_check()); }

  [[nodiscard]] std::unique_ptr<gtk::GtkVideoModule> module(
      const std::filesystem::path& folder = gtk::moduleFolder()) const {
    return std::make_unique<gtk::GtkVideoModule>(
        gtk::GtkVideoModule::Services{
            .runLoop = runLoop_, .log = log_, .userAgent = {}, .limits = {}},
        folder);
  }

  std::shared_ptr<headless::HeadlessLog> log_ = std::make_shared<headless::HeadlessLog>();
};

TEST_F(VideoModuleTest, TheModuleIsNotMappedBeforeTheFirstVideo) {
  const auto used = module();
  EXPECT_FALSE(moduleIsMapped());
  used->warmUp();
  used->warmUp();
  EXPECT_FALSE(used->isLoaded()) << "mapping it may take longer than a frame";
  runUntil([&] { return used->isLoaded(); });
  EXPECT_TRUE(moduleIsMapped());

  // Whoever cannot wait gets a player at once; a module that is gone is not asked again.
  const auto hurried = module();
  hurried->warmUp();
  EXPECT_NE(hurried->create({0, 0, 320, 180}), nullptr);
  EXPECT_TRUE(hurried->isLoaded());
  module()->warmUp();
  settle();
}

TEST_F(VideoModuleTest, ADroppedPlayerEndsWithWhatItHadStillToSay) {
  const auto used = module();
  const auto silent = gtk::GPtr<GSocketListener>::adopt(g_socket_listener_new());
  const auto port = g_socket_listener_add_any_inet_port(silent.get(), nullptr, nullptr);
  const auto url = Url::parse("http://127.0.0.1:" + std::to_string(port) + "/ad.mp4");
  constexpr std::ptrdiff_t count = 4;
  std::vector<std::shared_ptr<MoviePlayer>> players;
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    players.push_back(used->create({0, 0, 320, 180}));
    players.back()->setContentUrl(url);
    players.back()->play();
  }
  ASSERT_TRUE(runUntil([] { return playerThreads() >= count; }));
  players.clear();
  EXPECT_TRUE(runUntil([] { return playerThreads() == 0; }));
}

TEST_F(VideoModuleTest, TheTypesThatCanBeDecodedAreFoundOut) {
  const auto types = [this](const std::filesystem::path& folder) {
    const auto used = module(folder);
    std::optional<std::vector<std::string>> found;
    used->findPlayable({"video/mp4", "video/x-flv", "video/webm"},
                       [&](const auto& playable) { found = playable; });
    EXPECT_TRUE(runUntil([&] { return found.has_value(); }));
    return found.value_or(std::vector<std::string>{"no answer"});
  };
  EXPECT_EQ(types(gtk::moduleFolder()), (std::vector<std::string>{"video/mp4", "video/webm"}));
  EXPECT_TRUE(types("/nowhere").empty());
}

TEST_F(VideoModuleTest, WithoutAModuleEveryContentFinishesAsUnavailable) {
  const auto missing = module(folder_.path("nowhere"));
  const std::filesystem::path wrong = folder_.path("");
  std::ofstream{wrong / "TavoGtkVideo.so"} << "no library at all";
  const auto broken = module(wrong);
  for (gtk::GtkVideoModule* tried : {missing.get(), broken.get()}) {
    tried->warmUp();
    const auto player = tried->create({0, 0, 320, 180});
    const auto client = std::make_shared<Recorder>();
    player->addClient(client);
    player->setContentUrl(Url::parse("http://cdn.example/ad.mp4"));
    player->play();
    EXPECT_TRUE(client->events.empty()) << "never inside a call";
    settle();
    EXPECT_THAT(client->events, ElementsAre("error 1"));
  }
  EXPECT_THAT(log_->messages(), ElementsAre(HasSubstr("No video ads"), HasSubstr("No video ads")));
}

}  // namespace
}  // namespace tavo::test
