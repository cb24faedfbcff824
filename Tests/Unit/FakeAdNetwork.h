#pragma once

#include <functional>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <tavo/AdNetworkClasses.h>
#include <tavo/CVBannerAdView.h>
#include <tavo/CVInterstitialAd.h>
#include <tavo/Runtime.h>

#include "Headless/HeadlessPlatform.h"

namespace tavo::test {

// An external network in memory: writes down every operation that it is asked for, and lets the
// test misbehave in its name.
struct FakeAdNetwork {
  // One ad that was asked for, as the network knows it. It keeps its delegate as long as it likes.
  struct Ad {
    CVAd* object = nullptr;
    std::shared_ptr<View> view;
    std::weak_ptr<CVAdDelegate> delegate;
    std::weak_ptr<void> life;  // expires with the object
  };

  // Offers both classes to the current runtime.
  void install();

  // Says something in the name of an ad, if anybody still listens.
  void say(std::size_t ad, void (CVAdDelegate::*what)(CVAd&)) {
    if (const auto heard = ads.at(ad).delegate.lock()) (heard.get()->*what)(*ads.at(ad).object);
  }
  void fail(std::size_t ad, const Error& error = {"network", 3, "no fill"}) {
    if (const auto heard = ads.at(ad).delegate.lock()) {
      heard->adRequestFailedWithError(*ads.at(ad).object, error);
    }
  }

  std::vector<std::string> lines;
  std::vector<Ad> ads;
  int made = 0;
  std::string throwsIn;                         // the operation that throws
  std::function<void(std::size_t)> onDelegate;  // inside setDelegate, with the number of the ad
  std::function<void(std::size_t)> onLoad;      // inside loadAd
  std::function<void(std::size_t)> onDisplay;   // inside displayAdFromViewController
};

template <typename Class>
class FakeAd : public Class {
 public:
  explicit FakeAd(FakeAdNetwork& network) : network_{network}, number_{network.ads.size()} {
    ++network.made;
    network.ads.push_back({.object = this, .view = {}, .delegate = {}, .life = life_});
    note("init");
  }
  void setPlacementId(const std::string& placementId) override { note("placementId", placementId); }
  void setDelegate(const std::weak_ptr<CVAdDelegate>& delegate) override {
    network_.ads.at(number_).delegate = delegate;
    note("delegate", delegate.expired() ? "none" : "set");
    if (network_.onDelegate) network_.onDelegate(number_);
  }
  void setOpensInNativeBrowser(bool opens) override { note("nativeBrowser", opens); }
  void setAge(const std::string& age) override { note("age", age); }
  void setGender(int gender) override { note("gender", gender); }
  void setCustomKeywords(std::map<std::string, std::string> keywords) override {
    std::string text;
    for (const auto& [key, value] : keywords)
      text.append(key).append("=").append(value).append(";");
    note("keywords", text);
  }
  void setLocationWithLatitude(double latitude, double longitude, std::optional<Date> timestamp,
                               double horizontalAccuracy) override {
    const auto time = timestamp ? timestamp->time_since_epoch() / std::chrono::seconds{1} : 0;
    note("location", latitude, longitude, time, horizontalAccuracy);
  }
  void loadAd() override {
    note("loadAd");
    if (network_.onLoad) network_.onLoad(number_);
  }

 protected:
  template <typename... Values>
  void note(const std::string& operation, const Values&... values) const {
    std::ostringstream line;
    line << operation;
    ((line << ' ' << values), ...);
    network_.lines.push_back(line.str());
    if (network_.throwsIn == operation) throw std::runtime_error{operation};
  }

  FakeAdNetwork& network_;
  const std::size_t number_;

 private:
  const std::shared_ptr<void> life_ = std::make_shared<int>();
};

class FakeBanner : public FakeAd<CVBannerAdView> {
 public:
  explicit FakeBanner(FakeAdNetwork& network) : FakeAd{network} {
    network_.ads.at(number_).view = view_;
  }
  std::shared_ptr<View> view() override { return view_; }
  void setFrame(const Rect& frame) override {
    CVBannerAdView::setFrame(frame);
    note("frame", frame.x, frame.y, frame.width, frame.height);
  }
  void setCenter(const Point& center) override {
    note("center", center.x, center.y);
    CVBannerAdView::setCenter(center);
  }
  void setRootViewController(const std::weak_ptr<ViewController>& controller) override {
    note("root", controller.expired() ? "none" : "set");
  }
  void setAdSize(const Size& size) override { note("adSize", size.width, size.height); }
  void setAutoRefreshInterval(double seconds) override { note("autoRefresh", seconds); }

 private:
  const std::shared_ptr<View> view_ = std::make_shared<View>();
};

class FakeInterstitial : public FakeAd<CVInterstitialAd> {
 public:
  using FakeAd::FakeAd;
  void displayAdFromViewController(const std::shared_ptr<ViewController>& /*root*/) override {
    note("display");
    if (network_.onDisplay) network_.onDisplay(number_);
  }
};

inline void FakeAdNetwork::install() {
  auto& classes = AdNetworkClasses::sharedInstance();
  classes.registerClass(CVBannerAdView::className,
                        [this] { return std::make_shared<FakeBanner>(*this); });
  classes.registerClass(CVInterstitialAd::className,
                        [this] { return std::make_shared<FakeInterstitial>(*this); });
}

}  // namespace tavo::test
