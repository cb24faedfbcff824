#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "AdPlayer/EventReport.h"
#include "AdPlayer/PlayerWindow.h"
#include "AdServer/AdServer.h"
#include "Services/RunLoop.h"

namespace tavo::adplayer {

// What a campaign came to.
enum class Outcome { loaded, failed, nothing };

// Plays one campaign in the window's slot: asks for it, writes down what host and server see, waits
// until the ad is on the screen and its pings have arrived, and takes a picture.
class CampaignRun {
 public:
  struct Settings {
    std::string campaign{};
    std::string shotsFolder{};  // empty: no picture
    Seconds patience{45};       // for the outcome; longer than any request may take
    Seconds settling{1.5};      // after the outcome, for pings and for the page to draw itself
    bool scalingAllowed = false;
    bool maintainAspectRatio = false;
    std::string pictureName{};  // of the file, without ending
  };

  // `finished` is called once, never inside a call to the run.
  CampaignRun(PlayerWindow& window, adserver::AdServer& server, EventReport& report,
              Settings settings, std::function<void(Outcome)> finished);

  void start();

 private:
  void hearHost();
  void hearServer();
  void conclude(Outcome outcome);
  void takePicture();
  void end();

  PlayerWindow& window_;
  adserver::AdServer& server_;
  EventReport& report_;
  Settings settings_;
  std::function<void(Outcome)> finished_;
  std::optional<Outcome> outcome_;
  Timer timer_;
  int picturesLeft_ = 40;  // attempts
  std::shared_ptr<const XAdViewDelegate> events_;
};

}  // namespace tavo::adplayer
