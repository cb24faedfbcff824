#include <gtkmm.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>

#include <tavo/Runtime.h>
#include <tavo/gtk/GtkPlatform.h>

#include "AdPlayer/PingReport.h"
#include "AdPlayer/Playlist.h"
#include "AdServer/CampaignFolder.h"

namespace {

using namespace tavo::adplayer;

struct Options {
  std::string campaigns = TAVO_SAMPLE_CAMPAIGNS;
  std::string campaign;
  std::string shots;
  std::string network = TAVO_SAMPLE_NETWORK;
  bool stay = false;
};

std::vector<CampaignEntry> readCampaigns(const std::string& path) {
  const tavo::adserver::CampaignFolder folder{path};
  std::vector<CampaignEntry> entries;
  for (const auto& name : folder.names()) {
    if (const auto campaign = folder.campaign(name)) entries.push_back({name, campaign->title});
  }
  return entries;
}

// The tool from the first window to the last line.
class Player {
 public:
  explicit Player(Options options)
      : options_{std::move(options)},
        campaigns_{readCampaigns(options_.campaigns)},
        server_{options_.campaigns},
        window_{campaigns_} {
    report_.setListener([this](const PlayerEvent& event) { window_.show(event); });
    window_.onPick = [this](const std::string& name) {
      play({{.campaign = name, .closesInterstitial = false, .pictureName = name}});
    };
  }

  void open(Gtk::Application& application) {
    application.add_window(window_);
    window_.present();
    std::printf("Sample server: %s\n", server_.baseUrl().c_str());
    auto runs = runsFor(campaigns_, options_.shots);
    if (!options_.campaign.empty()) {
      std::erase_if(runs, [&](const auto& run) { return run.campaign != options_.campaign; });
    }
    play(std::move(runs));
  }

 private:
  void play(std::vector<CampaignRun::Settings> runs) {
    playlist_ = std::make_unique<Playlist>(window_, server_, report_, std::move(runs),
                                           [this] { finished(); });
    playlist_->start();
  }

  void finished() {
    if (!options_.shots.empty()) {
      std::ofstream{std::filesystem::path{options_.shots} / "report.txt"} << report_.toText();
    }
    std::printf("%zu played: %zu showed an ad, %zu reported a failure, %zu had no outcome.\n",
                playlist_->size(), playlist_->count(Outcome::loaded),
                playlist_->count(Outcome::failed), playlist_->count(Outcome::nothing));
    if (!options_.stay) window_.close();
  }

  Options options_;
  std::vector<CampaignEntry> campaigns_;
  tavo::adserver::AdServer server_;
  EventReport report_;
  PingReport pings_{report_};
  PlayerWindow window_;
  std::unique_ptr<Playlist> playlist_;
};

int play(const Options& options) {
  if (!options.shots.empty()) std::filesystem::create_directories(options.shots);
  const auto application =
      Gtk::Application::create("com.corvanetavo.adplayer", Gio::Application::Flags::NON_UNIQUE);
  std::unique_ptr<tavo::Runtime> runtime;
  std::unique_ptr<Player> player;
  application->signal_activate().connect([&] {
    runtime = std::make_unique<tavo::Runtime>(
        tavo::gtk::makePlatform({.applicationId = "com.corvanetavo.adplayer",
                                 .assumeReachable = true,
                                 .adNetworkLibrary = options.network}));
    player = std::make_unique<Player>(options);
    player->open(*application.get());
  });
  const int status = application->run();
  player.reset();
  runtime.reset();
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{"Plays sample campaigns in a window the size of a phone."};
  Options options;
  app.add_option("--campaigns", options.campaigns, "Folder of campaigns")
      ->check(CLI::ExistingDirectory);
  app.add_option("--campaign", options.campaign, "Play this campaign only");
  app.add_option("--shots", options.shots, "Write a picture per campaign and report.txt there");
  app.add_option("--network", options.network, "Library of the ad network for mediated ads");
  app.add_flag("--stay", options.stay, "Keep the window open after the last campaign");
  CLI11_PARSE(app, argc, argv);
  return play(options);
}
