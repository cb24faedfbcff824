// A host whose ads lead into itself: a creative opens "app://offers/42", and the host shows the
// offer.
#include <gtkmm.h>

#include <tavo/Runtime.h>
#include <tavo/XAdView.h>
#include <tavo/gtk/AdSlot.h>
#include <tavo/gtk/GtkPlatform.h>

namespace {

class Shop : public Gtk::Window {
 public:
  explicit Shop(const std::string& server) {
    set_title("Custom scheme host");
    set_default_size(360, 240);
    page_.set_vexpand(true);
    page_.set_justify(Gtk::Justification::CENTER);
    page_.set_markup("<big><b>Welcome</b></big>\n\nClick the ad for an offer.");
    column_.append(page_);
    column_.append(slot_);
    set_child(column_);
    ad_->delegate.set(events_);
    ad_->loadWithDomainName(server + "/ads", "custom-scheme", "Bottom1");
  }

 private:
  // "app://offers/42": the host of the address is the kind of page, its path the number.
  void open(const tavo::Url& url) {
    std::string_view number = url.path();
    if (number.starts_with('/')) number.remove_prefix(1);
    page_.set_markup("<big><b>Offer " + Glib::Markup::escape_text(std::string{number}) +
                     "</b></big>\n\nopened by " +
                     Glib::Markup::escape_text(std::string{url.text()}));
  }

  const std::shared_ptr<tavo::XAdView> ad_ = tavo::XAdView::create({0, 0, 320, 50});
  tavo::gtk::AdSlot slot_{ad_};
  Gtk::Label page_;
  Gtk::Box column_{Gtk::Orientation::VERTICAL};
  const std::shared_ptr<const tavo::XAdViewDelegate> events_ =
      std::make_shared<tavo::XAdViewDelegate>(tavo::XAdViewDelegate{
          .xAdViewShouldHandleCustomURL = [this](tavo::XAdView&, const tavo::Url& url) {
            open(url);
            return true;
          }});
};

}  // namespace

int main(int, char** argv) {
  const std::string server = argv[1] != nullptr ? argv[1] : "127.0.0.1:8080";
  const auto app = Gtk::Application::create("com.example.customscheme");
  std::unique_ptr<tavo::Runtime> runtime;
  std::unique_ptr<Shop> shop;
  app->signal_startup().connect([&] {
    runtime = std::make_unique<tavo::Runtime>(tavo::gtk::makePlatform(
        {.applicationId = "com.example.customscheme", .assumeReachable = true}));
  });
  app->signal_activate().connect([&] {
    if (!shop) {
      shop = std::make_unique<Shop>(server);
      app->add_window(*shop);
    }
    shop->present();
  });
  const int status = app->run();
  shop.reset();
  runtime.reset();
  return status;
}
