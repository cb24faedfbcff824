// A network library that does what no network should: it raises an exception when it is to load, of
// which kind the placement says.
#include <stdexcept>

#include <tavo/AdNetworkExports.h>
#include <tavo/CVBannerAdView.h>

namespace {

class HostileBanner : public tavo::CVBannerAdView {
 public:
  std::shared_ptr<tavo::View> view() override { return view_; }
  void setPlacementId(const std::string& placementId) override { placementId_ = placementId; }
  void setDelegate(const std::weak_ptr<tavo::CVAdDelegate>& /*delegate*/) override {}
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
    throw 42;
  }

 private:
  const std::shared_ptr<tavo::View> view_ = std::make_shared<tavo::View>();
  std::string placementId_;
};

constexpr tavo::AdNetworkClass classes[] = {
    {tavo::CVBannerAdView::className, []() -> tavo::CVAd* { return new HostileBanner; }},
};
constexpr tavo::AdNetworkExports exports{tavo::adNetworkVersion, 1, classes};

}  // namespace

extern "C" __attribute__((visibility("default"))) const tavo::AdNetworkExports* tavo_ad_network() {
  return &exports;
}
