#include "Gtk/Services/UrlHandlers.h"

#include <giomm.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "Gtk/GPtr.h"
#include "Values/Text.h"

namespace tavo::gtk {

namespace {

// The system starts no program with a longer argument (128 KB); the rest is room for what a handler
// adds to it.
constexpr std::size_t longestArgument = 120'000;

void callPortal(GDBusConnection* bus, const std::string& url) {
  constexpr const char* noWindow = "";
  auto* none = g_variant_new_array(G_VARIANT_TYPE("{sv}"), nullptr, 0);
  g_dbus_connection_call(bus, "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
                         "org.freedesktop.portal.OpenURI", "OpenURI",
                         g_variant_new("(ss@a{sv})", noWindow, url.c_str(), none), nullptr,
                         G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr, nullptr);
}

void askPortal(const Url& url) {
  g_bus_get(
      G_BUS_TYPE_SESSION, nullptr,
      [](GObject*, GAsyncResult* result, gpointer text) {
        const std::unique_ptr<std::string> asked{static_cast<std::string*>(text)};
        const auto bus = GPtr<GDBusConnection>::adopt(g_bus_get_finish(result, nullptr));
        if (bus) callPortal(bus.get(), *asked);
      },
      std::make_unique<std::string>(validUtf8(url.text())).release());
}

}  // namespace

UrlHandlers::Surroundings UrlHandlers::surroundings() {
  const char* asIf = std::getenv("GTK_USE_PORTAL");
  const bool isSandbox = g_file_test("/.flatpak-info", G_FILE_TEST_EXISTS) != FALSE ||
                         std::getenv("SNAP") != nullptr ||
                         (asIf != nullptr && std::string_view{asIf} == "1");
  return isSandbox ? Surroundings::sandbox : Surroundings::desktop;
}

bool UrlHandlers::canOpen(const Url& url) const {
  const std::string scheme{url.scheme()};
  if (scheme.empty()) return false;
  if (surroundings_ == Surroundings::sandbox) return !equalsIgnoringCase(scheme, "file");
  return static_cast<bool>(Gio::AppInfo::get_default_for_uri_scheme(scheme));
}

bool UrlHandlers::open(const Url& url) const {
  if (url.text().size() > longestArgument || !canOpen(url)) return false;
  if (surroundings_ == Surroundings::sandbox) {
    askPortal(url);
  } else {
    // The text goes to the other application as one argument; no shell sees it.
    g_app_info_launch_default_for_uri_async(url.text().c_str(), nullptr, nullptr, nullptr, nullptr);
  }
  return true;
}

}  // namespace tavo::gtk
