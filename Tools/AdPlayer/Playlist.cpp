#include "AdPlayer/Playlist.h"

#include <algorithm>
#include <cstdio>

namespace tavo::adplayer {

Playlist::Playlist(PlayerWindow& window, adserver::AdServer& server, EventReport& report,
                   std::vector<CampaignRun::Settings> runs, std::function<void()> finished)
    : window_{window},
      server_{server},
      report_{report},
      runs_{std::move(runs)},
      finished_{std::move(finished)} {}

std::size_t Playlist::count(Outcome outcome) const {
  return static_cast<std::size_t>(std::count(outcomes_.begin(), outcomes_.end(), outcome));
}

void Playlist::playNext() {
  const std::size_t index = outcomes_.size();
  if (index == runs_.size()) return finished_();
  const auto& settings = runs_[index];
  std::printf("[%zu/%zu] %s\n", index + 1, runs_.size(), settings.pictureName.c_str());
  std::fflush(stdout);
  window_.clearEvents();
  window_.select(settings.campaign);
  current_ =
      std::make_unique<CampaignRun>(window_, server_, report_, settings, [this](Outcome outcome) {
        outcomes_.push_back(outcome);
        playNext();
      });
  current_->start();
}

std::vector<CampaignRun::Settings> runsFor(const std::vector<CampaignEntry>& campaigns,
                                           const std::string& shotsFolder) {
  std::vector<CampaignRun::Settings> runs;
  for (const auto& campaign : campaigns) {
    CampaignRun::Settings settings{
        .campaign = campaign.name, .shotsFolder = shotsFolder, .pictureName = campaign.name};
    runs.push_back(settings);
    if (!campaign.name.starts_with("image")) continue;
    settings.scalingAllowed = true;
    settings.pictureName = campaign.name + "-scaled-to-fill";
    runs.push_back(settings);
    settings.maintainAspectRatio = true;
    settings.pictureName = campaign.name + "-scaled-with-aspect";
    runs.push_back(settings);
  }
  return runs;
}

}  // namespace tavo::adplayer
