// Loads the web engine's library and shows a page in a view, as a host does that maps the engine
// when it needs it; prints the milliseconds from there to the finished page. The page is the
// argument.
#include <dlfcn.h>
#include <gtk/gtk.h>

#include <cstdio>

#include "Elapsed.h"

namespace {

constexpr int finished = 3;  // WEBKIT_LOAD_FINISHED

void loadChanged(GtkWidget* /*view*/, int event, gpointer isFinished) {
  if (event == finished) *static_cast<bool*>(isFinished) = true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  gtk_init();
  char* page = nullptr;
  if (g_file_get_contents(argv[1], &page, nullptr, nullptr) == FALSE) return 2;
  GtkWidget* const window = gtk_window_new();
  gtk_window_present(GTK_WINDOW(window));
  while (g_main_context_iteration(nullptr, FALSE) != FALSE) continue;

  const auto start = tavo::benchmark::Clock::now();
  void* const engine = dlopen("libwebkitgtk-6.0.so.4", RTLD_NOW);
  if (engine == nullptr) return 2;
  const auto make = reinterpret_cast<GtkWidget* (*)()>(dlsym(engine, "webkit_web_view_new"));
  const auto load = reinterpret_cast<void (*)(GtkWidget*, const char*, const char*)>(
      dlsym(engine, "webkit_web_view_load_html"));
  GtkWidget* const view = make();
  gtk_window_set_child(GTK_WINDOW(window), view);
  bool isFinished = false;
  g_signal_connect(view, "load-changed", G_CALLBACK(loadChanged), &isFinished);
  load(view, page, nullptr);
  while (!isFinished) g_main_context_iteration(nullptr, TRUE);
  std::printf("%f\n", tavo::benchmark::millisecondsSince(start));
  g_free(page);
  return 0;
}
