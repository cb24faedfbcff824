#pragma once

#include <gtkmm.h>

#include <functional>
#include <memory>
#include <string>

#include <tavo/XAdInterstitialViewController.h>

#include "AdPlayer/EventReport.h"
#include "AdPlayer/Outcome.h"

namespace tavo::adplayer {

// The host's side of an interstitial: presents it above the player's window as soon as it has
// loaded, and writes down whatever it reports.
class InterstitialStage {
 public:
  // `concluded` is called with each outcome, inside the interstitial's report of it.
  InterstitialStage(Gtk::Window& window, EventReport& report,
                    std::function<void(Outcome)> concluded);

  [[nodiscard]] XAdInterstitialViewController& controller() const { return *controller_; }
  // Leaves as by the close button, where the ad is on the screen.
  void close();

 private:
  using Controller = XAdInterstitialViewController;

  void addOutcomes(XAdInterstitialViewControllerDelegate& events);
  void addLines(XAdInterstitialViewControllerDelegate& events);
  void present();

  Gtk::Window& window_;
  EventReport& report_;
  std::function<void(Outcome)> concluded_;
  std::shared_ptr<Controller> controller_ = Controller::create();
  std::shared_ptr<const XAdInterstitialViewControllerDelegate> events_;
};

}  // namespace tavo::adplayer
