#include "StateChanges.h"

#include <webkit/webkit.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "Gtk/Scene/NativeView.h"
#include "Services/RunLoop.h"
#include "Support/GtkHost.h"

namespace tavo::benchmark {
namespace {

using Clock = std::chrono::steady_clock;

// What an expansion and its layout report tell the creative.
const std::vector<std::string> statements{
    "mraid.setState('expanded');",
    "mraid.setScreenSize({width:360,height:640});",
    "mraid.setMaxSize({width:360,height:640});",
    "mraid.setDefaultPosition({x:0,y:0,width:320,height:50 });",
    "mraid.setCurrentPosition({x:0,y:0,width:360,height:640 });",
    "mraid.setViewable(true);",
    "mraid.setState('default');",
    "mraid.setScreenSize({width:360,height:640});",
    "mraid.setMaxSize({width:360,height:640});",
    "mraid.setDefaultPosition({x:0,y:0,width:320,height:50 });",
    "mraid.setCurrentPosition({x:0,y:0,width:320,height:50 });",
    "mraid.setViewable(true);"};

// A statement whose result somebody waits for is an evaluation of its own.
void tell(WebView& page, Evaluation evaluation) {
  for (const auto& statement : statements) {
    if (evaluation == Evaluation::together) {
      page.evaluate(statement);
    } else {
      page.evaluate(statement, [](const std::string&) {});
    }
  }
}

}  // namespace

// What the engine takes for one evaluation that says all of it, without anything of the library's.
double bareEvaluation() {
  test::GtkHost host{TAVO_BENCHMARK_CAMPAIGNS};
  host.load("frame-banner");
  host.runUntil([&] { return host.banner()->webViewInstance() != nullptr; });
  const auto page = host.banner()->webViewInstance();
  auto* const view = WEBKIT_WEB_VIEW(dynamic_cast<gtk::NativeView&>(*page).widget());
  std::string all;
  for (const auto& statement : statements) all += "try{" + statement + "\n}catch(e){}\n";
  constexpr int changes = 1'000;
  int left = changes;
  const auto start = Clock::now();
  for (int change = 0; change < changes; ++change) {
    webkit_web_view_evaluate_javascript(
        view, all.data(), static_cast<gssize>(all.size()), nullptr, nullptr, nullptr,
        [](GObject* source, GAsyncResult* result, gpointer count) {
          auto* const value =
              webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(source), result, nullptr);
          if (value != nullptr) g_object_unref(value);
          --*static_cast<int*>(count);
        },
        &left);
  }
  host.runUntil([&] { return left == 0; });
  return std::chrono::duration<double, std::micro>{Clock::now() - start}.count() / changes;
}

double stateChanges(Evaluation evaluation) {
  test::GtkHost host{TAVO_BENCHMARK_CAMPAIGNS};
  host.load("frame-banner");
  host.runUntil([&] { return host.banner()->webViewInstance() != nullptr; });
  const auto page = host.banner()->webViewInstance();
  constexpr int changes = 1'000;
  auto& loop = *Runtime::current().platform().runLoop;
  bool taken = false;
  const auto start = Clock::now();
  for (int change = 0; change < changes; ++change) {
    loop.post([&, page] { tell(*page, evaluation); });
  }
  loop.post([&, page] { page->evaluate("0", [&](const std::string&) { taken = true; }); });
  host.runUntil([&] { return taken; });
  return std::chrono::duration<double, std::micro>{Clock::now() - start}.count() / changes;
}

}  // namespace tavo::benchmark
