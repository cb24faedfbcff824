#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "AdPlayer/EventReport.h"
#include "AdPlayer/InterstitialStage.h"
#include "AdPlayer/Outcome.h"
#include "AdPlayer/PlayerWindow.h"
#include "AdServer/AdServer.h"
#include "Services/RunLoop.h"

namespace tavo::adplayer {

// Plays one campaign in the window's slot, or above the window where its name says that it is an
// interstitial: asks for it, writes down what host and server see, waits until the ad is on the
// screen and its pings have arrived, and takes a picture.
class CampaignRun {
 public:
  struct Settings {
    std::string campaign{};
    std::string shotsFolder{};  // empty: no picture
    Seconds patience{45};       // for the outcome; longer than any request may take
    Seconds settling{1.5};      // after the outcome, for pings and for the page to draw itself
    bool scalingAllowed = false;
    bool maintainAspectRatio = false;
    bool closesInterstitial = true;  // at the end; a person wants to do it alone
    std::string pictureName{};       // of the file, without ending
  };

  // `finished` is called once, never inside a call to the run.
  CampaignRun(PlayerWindow& window, adserver::AdServer& server, EventReport& report,
              Settings settings, std::function<void(Outcome)> finished);

  void start();

 private:
  [[nodiscard]] std::shared_ptr<XAdSlotConfiguration> slotSettings() const;
  void loadBanner(const std::string& domain);
  void loadInterstitial(const std::string& domain);
  void hearHost();
  void hearServer();
  [[nodiscard]] std::string classification() const;
  void conclude(Outcome outcome);
  void takePicture();
  void end();

  PlayerWindow& window_;
  adserver::AdServer& server_;
  EventReport& report_;
  Settings settings_;
  std::function<void(Outcome)> finished_;
  std::optional<Outcome> outcome_;
  std::unique_ptr<InterstitialStage> interstitial_;  // for such a campaign
  Timer timer_;
  int picturesLeft_ = 40;  // attempts
  std::shared_ptr<const XAdViewDelegate> events_;
};

}  // namespace tavo::adplayer
