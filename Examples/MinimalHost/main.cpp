// The smallest host: a window with one banner at its bottom.
#include <gtkmm.h>

#include <tavo/Runtime.h>
#include <tavo/XAdView.h>
#include <tavo/gtk/AdSlot.h>
#include <tavo/gtk/GtkPlatform.h>

int main(int argc, char** argv) {
  const std::string server = argc > 1 ? argv[1] : "127.0.0.1:8080";
  const auto app = Gtk::Application::create("com.example.minimalhost");
  std::unique_ptr<tavo::Runtime> runtime;
  std::unique_ptr<Gtk::Window> window;
  const auto events = std::make_shared<tavo::XAdViewDelegate>(tavo::XAdViewDelegate{
      .xAdViewDidLoad = [](tavo::XAdView&) { g_print("The banner is on the screen.\n"); },
      .xAdViewDidFailWithError =
          [](tavo::XAdView&, const std::optional<tavo::Error>& error) {
            g_print("No banner: %s\n", error ? error->description.c_str() : "no answer");
          }});
  app->signal_activate().connect([&] {
    runtime = std::make_unique<tavo::Runtime>(
        tavo::gtk::makePlatform({.applicationId = "com.example.minimalhost"}));
    const auto banner = tavo::XAdView::create({0, 0, 320, 50});
    banner->delegate.set(events);
    window = std::make_unique<Gtk::Window>();
    window->set_default_size(360, 640);
    window->set_child(*Gtk::make_managed<tavo::gtk::AdSlot>(banner));
    app->add_window(*window);
    window->present();
    banner->loadWithDomainName(server + "/ads", "image-banner", "Bottom1");
  });
  const int status = app->run();
  window.reset();   // ad views first,
  runtime.reset();  // then what they live in
  return status;
}
