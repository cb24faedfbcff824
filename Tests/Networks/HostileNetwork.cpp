// A network library that does what no network should. The placement says what: "throw" raises an
// exception when it is to load, "throw-number" one that is no std::exception, "thread" says
// everything twice from a thread of its own.
#include <stdexcept>
#include <thread>

#include <tavo/AdNetworkExports.h>
#include <tavo/CVBannerAdView.h>

namespace {

class HostileBanner : public tavo::CVBannerAdView {
 public:
  ~HostileBanner() override {
    if (thread_.joinable()) thread_.join();
  }

  std::shared_ptr<tavo::View> view() override { return view_; }
  void setPlacementId(const std::string& placementId) override { placementId_ = placementId; }
  void setDelegate(const std::weak_ptr<tavo::CVAdDelegate>& delegate) override {
    delegate_ = delegate.lock();
  }
  void setRootViewController(const std::weak_ptr<tavo::ViewController>& /*root*/) override {}
  void setAdSize(const tavo::Size& /*size*/) override {}
  void setAutoRefreshInterval(double /*seconds*/) override {}
  void setOpensInNativeBrowser(bool /*opens*/) override {}
  void setAge(const std::string& /*age*/) override {}
  void setGender(int /*gender*/) override {}
  void setCustomKeywords(std::map<std::string, std::string> /*keywords*/) override {}
  void setLocationWithLatitude(double /*latitude*/, double /*longitude*/,
                               std::optional<tavo::Date> /*timestamp*/,
                               double /*accuracy*/) override {}

  void loadAd() override {
    if (placementId_ == "throw") throw std::runtime_error{"hostile"};
    if (placementId_ == "throw-number") throw 42;
    thread_ = std::thread{[this] { sayEverythingTwice(); }};
  }

 private:
  void sayEverythingTwice() {
    for (int round = 0; round < 2; ++round) {
      delegate_->adDidReceiveAd(*this);
      delegate_->adWasClicked(*this);
      delegate_->adRequestFailedWithError(*this, {"hostile", 7, "late failure"});
    }
  }

  const std::shared_ptr<tavo::View> view_ = std::make_shared<tavo::View>();
  std::string placementId_;
  std::shared_ptr<tavo::CVAdDelegate> delegate_;  // for as long as it likes
  std::thread thread_;
};

constexpr tavo::AdNetworkClass classes[] = {
    {tavo::CVBannerAdView::className, []() -> tavo::CVAd* { return new HostileBanner; }},
};
constexpr tavo::AdNetworkExports exports{tavo::adNetworkVersion, 1, classes};

}  // namespace

extern "C" __attribute__((visibility("default"))) const tavo::AdNetworkExports* tavo_ad_network() {
  return &exports;
}
