// Shows one HTML banner of the server that is named, and ends: with 0 when it was on the screen.
#include <gtkmm.h>

#include <tavo/Runtime.h>
#include <tavo/XAdView.h>
#include <tavo/gtk/AdSlot.h>
#include <tavo/gtk/GtkPlatform.h>

int main(int, char** argv) {
  const std::string server = argv[1];
  const auto app = Gtk::Application::create("com.example.htmlhost");
  std::unique_ptr<tavo::Runtime> runtime;
  std::unique_ptr<Gtk::Window> window;
  int outcome = 1;
  const auto events = std::make_shared<tavo::XAdViewDelegate>(tavo::XAdViewDelegate{
      .xAdViewDidLoad =
          [&](tavo::XAdView&) {
            outcome = 0;
            app->quit();
          },
      .xAdViewDidFailWithError = [&](tavo::XAdView&,
                                     const std::optional<tavo::Error>&) { app->quit(); }});
  app->signal_activate().connect([&] {
    runtime = std::make_unique<tavo::Runtime>(tavo::gtk::makePlatform(
        {.applicationId = "com.example.htmlhost", .assumeReachable = true}));
    const auto banner = tavo::XAdView::create({0, 0, 320, 50});
    banner->delegate.set(events);
    window = std::make_unique<Gtk::Window>();
    window->set_child(*Gtk::make_managed<tavo::gtk::AdSlot>(banner));
    app->add_window(*window);
    window->present();
    banner->loadWithDomainName(server + "/ads", "html-banner", "Bottom1");
  });
  app->run();
  window.reset();
  runtime.reset();
  return outcome;
}
