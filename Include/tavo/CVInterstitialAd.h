#pragma once

#include <memory>

#include <tavo/CVAd.h>
#include <tavo/Export.h>
#include <tavo/ViewController.h>

namespace tavo {

// A full-screen ad of an external network. Thread, ownership and errors: see CVAd.
class TAVO_EXPORT CVInterstitialAd : public CVAd {
 public:
  // The name under which a network offers its class.
  static constexpr const char* className = "CVInterstitialAd";

  // Presents the ad over `controller`, which is alive and in a window. Called inside
  // adDidReceiveAd; the network lets the user close what it presents. An ad that cannot be
  // displayed after all reports its failure inside this call.
  virtual void displayAdFromViewController(const std::shared_ptr<ViewController>& controller) = 0;
};

}  // namespace tavo
