#pragma once

#include <tavo/CVBannerAdView.h>

#include "SampleAd.h"

namespace sample {

// A banner: a picture and a line of text on dark blue. A click opens the network's page.
class SampleBanner : public SampleAd<tavo::CVBannerAdView> {
 public:
  SampleBanner();

  [[nodiscard]] std::shared_ptr<tavo::View> view() override { return view_; }
  void setRootViewController(const std::weak_ptr<tavo::ViewController>& controller) override {
    root_ = controller;
  }
  void setAdSize(const tavo::Size& size) override { adSize_ = size; }
  // The network never brings another ad by itself.
  void setAutoRefreshInterval(double /*seconds*/) override {}

 private:
  void arrived() override;
  void clicked();
  void openPage();

  const std::shared_ptr<tavo::View> view_ = std::make_shared<tavo::View>();
  std::weak_ptr<tavo::ViewController> root_;
  tavo::Size adSize_;
};

}  // namespace sample
