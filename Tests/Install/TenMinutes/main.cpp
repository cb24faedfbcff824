#include <gtkmm.h>

#include <tavo/Runtime.h>
#include <tavo/XAdView.h>
#include <tavo/gtk/AdSlot.h>
#include <tavo/gtk/GtkPlatform.h>

int main() {
  const auto app = Gtk::Application::create("com.example.first");
  std::unique_ptr<tavo::Runtime> runtime;
  app->signal_activate().connect([&] {
    if (runtime) return;  // started a second time
    runtime = std::make_unique<tavo::Runtime>(
        tavo::gtk::makePlatform({.applicationId = "com.example.first", .assumeReachable = true}));
    auto* window = Gtk::make_managed<Gtk::ApplicationWindow>();
    const auto banner = tavo::XAdView::create({0, 0, 320, 50});
    window->set_child(*Gtk::make_managed<tavo::gtk::AdSlot>(banner));
    app->add_window(*window);
    window->present();
    banner->loadWithDomainName("127.0.0.1:8080/ads", "html-banner", "Bottom1");
  });
  return app->run();
}
