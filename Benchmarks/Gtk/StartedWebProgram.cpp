// What a host would be that linked the web engine itself.
#include <gtkmm.h>
#include <webkit/webkit.h>

#include "StartedProgram.h"

int main(int argc, char** /*argv*/) {
  tavo::benchmark::reportStart();
  if (argc < 2) return 0;
  const auto app = Gtk::Application::create("com.example.started");
  Gtk::Window window;
  gtk_window_set_child(window.gobj(), webkit_web_view_new());
  return 0;
}
