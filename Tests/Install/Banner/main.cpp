// banner SERVER CAMPAIGN: shows one banner of the server, prints the file of the web module that
// this took, if any, and ends: with 0 when the banner was on the screen.
#include <gtkmm.h>

#include <fstream>
#include <iostream>

#include <tavo/Runtime.h>
#include <tavo/XAdView.h>
#include <tavo/gtk/AdSlot.h>
#include <tavo/gtk/GtkPlatform.h>

namespace {

void printModules() {
  std::ifstream maps{"/proc/self/maps"};
  std::string last;
  for (std::string line; std::getline(maps, line);) {
    const auto path = line.find('/');
    if (path == std::string::npos || line.substr(path) == last) continue;
    last = line.substr(path);
    if (last.find("tavo") != std::string::npos) std::cout << last << std::endl;
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::string server = argc > 1 ? argv[1] : "127.0.0.1:8080";
  const std::string campaign = argc > 2 ? argv[2] : "image-banner";
  const auto app = Gtk::Application::create("com.example.banner");
  std::unique_ptr<tavo::Runtime> runtime;
  std::unique_ptr<Gtk::Window> window;
  int outcome = 1;
  const auto events = std::make_shared<tavo::XAdViewDelegate>(tavo::XAdViewDelegate{
      .xAdViewDidLoad =
          [&](tavo::XAdView&) {
            outcome = 0;
            printModules();
            app->quit();
          },
      .xAdViewDidFailWithError =
          [&](tavo::XAdView&, const std::optional<tavo::Error>& error) {
            std::cerr << "No banner: " << (error ? error->description : "no answer") << std::endl;
            app->quit();
          }});
  app->signal_startup().connect([&] {
    runtime = std::make_unique<tavo::Runtime>(
        tavo::gtk::makePlatform({.applicationId = "com.example.banner", .assumeReachable = true}));
  });
  app->signal_activate().connect([&] {
    const auto banner = tavo::XAdView::create({0, 0, 320, 50});
    banner->delegate.set(events);
    window = std::make_unique<Gtk::Window>();
    window->set_child(*Gtk::make_managed<tavo::gtk::AdSlot>(banner));
    app->add_window(*window);
    window->present();
    banner->loadWithDomainName(server + "/ads", campaign, "Bottom1");
  });
  app->run();
  window.reset();
  runtime.reset();
  return outcome;
}
