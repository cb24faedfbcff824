// A host with an interstitial: a button asks for it, and the host goes on when it is gone.
#include <gtkmm.h>

#include <tavo/Runtime.h>
#include <tavo/XAdInterstitialViewController.h>
#include <tavo/gtk/AdWindow.h>
#include <tavo/gtk/GtkPlatform.h>

using Interstitial = tavo::XAdInterstitialViewController;

int main(int argc, char** argv) {
  const std::string server = argc > 1 ? argv[1] : "127.0.0.1:8080";
  const auto app = Gtk::Application::create("com.example.interstitial");
  std::unique_ptr<tavo::Runtime> runtime;
  std::unique_ptr<Gtk::Window> window;
  std::shared_ptr<Interstitial> ad;
  Gtk::Button* level = nullptr;
  const auto goOn = [&] { level->set_label("Level 2: next"); };
  const auto events = std::make_shared<tavo::XAdInterstitialViewControllerDelegate>(
      tavo::XAdInterstitialViewControllerDelegate{
          .xAdInterstitialDidLoad =
              [&](Interstitial*) {
                tavo::gtk::rootViewControllerOf(*window)->presentViewController(
                    ad, tavo::Animated::yes);
              },
          .xAdInterstitialDidFailWithError = [&](Interstitial&,
                                                 const std::optional<tavo::Error>&) { goOn(); },
          .xAdInterstitialDismissed = [&](Interstitial&) { goOn(); }});
  app->signal_activate().connect([&] {
    runtime = std::make_unique<tavo::Runtime>(
        tavo::gtk::makePlatform({.applicationId = "com.example.interstitial"}));
    ad = Interstitial::create();
    ad->delegate.set(events);
    window = std::make_unique<Gtk::Window>();
    window->set_default_size(360, 640);
    level = Gtk::make_managed<Gtk::Button>("Level 1: finish");
    level->signal_clicked().connect(
        [&] { ad->loadWithDomainName(server + "/ads", "interstitial-html", "Full"); });
    window->set_child(*level);
    app->add_window(*window);
    window->present();
  });
  const int status = app->run();
  ad.reset();
  window.reset();   // ad views first,
  runtime.reset();  // then what they live in
  return status;
}
