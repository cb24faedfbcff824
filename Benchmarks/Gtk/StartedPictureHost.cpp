// A host that shows one picture ad and ends once it is painted.
#include <gtkmm.h>

#include <tavo/Runtime.h>
#include <tavo/XAdView.h>
#include <tavo/gtk/AdSlot.h>
#include <tavo/gtk/GtkPlatform.h>

#include "StartedProgram.h"

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  const auto app =
      Gtk::Application::create("com.example.started", Gio::Application::Flags::NON_UNIQUE);
  app->signal_activate().connect([&] {
    static tavo::Runtime runtime{tavo::gtk::makePlatform(
        {.applicationId = "com.example.started", .dataFolder = argv[2], .assumeReachable = true})};
    static Gtk::Window window;
    static const auto banner = tavo::XAdView::create({0, 0, 320, 50});
    static const auto events = std::make_shared<tavo::XAdViewDelegate>(
        tavo::XAdViewDelegate{.xAdViewDidLoad = [](tavo::XAdView&) {
          tavo::benchmark::reportAfterPaint(window.gobj());
        }});
    static const auto slot = std::make_unique<tavo::gtk::AdSlot>(banner);
    banner->delegate.set(events);
    window.set_child(*slot);
    app->add_window(window);
    window.present();
    banner->loadWithDomainName(std::string{argv[1]} + "/ads", "picture-banner", "Bottom1");
  });
  return app->run();
}
