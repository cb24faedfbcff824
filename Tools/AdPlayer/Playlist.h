#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "AdPlayer/CampaignRun.h"

namespace tavo::adplayer {

// Plays campaigns one after the other.
class Playlist {
 public:
  // `finished` is called once, after the last campaign.
  Playlist(PlayerWindow& window, adserver::AdServer& server, EventReport& report,
           std::vector<CampaignRun::Settings> runs, std::function<void()> finished);

  void start() { playNext(); }

  [[nodiscard]] std::size_t count(Outcome outcome) const;
  [[nodiscard]] std::size_t size() const { return runs_.size(); }

 private:
  void playNext();

  PlayerWindow& window_;
  adserver::AdServer& server_;
  EventReport& report_;
  std::vector<CampaignRun::Settings> runs_;
  std::function<void()> finished_;
  std::vector<Outcome> outcomes_;
  std::unique_ptr<CampaignRun> current_;
};

// Every sample campaign once, the picture banners in each of their fits.
[[nodiscard]] std::vector<CampaignRun::Settings> runsFor(
    const std::vector<CampaignEntry>& campaigns, const std::string& shotsFolder);

}  // namespace tavo::adplayer
