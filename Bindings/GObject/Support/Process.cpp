#include "Support/Process.h"

#include <gtkmm.h>
#include <gtkmm/init.h>

#include <atomic>
#include <memory>

#include <tavo/Runtime.h>

#include "tavo-ads/tavo-ads.h"

namespace tavo::gobject {

namespace {

// Never taken down: whoever ends the process may do so at any time, with widgets still there and
// threads still at work, and nothing that they use goes before them.
struct Running {
  gtk::GtkPlatformOptions options;
  std::unique_ptr<Runtime> runtime;
  GThread* thread;
};

std::atomic<Running*> running{nullptr};

bool isSameProgram(const gtk::GtkPlatformOptions& left, const gtk::GtkPlatformOptions& right) {
  return left.applicationId == right.applicationId &&
         left.applicationVersion == right.applicationVersion &&
         left.dataFolder == right.dataFolder && left.resourceFolder == right.resourceFolder &&
         left.assumeReachable == right.assumeReachable &&
         left.adNetworkLibrary == right.adNetworkLibrary;
}

// GtkBuilder finds classes by their names once they are there.
void registerClasses() {
  for (const GType type : {TAVO_ADS_TYPE_BANNER, TAVO_ADS_TYPE_PLAYER, TAVO_ADS_TYPE_PREROLL,
                           TAVO_ADS_TYPE_INTERSTITIAL, TAVO_ADS_TYPE_SLOT_SETTINGS}) {
    g_type_ensure(type);
  }
}

}  // namespace

bool Process::start(const gtk::GtkPlatformOptions& options, GError** error) {
  if (const Running* const now = running.load()) {
    if (!isUsable(error)) return false;
    if (isSameProgram(now->options, options)) return true;
    g_set_error(error, TAVO_ADS_ERROR, TAVO_ADS_ERROR_ALREADY_INITIALIZED,
                "The library runs with other options, for \"%s\".",
                now->options.applicationId.c_str());
    return false;
  }
  if (options.applicationId.empty()) {
    g_set_error_literal(error, TAVO_ADS_ERROR, TAVO_ADS_ERROR_INVALID_ARGUMENT,
                        "Give the application's id.");
    return false;
  }
  // The toolkit says yes the second time that it is asked, whatever it has found.
  if (!gtk_init_check() || gdk_display_get_default() == nullptr) {
    g_set_error_literal(error, TAVO_ADS_ERROR, TAVO_ADS_ERROR_NO_DISPLAY,
                        "The toolkit cannot open a display.");
    return false;
  }
  // The locale is the program's.
  Glib::set_init_to_users_preferred_locale(false);
  Gtk::init_gtkmm_internals();
  registerClasses();
  auto runtime = std::make_unique<Runtime>(gtk::makePlatform(options));
  running = new Running{options, std::move(runtime), g_thread_self()};
  return true;
}

bool Process::isRunning() { return running.load() != nullptr; }

bool Process::isMainThread() {
  const Running* const now = running.load();
  return now == nullptr || now->thread == g_thread_self();
}

bool Process::isUsable(GError** error) {
  if (!isRunning()) {
    g_set_error_literal(error, TAVO_ADS_ERROR, TAVO_ADS_ERROR_NOT_INITIALIZED,
                        "Call tavo_ads_init() first.");
    return false;
  }
  if (!isMainThread()) {
    g_set_error_literal(error, TAVO_ADS_ERROR, TAVO_ADS_ERROR_WRONG_THREAD,
                        "Call this on the thread that has called tavo_ads_init().");
    return false;
  }
  return true;
}

bool Process::isUsable(const char* function) {
  g_autoptr(GError) error = nullptr;
  if (isUsable(&error)) return true;
  g_critical("%s: %s", function, error->message);
  return false;
}

bool Process::isOnMainThread(const char* function) { return isMainThread() || isUsable(function); }

bool disposesOnMainThread(GObject* object) {
  if (Process::isMainThread()) return false;
  g_object_ref(object);
  g_idle_add_once(&g_object_unref, object);
  return true;
}

}  // namespace tavo::gobject
