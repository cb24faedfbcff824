#include "Networks/NetworkAdapter.h"

#include <gtkmm.h>

#include <algorithm>
#include <cstdlib>

#include <tavo/CVBannerAdView.h>
#include <tavo/CVInterstitialAd.h>
#include <tavo/gtk/AdWindow.h>
#include <tavo/gtk/WidgetView.h>

#include "Networks/NetworkAdRecord.h"

namespace tavo::gobject {

namespace {

// What banners and interstitials have in common: the library's calls become the object's record.
template <typename Base>
class NetworkAdapter : public Base {
 public:
  explicit NetworkAdapter(GType type)
      : object_{Ref<TavoAdsNetworkAd>::adopt(
            static_cast<TavoAdsNetworkAd*>(g_object_ref_sink(g_object_new(type, nullptr))))} {
    record().ad = this;
  }
  ~NetworkAdapter() override {
    record().ad = nullptr;
    record().delegate.reset();
  }
  NetworkAdapter(const NetworkAdapter&) = delete;
  NetworkAdapter& operator=(const NetworkAdapter&) = delete;

  void setPlacementId(const std::string& placementId) override {
    record().placementId = placementId;
  }
  void setDelegate(const std::weak_ptr<CVAdDelegate>& delegate) override {
    record().delegate = delegate;
  }
  void setOpensInNativeBrowser(bool opens) override { record().opensOutside = opens; }
  void setAge(const std::string& age) override { record().age = std::atoi(age.c_str()); }
  void setGender(int gender) override { record().gender = gender; }
  void setCustomKeywords(std::map<std::string, std::string> keywords) override {
    record().keywords = std::move(keywords);
  }
  void setLocationWithLatitude(double latitude, double longitude, std::optional<Date> timestamp,
                               double horizontalAccuracy) override {
    record().location = Location{latitude, longitude, horizontalAccuracy, timestamp};
  }
  void loadAd() override {
    const auto held = object_;
    if (const auto load = TAVO_ADS_NETWORK_AD_GET_CLASS(held.get())->load) return load(held.get());
    tavo_ads_network_ad_failed(held.get(), 0, "The network's class does not implement \"load\".");
  }

 protected:
  [[nodiscard]] NetworkAdRecord& record() const { return recordOf(object_.get()); }
  [[nodiscard]] const Ref<TavoAdsNetworkAd>& object() const { return object_; }

 private:
  const Ref<TavoAdsNetworkAd> object_;
};

class NetworkBanner : public NetworkAdapter<CVBannerAdView> {
 public:
  using NetworkAdapter::NetworkAdapter;

  [[nodiscard]] std::shared_ptr<View> view() override { return view_; }
  void setRootViewController(const std::weak_ptr<ViewController>& /*controller*/) override {}
  void setAdSize(const Size& size) override { record().size = size; }
  void setAutoRefreshInterval(double /*seconds*/) override {}

  // The network's widget as large as was asked for, in the middle of the slot.
  void show(GtkWidget* widget) {
    const Rect room = view_->bounds();
    const double width = std::min(room.width, record().size.width);
    const double height = std::min(room.height, record().size.height);
    view_->removeAllSubviews();
    view_->addSubview(gtk::makeWidgetView(
        widget, {(room.width - width) / 2, (room.height - height) / 2, width, height}));
  }

 private:
  const std::shared_ptr<View> view_ = std::make_shared<View>();
};

class NetworkInterstitial : public NetworkAdapter<CVInterstitialAd> {
 public:
  explicit NetworkInterstitial(GType type) : NetworkAdapter{type} {
    record().isInterstitial = true;
  }

  void displayAdFromViewController(const std::shared_ptr<ViewController>& controller) override {
    const auto held = object();
    const auto present = TAVO_ADS_NETWORK_AD_GET_CLASS(held.get())->present;
    if (present == nullptr) {
      return tavo_ads_network_ad_failed(held.get(), 0,
                                        "The network's class does not implement \"present\".");
    }
    Gtk::Window* const window = gtk::windowOf(*controller);
    present(held.get(), window == nullptr ? nullptr : window->gobj());
  }
};

}  // namespace

std::shared_ptr<CVAd> makeNetworkBanner(GType type) {
  return std::make_shared<NetworkBanner>(type);
}

std::shared_ptr<CVAd> makeNetworkInterstitial(GType type) {
  return std::make_shared<NetworkInterstitial>(type);
}

void showNetworkWidget(CVAd& ad, GtkWidget* widget) {
  if (auto* const banner = dynamic_cast<NetworkBanner*>(&ad)) banner->show(widget);
}

}  // namespace tavo::gobject
