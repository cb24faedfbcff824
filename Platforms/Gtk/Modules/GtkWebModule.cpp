#include "Gtk/Modules/GtkWebModule.h"

#include <system_error>
#include <utility>

#include "Gtk/GPtr.h"
#include "Gtk/Modules/UnavailableWebView.h"
#include "Gtk/Services/HelperProgram.h"
#include "Gtk/Web/WebModule.h"
#include "Values/Text.h"

namespace tavo::gtk {
namespace {

constexpr std::string_view userAgentKey = "tavo.webEngine.userAgent";
constexpr std::string_view engineKey = "tavo.webEngine.identity";
constexpr Seconds helperProgramDeadline{5};

// What a request says of itself where no engine is installed: the part that all versions of the
// engine share.
constexpr std::string_view userAgentWithoutEngine =
    "Mozilla/5.0 (X11; Linux x86_64) AppleWebKit/605.1.15 (KHTML, like Gecko)";

// Tells one installed engine from the next by the file behind its library's name, without loading
// it. Empty when there is no such file.
std::string engineIdentity() {
  std::error_code failure;
  const auto file = std::filesystem::canonical(TAVO_WEB_ENGINE_LIBRARY, failure);
  if (failure) return {};
  const auto size = std::filesystem::file_size(file, failure);
  if (failure) return {};
  const auto written = std::filesystem::last_write_time(file, failure);
  if (failure) return {};
  return file.string() + ' ' + std::to_string(size) + ' ' +
         std::to_string(written.time_since_epoch().count());
}

// The cookie store, in the shape in which the module takes it.
class StoreSource : public CookieSource {
 public:
  explicit StoreSource(std::shared_ptr<GtkCookieStore> store) : store_{std::move(store)} {}

  [[nodiscard]] std::vector<Cookie> all() const override { return store_->all(); }
  void adopt(const Cookie& cookie) override { store_->adopt(cookie); }
  void discard(const Cookie& cookie) override { store_->discard(cookie); }
  void setListener(Changed changed) override {
    if (!changed) return store_->setListener({});
    store_->setListener([changed = std::move(changed)](const CookieChange& change) {
      changed(change.previous, change.current);
    });
  }

 private:
  std::shared_ptr<GtkCookieStore> store_;
};

}  // namespace

GtkWebModule::GtkWebModule(Services services, std::filesystem::path folder)
    : services_{std::move(services)}, folder_{std::move(folder)} {}

GtkWebModule::~GtkWebModule() = default;

std::shared_ptr<WebView> GtkWebModule::create(const Rect& frame, const WebViewOptions& options) {
  if (auto* made = factory()) return made->create(frame, options);
  return std::make_shared<UnavailableWebView>(frame, services_.runLoop);
}

// Only the first view is then made on this thread. Whoever needs a view sooner loads the module
// itself and ends the wait.
void GtkWebModule::warmUp(const WebViewOptions& options) {
  if (triedToLoad_) {
    if (factory_) factory_->warmUp(options);
    return;
  }
  if (std::exchange(mapping_, true)) return;
  probeSandbox();
  openInBackground(moduleFile(), services_.runLoop, [self = std::weak_ptr{self_}, options] {
    const auto still = self.lock();
    if (!still || (*still)->triedToLoad_) return;
    if (auto* made = (*still)->factory()) made->warmUp(options);
  });
}

void GtkWebModule::findUserAgent(std::function<void()> found) {
  if (knowsUserAgent()) return found();
  waitingForUserAgent_.push_back(std::move(found));
  if (!asked_.valid()) askEngine();
}

// The worker holds the loop weakly, as whoever lets go of the loop last waits for its workers.
void GtkWebModule::askEngine() {
  const auto answer = std::make_shared<std::promise<std::optional<std::string>>>();
  asked_ = answer->get_future();
  services_.runLoop->background([answer, program = helperProgram(),
                                 loop = std::weak_ptr{services_.runLoop},
                                 self = std::weak_ptr{self_}] {
    answer->set_value(runHelperProgram({program}, helperProgramDeadline));
    const auto still = loop.lock();
    if (!still) return;
    still->post([self] {
      const auto module = self.lock();
      if (!module) return;
      if (!(*module)->knowsUserAgent()) (*module)->takeAnswer();
      (*module)->asked_ = {};
      (*module)->tellUserAgent();
    });
  });
}

// Waits for it. A loop that has ended its workers drops the question.
void GtkWebModule::takeAnswer() {
  const auto asked = std::exchange(asked_, {});
  try {
    takeUserAgent(asked.get());
  } catch (const std::future_error&) {
    takeUserAgent(std::nullopt);
  }
}

// Who is told may end this module.
void GtkWebModule::tellUserAgent() {
  for (const auto& told : std::exchange(waitingForUserAgent_, {})) told();
}

std::string GtkWebModule::userAgent() {
  if (knowsUserAgent()) return userAgent_;
  if (!asked_.valid()) askEngine();
  takeAnswer();
  return userAgent_;
}

bool GtkWebModule::knowsUserAgent() {
  if (!userAgent_.empty()) return true;
  const auto& defaults = *services_.userDefaults;
  const std::string engine = engineIdentity();
  if (factory_) {
    userAgent_ = factory_->userAgent();
  } else if (!engine.empty() && defaults.value(engineKey) == engine) {
    userAgent_ = defaults.value(userAgentKey).value_or("");
  }
  return !userAgent_.empty();
}

void GtkWebModule::takeUserAgent(const std::optional<std::string>& answer) {
  userAgent_ = trimmed(answer.value_or(""));
  const std::string engine = engineIdentity();
  if (!engine.empty() && !userAgent_.empty()) {
    auto& defaults = *services_.userDefaults;
    defaults.setValue(engineKey, engine);
    defaults.setValue(userAgentKey, userAgent_);
    defaults.synchronize();
  }
  if (!userAgent_.empty()) return;
  services_.log->write(LogLevel::warning,
                       "The web engine gave no user agent; a fixed text stands in for it.");
  userAgent_ = userAgentWithoutEngine;
}

std::string GtkWebModule::helperProgram() const {
  return (folder_ / "tavo-web-user-agent").string();
}

std::filesystem::path GtkWebModule::moduleFile() const { return folder_ / "TavoGtkWeb.so"; }

WebViewFactory* GtkWebModule::factory() {
  if (!triedToLoad_) load();
  return factory_.get();
}

// Beside the mapping of the module, which takes longer.
void GtkWebModule::probeSandbox() {
  if (!sandbox_) sandbox_.emplace();
}

void GtkWebModule::load() {
  triedToLoad_ = true;
  probeSandbox();
  std::string failure;
  void* const entry = moduleEntry(moduleFile(), createWebViewFactoryName, failure);
  if (entry == nullptr) return services_.log->write(LogLevel::error, "No HTML ads: " + failure);
  if (!sandbox_->isAvailable()) {
    return services_.log->write(
        LogLevel::error,
        "No HTML ads: the web engine's sandbox cannot be set up here. It needs bubblewrap with "
        "user namespaces, and reach of the display authority and of the sockets of sound and bus "
        "that the environment names.");
  }
  const WebModuleServices services{.runLoop = services_.runLoop,
                                   .log = services_.log,
                                   .cookies = std::make_shared<StoreSource>(services_.cookies),
                                   .inspection = services_.inspection,
                                   .limits = services_.limits};
  factory_.reset(reinterpret_cast<CreateWebViewFactory>(entry)(services));
}

}  // namespace tavo::gtk
