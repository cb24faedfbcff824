// The smallest host: an article with one banner below it.
#include <gtkmm.h>

#include <tavo/Runtime.h>
#include <tavo/XAdView.h>
#include <tavo/gtk/AdSlot.h>
#include <tavo/gtk/GtkPlatform.h>

int main(int, char** argv) {
  const std::string server = argv[1] != nullptr ? argv[1] : "127.0.0.1:8080";
  const auto app = Gtk::Application::create("com.example.minimalhost");
  std::unique_ptr<tavo::Runtime> runtime;
  std::unique_ptr<Gtk::Window> window;
  const auto events = std::make_shared<tavo::XAdViewDelegate>(tavo::XAdViewDelegate{
      .xAdViewDidLoad = [](tavo::XAdView&) { g_print("The banner is on the screen.\n"); },
      .xAdViewDidFailWithError =
          [](tavo::XAdView&, const std::optional<tavo::Error>& error) {
            g_print("No banner: %s\n", error ? error->description.c_str() : "no answer");
          }});
  app->signal_startup().connect([&] {
    runtime = std::make_unique<tavo::Runtime>(tavo::gtk::makePlatform(
        {.applicationId = "com.example.minimalhost",
         .assumeReachable = true}));  // the sample server is on this machine
  });
  app->signal_activate().connect([&] {
    if (window) return window->present();  // started a second time
    const auto banner = tavo::XAdView::create({0, 0, 320, 50});
    banner->delegate.set(events);
    banner->slotConfiguration()->scalingAllowed = true;  // pictures of twice the size are sharp
    auto* article = Gtk::make_managed<Gtk::Label>();
    article->set_markup(
        "<big><b>The old ferry sails again</b></big>\n\nFor the first time in eleven years the "
        "white "
        "ferry crosses the bay. It leaves at eight, at noon and at five, and takes bicycles for "
        "nothing.\n\nThe captain has promised to blow the horn only once.");
    article->set_wrap(true);
    article->set_xalign(0);
    article->set_valign(Gtk::Align::START);
    article->set_vexpand(true);
    article->set_margin(18);
    auto* column = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
    column->append(*article);
    column->append(*Gtk::make_managed<tavo::gtk::AdSlot>(banner));
    window = std::make_unique<Gtk::Window>();
    window->set_title("Minimal host");
    window->set_default_size(360, 300);
    window->set_child(*column);
    app->add_window(*window);
    window->present();
    banner->loadWithDomainName(server + "/ads", "image-banner", "Bottom1");
  });
  const int status = app->run();
  window.reset();   // ad views first,
  runtime.reset();  // then what they live in
  return status;
}
