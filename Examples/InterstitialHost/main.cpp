// A host with an interstitial: the ad is fetched while a level is played, shown between two levels,
// and the host goes on when it is gone, or when there was none.
#include <gtkmm.h>

#include <tavo/Runtime.h>
#include <tavo/XAdInterstitialViewController.h>
#include <tavo/gtk/AdWindow.h>
#include <tavo/gtk/GtkPlatform.h>

namespace {

using Interstitial = tavo::XAdInterstitialViewController;
using Events = tavo::XAdInterstitialViewControllerDelegate;

class Game : public Gtk::Window {
 public:
  explicit Game(std::string server) : server_{std::move(server)} {
    set_title("Interstitial host");
    set_default_size(360, 480);
    finish_.signal_clicked().connect([this] { levelEnds(); });
    finish_.set_halign(Gtk::Align::CENTER);
    finish_.set_valign(Gtk::Align::CENTER);
    finish_.add_css_class("suggested-action");
    set_child(finish_);
    ad_->delegate.set(events_);
    levelBegins();
  }

 private:
  void levelBegins() {
    finish_.set_label("Finish level " + std::to_string(++level_));
    ready_ = false;
    ad_->loadWithDomainName(server_ + "/ads", "interstitial-html", "Full");
  }

  void levelEnds() {
    if (!ready_) return levelBegins();
    tavo::gtk::rootViewControllerOf(*this)->presentViewController(ad_, tavo::Animated::yes);
  }

  const std::string server_;
  Gtk::Button finish_;
  int level_ = 0;
  bool ready_ = false;
  const std::shared_ptr<Interstitial> ad_ = Interstitial::create();
  // The last member, so that nothing is reported into a window that goes away.
  const std::shared_ptr<const Events> events_ = std::make_shared<Events>(
      Events{.xAdInterstitialDidLoad = [this](Interstitial*) { ready_ = true; },
             .xAdInterstitialDidFailWithError =
                 [this](Interstitial&, const std::optional<tavo::Error>&) { ready_ = false; },
             .xAdInterstitialDismissed = [this](Interstitial&) { levelBegins(); }});
};

}  // namespace

int main(int, char** argv) {
  const std::string server = argv[1] != nullptr ? argv[1] : "127.0.0.1:8080";
  const auto app = Gtk::Application::create("com.example.interstitial");
  std::unique_ptr<tavo::Runtime> runtime;
  std::unique_ptr<Game> game;
  app->signal_startup().connect([&] {
    runtime = std::make_unique<tavo::Runtime>(tavo::gtk::makePlatform(
        {.applicationId = "com.example.interstitial", .assumeReachable = true}));
  });
  app->signal_activate().connect([&] {
    if (!game) {
      game = std::make_unique<Game>(server);
      app->add_window(*game);
    }
    game->present();
  });
  const int status = app->run();
  game.reset();     // ad views first,
  runtime.reset();  // then what they live in
  return status;
}
