// A host with a film: the ad plays in the host's own player, and then the player has its film back.
#include <gtkmm.h>

#include <tavo/MoviePlayerFactory.h>
#include <tavo/Runtime.h>
#include <tavo/XAdView.h>
#include <tavo/gtk/AdSlot.h>
#include <tavo/gtk/GtkPlatform.h>
#include <tavo/gtk/MovieSlot.h>

namespace {

class Cinema : public Gtk::Window {
 public:
  explicit Cinema(std::string server) : server_{std::move(server)} {
    set_title("Pre-roll host");
    set_default_size(360, 320);
    title_.set_vexpand(true);
    title_.set_valign(Gtk::Align::START);
    movie_.set_halign(Gtk::Align::CENTER);
    column_.set_margin_top(20);
    column_.append(movie_);
    column_.append(title_);
    column_.append(slot_);
    set_child(column_);
    player_->setContentUrl(
        tavo::Url::fromText("http://" + server_ + "/assets/vast-preroll/clip.mp4"));
    ad_->delegate.set(events_);
    ad_->setMoviePlayerInstance(player_);  // before the load: this is what makes it a pre-roll
    ad_->loadWithDomainName(server_ + "/ads", "vast-preroll", "Bottom1");
    title_.set_text("One moment: an ad is asked for.");
  }

 private:
  void playFilm() {
    title_.set_text("The film that people came for.");
    player_->play();
  }

  const std::string server_;
  const std::shared_ptr<tavo::MoviePlayer> player_ =
      tavo::Runtime::current().platform().moviePlayers->create({0, 0, 320, 180});
  // The ad has no place of its own on the screen, but belongs to a window.
  const std::shared_ptr<tavo::XAdView> ad_ = tavo::XAdView::create({0, 0, 320, 1});
  tavo::gtk::MovieSlot movie_{player_};
  tavo::gtk::AdSlot slot_{ad_};
  Gtk::Label title_;
  Gtk::Box column_{Gtk::Orientation::VERTICAL, 12};
  const std::shared_ptr<const tavo::XAdViewDelegate> events_ =
      std::make_shared<tavo::XAdViewDelegate>(tavo::XAdViewDelegate{
          .xAdViewDidLoad =
              [this](tavo::XAdView&) { title_.set_text("An ad, which may be skipped soon."); },
          // The end of the ad, and of its absence: either way the film is next.
          .xAdViewPrerollDidFinishWithPlayer =
              [this](tavo::XAdView&, const std::shared_ptr<tavo::MoviePlayer>&) { playFilm(); }});
};

}  // namespace

int main(int, char** argv) {
  const std::string server = argv[1] != nullptr ? argv[1] : "127.0.0.1:8080";
  const auto app = Gtk::Application::create("com.example.preroll");
  std::unique_ptr<tavo::Runtime> runtime;
  std::unique_ptr<Cinema> cinema;
  app->signal_startup().connect([&] {
    runtime = std::make_unique<tavo::Runtime>(
        tavo::gtk::makePlatform({.applicationId = "com.example.preroll", .assumeReachable = true}));
  });
  app->signal_activate().connect([&] {
    if (!cinema) {
      cinema = std::make_unique<Cinema>(server);
      app->add_window(*cinema);
    }
    cinema->present();
  });
  const int status = app->run();
  cinema.reset();
  runtime.reset();
  return status;
}
