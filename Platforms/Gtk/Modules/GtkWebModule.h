#pragma once

#include <filesystem>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <tavo/Inspection.h>
#include <tavo/Limits.h>

#include "Gtk/Http/GtkCookieStore.h"
#include "Gtk/Modules/ModuleFile.h"
#include "Gtk/Modules/SandboxProbe.h"
#include "Gtk/Services/OwnFolders.h"
#include "Services/Log.h"
#include "Services/RunLoop.h"
#include "Services/UserDefaults.h"
#include "Services/WebViewFactory.h"

namespace tavo::gtk {

// Makes web views by way of the web module, which is loaded when the first one is asked for: a host
// that only ever shows pictures never maps the engine. Where the module cannot be loaded or the
// engine cannot run, it hands out web views whose loads fail; that is decided once per process.
class GtkWebModule : public WebViewFactory {
 public:
  struct Services {
    std::shared_ptr<RunLoop> runLoop;
    std::shared_ptr<UserDefaults> userDefaults;
    std::shared_ptr<Log> log;
    std::shared_ptr<GtkCookieStore> cookies;
    std::shared_ptr<Inspection> inspection{};  // may be null
    Limits limits{};
  };

  explicit GtkWebModule(Services services, std::filesystem::path folder = moduleFolder());
  ~GtkWebModule() override;
  GtkWebModule(const GtkWebModule&) = delete;
  GtkWebModule& operator=(const GtkWebModule&) = delete;

  [[nodiscard]] std::shared_ptr<WebView> create(const Rect& frame,
                                                const WebViewOptions& options) override;
  void warmUp(const WebViewOptions& options) override;

  // While the module is not loaded, a small helper program asks the engine, a tenth of a second
  // once per installed engine, for the answer is remembered in the user defaults beside the engine
  // library's name, size and time. A program that gives no answer within five seconds, or none at
  // all, counts as "no engine".
  void findUserAgent(std::function<void()> found) override;
  // The same, and the caller waits for the program, which may be under way already.
  [[nodiscard]] std::string userAgent() override;

  [[nodiscard]] bool isLoaded() const { return factory_ != nullptr; }

 private:
  // The module's factory, or null when there is none to be had.
  [[nodiscard]] WebViewFactory* factory();
  void load();
  void probeSandbox();
  [[nodiscard]] std::filesystem::path moduleFile() const;
  [[nodiscard]] bool knowsUserAgent();
  [[nodiscard]] std::string helperProgram() const;
  void askEngine();
  void takeAnswer();
  void takeUserAgent(const std::optional<std::string>& answer);
  void tellUserAgent();

  Services services_;
  std::filesystem::path folder_;
  std::shared_ptr<GtkWebModule*> self_ = std::make_shared<GtkWebModule*>(this);
  std::optional<SandboxProbe> sandbox_;
  bool mapping_ = false;
  bool triedToLoad_ = false;
  std::unique_ptr<WebViewFactory> factory_;
  std::string userAgent_;
  std::shared_future<std::optional<std::string>> asked_;  // valid while the program runs
  std::vector<std::function<void()>> waitingForUserAgent_;
};

}  // namespace tavo::gtk
