// A host that decides what is shown: it looks at each page before it is on the screen, and shows
// its own picture where it refuses one; and it carries calls out itself.
#include <gtkmm.h>

#include <tavo/Runtime.h>
#include <tavo/XAdView.h>
#include <tavo/gtk/AdSlot.h>
#include <tavo/gtk/GtkPlatform.h>

namespace {

class Magazine : public Gtk::Window {
 public:
  explicit Magazine(std::string server) : server_{std::move(server)} {
    set_title("Refusing host");
    set_default_size(360, 240);
    set_child(column_);
    page_.set_markup(
        "<big><b>How to read slowly</b></big>\n\nTake the long way through a page. Nobody is "
        "waiting "
        "at its end.");
    page_.set_wrap(true);
    page_.set_xalign(0);
    page_.set_margin(18);
    quiet_.set_active(true);
    quiet_.set_vexpand(true);
    quiet_.set_valign(Gtk::Align::START);
    quiet_.set_margin_start(18);
    quiet_.signal_toggled().connect([this] { load(); });
    own_.set_markup("<b>Read us on paper, too</b>");
    own_.set_size_request(320, 50);
    own_.add_css_class("card");
    place_.add(slot_);
    place_.add(own_);
    place_.set_halign(Gtk::Align::CENTER);
    column_.append(page_);
    column_.append(quiet_);
    column_.append(place_);
    ad_->delegate.set(events_);
    load();
  }

 private:
  void load() { ad_->loadWithDomainName(server_ + "/ads", "html-banner", "Bottom1"); }

  // Asked when the page has loaded, and before it is shown and counted.
  bool mayShow() const { return !quiet_.get_active(); }

  const std::string server_;
  const std::shared_ptr<tavo::XAdView> ad_ = tavo::XAdView::create({0, 0, 320, 50});
  tavo::gtk::AdSlot slot_{ad_};
  Gtk::Label page_;
  Gtk::CheckButton quiet_{"No ads that move"};
  Gtk::Label own_;
  Gtk::Stack place_;
  Gtk::Box column_{Gtk::Orientation::VERTICAL};
  const std::shared_ptr<const tavo::XAdViewDelegate> events_ =
      std::make_shared<tavo::XAdViewDelegate>(tavo::XAdViewDelegate{
          .xAdViewDidLoad = [this](tavo::XAdView&) { place_.set_visible_child(slot_); },
          // Code 1007 for a page that was refused here; what a host shows is the same for all.
          .xAdViewDidFailWithError =
              [this](tavo::XAdView&, const std::optional<tavo::Error>&) {
                place_.set_visible_child(own_);
              },
          .xAdViewShouldDisplayAdOnWebViewFinishRender =
              [this](tavo::XAdView&, tavo::WebView&) { return mayShow(); },
          .xAdViewShouldHandleClickToAction =
              [](tavo::XAdView&, tavo::ClickToAction action, const tavo::ClickToActionParameters&) {
                return action != tavo::ClickToAction::phone;  // false: the host sees to it
              }});
};

}  // namespace

int main(int, char** argv) {
  const std::string server = argv[1] != nullptr ? argv[1] : "127.0.0.1:8080";
  const auto app = Gtk::Application::create("com.example.refusing");
  std::unique_ptr<tavo::Runtime> runtime;
  std::unique_ptr<Magazine> magazine;
  app->signal_startup().connect([&] {
    runtime = std::make_unique<tavo::Runtime>(tavo::gtk::makePlatform(
        {.applicationId = "com.example.refusing", .assumeReachable = true}));
  });
  app->signal_activate().connect([&] {
    if (!magazine) {
      magazine = std::make_unique<Magazine>(server);
      app->add_window(*magazine);
    }
    magazine->present();
  });
  const int status = app->run();
  magazine.reset();
  runtime.reset();
  return status;
}
