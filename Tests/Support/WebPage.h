#pragma once

#include <gtk/gtk.h>

#include <chrono>

#include <tavo/WebView.h>

#include "Gtk/Http/GtkCookieStore.h"
#include "Gtk/Modules/GtkWebModule.h"
#include "Gtk/Scene/NativeView.h"
#include "Gtk/Services/GtkRunLoop.h"
#include "Headless/HeadlessServices.h"
#include "Support/HostLoop.h"
#include "Support/HostileServer.h"
#include "Support/TemporaryFolder.h"

// Pages of the web module on the real engine, without the library above it.
#include "Support/Testing.h"

namespace tavo::test {

inline const Url noBase;
constexpr std::chrono::seconds pagePatience{30};

class Recorder : public WebViewClient {
 public:
  bool webViewShouldStartLoad(WebView& /*webView*/, const Navigation& navigation) override {
    navigations.push_back(navigation);
    if (navigation.url.scheme() == "mraid") commands.push_back(navigation.url.text());
    return navigation.url.scheme() != "mraid" && (!allows || allows(navigation));
  }
  void webViewDidStartLoad(WebView& /*webView*/) override { events.emplace_back("start"); }
  void webViewDidFinishLoad(WebView& /*webView*/) override { events.emplace_back("finish"); }
  void webViewDidFailLoad(WebView& /*webView*/, const Error& error) override {
    events.push_back("fail " + error.domain + ' ' + std::to_string(error.code));
  }
  void webViewProcessDidTerminate(WebView& /*webView*/, const Error& error) override {
    events.push_back("gone " + std::to_string(error.code));
  }

  [[nodiscard]] long count(const std::string& event) const {
    return std::count(events.begin(), events.end(), event);
  }

  std::function<bool(const Navigation&)> allows;
  std::vector<std::string> events;
  std::vector<std::string> commands;
  std::vector<Navigation> navigations;
};

inline PlainAnswer html(const std::string& text) {
  return {.body = "<html><body>" + text + "</body></html>", .contentType = "text/html"};
}

inline Url urlOf(const HostileServer& server, const std::string& path) {
  return Url::parse(server.url(path));
}

// The paths that were asked for, in order.
inline std::vector<std::string> paths(const HostileServer& server) {
  std::vector<std::string> paths;
  for (const auto& request : server.requests()) {
    const auto start = request.find(' ') + 1;
    paths.push_back(request.substr(start, request.find(' ', start) - start));
  }
  return paths;
}

inline const std::shared_ptr<gtk::GtkRunLoop>& loop() {
  static const auto loop = std::make_shared<gtk::GtkRunLoop>();
  return loop;
}

inline const std::shared_ptr<gtk::GtkCookieStore>& cookies() {
  static const TemporaryFolder folder;
  static const auto store =
      std::make_shared<gtk::GtkCookieStore>(loop(), folder.path("cookies.sqlite"));
  return store;
}

inline const std::shared_ptr<Inspection>& inspection() {
  static const auto inspection = std::make_shared<Inspection>([] { return loop()->now(); });
  return inspection;
}

inline gtk::GtkWebModule::Services webServices(const Limits& limits) {
  return {.runLoop = loop(),
          .userDefaults = std::make_shared<headless::HeadlessUserDefaults>(),
          .log = std::make_shared<headless::HeadlessLog>(),
          .cookies = cookies(),
          .inspection = inspection(),
          .limits = limits};
}

inline Limits impatience() {
  Limits limits;
  limits.webProcessPing = Seconds{1.5};
  limits.webProcessWatch = Seconds{0.5};
  limits.pageTimeout = Seconds{6};
  return limits;
}

// One factory for all tests of this process, as in a host.
inline gtk::GtkWebModule& factory() {
  static gtk::GtkWebModule module{webServices(impatience())};
  return module;
}

struct Page {
  explicit Page(const WebViewOptions& options = {}, Rect frame = {0, 0, 320, 50},
                gtk::GtkWebModule& module = factory())
      : view{module.create(frame, options)} {
    view->setClient(client);
  }

  void load(const std::string& html, const Url& base = noBase) {
    const auto before = client->count("finish");
    view->loadHtml(html, base);
    ASSERT_TRUE(runUntil([&] { return client->count("finish") > before; }, pagePatience));
  }

  std::string evaluate(const std::string& script) { return askPage(view.get(), script); }

  std::shared_ptr<Recorder> client = std::make_shared<Recorder>();
  std::shared_ptr<WebView> view;
};

// A window with nothing but a page in it.
class PageWindow {
 public:
  explicit PageWindow(Page& page) {
    gtk_window_set_decorated(GTK_WINDOW(window_), FALSE);
    gtk_window_set_default_size(GTK_WINDOW(window_), 320, 200);
    gtk_window_set_child(GTK_WINDOW(window_), dynamic_cast<gtk::NativeView&>(*page.view).widget());
    gtk_window_present(GTK_WINDOW(window_));
  }
  ~PageWindow() {
    gtk_window_set_child(GTK_WINDOW(window_), nullptr);
    gtk_window_destroy(GTK_WINDOW(window_));
  }
  PageWindow(const PageWindow&) = delete;
  PageWindow& operator=(const PageWindow&) = delete;

 private:
  GtkWidget* window_ = gtk_window_new();
};

class WebPageTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { ASSERT_TRUE(gtk_init_check()); }
  static bool runUntil(const std::function<bool()>& done) {
    return test::runUntil(done, pagePatience);
  }
};

}  // namespace tavo::test
