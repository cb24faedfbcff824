#include "UserAgents.h"

#include <gtk/gtk.h>
#include <webkit/webkit.h>

#include <string>

#include <tavo/gtk/GtkPlatform.h>

#include "Elapsed.h"
#include "Services/WebViewFactory.h"
#include "Support/HostLoop.h"
#include "Support/TemporaryFolder.h"

namespace tavo::benchmark {
namespace {

// Until the first picture of it is painted.
void showWindow() {
  GtkWidget* const window = gtk_window_new();
  gtk_window_set_child(GTK_WINDOW(window), gtk_label_new("A host"));
  gtk_window_present(GTK_WINDOW(window));
  bool isPainted = false;
  g_signal_connect(
      gtk_widget_get_frame_clock(window), "after-paint",
      G_CALLBACK(+[](GdkFrameClock*, gpointer painted) { *static_cast<bool*>(painted) = true; }),
      &isPainted);
  test::runUntil([&] { return isPainted; });
  gtk_window_destroy(GTK_WINDOW(window));
}

double timeInFolder(const std::string& folder, bool withWindow = false) {
  const Platform platform =
      gtk::makePlatform({.applicationId = "com.example.benchmark", .dataFolder = folder});
  if (withWindow) showWindow();
  const auto start = Clock::now();
  return platform.webViews->userAgent().empty() ? 0 : millisecondsSince(start);
}

void noteAnswer(GObject* view, GAsyncResult* result, gpointer answered) {
  JSCValue* value =
      webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(view), result, nullptr);
  *static_cast<bool*>(answered) = value != nullptr;
  g_clear_object(&value);
}

}  // namespace

double userAgentTime(Engine engine) {
  gtk_init();
  const test::TemporaryFolder folder;
  const double first = timeInFolder(folder.path(""), engine == Engine::unknownAtStart);
  return engine == Engine::known ? timeInFolder(folder.path("")) : first;
}

double userAgentTimeOfView() {
  gtk_init();
  const auto start = Clock::now();
  auto* const view = WEBKIT_WEB_VIEW(g_object_ref_sink(webkit_web_view_new()));
  bool answered = false;
  webkit_web_view_evaluate_javascript(view, "navigator.userAgent", -1, nullptr, nullptr, nullptr,
                                      noteAnswer, &answered);
  const bool inTime = test::runUntil([&] { return answered; });
  const double time = millisecondsSince(start);
  g_object_unref(view);
  return inTime ? time : 0;
}

double userAgentTimeOfProgram() {
  std::string program = TAVO_USER_AGENT_PROGRAM;
  char* arguments[] = {program.data(), nullptr};
  char* text = nullptr;
  const auto start = Clock::now();
  const bool ran = g_spawn_sync(nullptr, arguments, nullptr, G_SPAWN_STDERR_TO_DEV_NULL, nullptr,
                                nullptr, &text, nullptr, nullptr, nullptr) != FALSE;
  const double time = millisecondsSince(start);
  const bool said = ran && *text != '\0';
  g_free(text);
  return said ? time : 0;
}

}  // namespace tavo::benchmark
