// A host that hands its slot to another ad network where the server says so, or has no ad. The
// network is a library of its own, which is named at run time: SampleNetwork is one.
#include <gtkmm.h>

#include <tavo/Runtime.h>
#include <tavo/XAdView.h>
#include <tavo/gtk/AdSlot.h>
#include <tavo/gtk/GtkPlatform.h>

namespace {

class Weather : public Gtk::Window {
 public:
  explicit Weather(const std::string& server) {
    set_title("Mediation host");
    set_default_size(360, 240);
    report_.set_markup(
        "<span size='300%'>21 °C</span>\n<big>Sunny, with a light wind from the sea</big>");
    report_.set_justify(Gtk::Justification::CENTER);
    report_.set_vexpand(true);
    column_.append(report_);
    column_.append(slot_);
    set_child(column_);
    auto& settings = *ad_->slotConfiguration();
    settings.canMediate = 1;  // also when the server has no ad
    settings.mediationPlacementId = "sample-banner";
    settings.mediationBannerWidth = 320;
    settings.mediationBannerHeight = 50;
    ad_->delegate.set(events_);
    ad_->loadWithDomainName(server + "/ads", "no-ad", "Bottom1");
  }

 private:
  const std::shared_ptr<tavo::XAdView> ad_ = tavo::XAdView::create({0, 0, 320, 50});
  tavo::gtk::AdSlot slot_{ad_};
  Gtk::Label report_;
  Gtk::Box column_{Gtk::Orientation::VERTICAL};
  const std::shared_ptr<const tavo::XAdViewDelegate> events_ =
      std::make_shared<tavo::XAdViewDelegate>(tavo::XAdViewDelegate{
          .xAdViewDidLoad = [](tavo::XAdView&) { g_print("The network's ad is there.\n"); },
          .xAdViewDidFailWithError =
              [](tavo::XAdView&, const std::optional<tavo::Error>& error) {
                g_print("No ad: %s\n", error ? error->description.c_str() : "no answer");
              }});
};

}  // namespace

// MediationHost [SERVER] [LIBRARY OF THE NETWORK, by an absolute path]
int main(int argc, char** argv) {
  const std::string server = argc > 1 ? argv[1] : "127.0.0.1:8080";
  const std::string network = argc > 2 ? argv[2] : "";  // else what TAVO_AD_NETWORK names
  const auto app = Gtk::Application::create("com.example.mediation");
  std::unique_ptr<tavo::Runtime> runtime;
  std::unique_ptr<Weather> weather;
  app->signal_startup().connect([&] {
    runtime = std::make_unique<tavo::Runtime>(
        tavo::gtk::makePlatform({.applicationId = "com.example.mediation",
                                 .assumeReachable = true,
                                 .adNetworkLibrary = network}));
  });
  app->signal_activate().connect([&] {
    if (!weather) {
      weather = std::make_unique<Weather>(server);
      app->add_window(*weather);
    }
    weather->present();
  });
  const int status = app->run();
  weather.reset();
  runtime.reset();
  return status;
}
