#pragma once

#include <tavo/CVInterstitialAd.h>

#include "SampleAd.h"

namespace sample {

// A full-screen ad: a page above the host's content that the user closes.
class SampleInterstitial : public SampleAd<tavo::CVInterstitialAd> {
 public:
  void displayAdFromViewController(
      const std::shared_ptr<tavo::ViewController>& controller) override;

 private:
  void arrived() override { tell(&tavo::CVAdDelegate::adDidReceiveAd); }
};

}  // namespace sample
