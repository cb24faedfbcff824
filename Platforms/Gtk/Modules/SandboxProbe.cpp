#include "Gtk/Modules/SandboxProbe.h"

#include <dlfcn.h>
#include <gtk/gtk.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "Gtk/ForeignText.h"
#include "Gtk/Services/HelperProgram.h"

namespace tavo::gtk {
namespace {

std::string valueOf(const char* variable) { return textOf(g_getenv(variable)); }

// The path in an address such as "unix:path=/run/user/1000/bus,guid=1"; "" where there is none.
std::string pathAfter(std::string_view prefix, std::string_view address) {
  if (!address.starts_with(prefix)) return {};
  address.remove_prefix(prefix.size());
  return std::string{address.substr(0, address.find_first_of(",;"))};
}

bool isX11() {
  auto* const display = gdk_display_get_default();
  return display != nullptr && std::string_view{G_OBJECT_TYPE_NAME(display)} == "GdkX11Display";
}

// What the engine lends its sandboxes of the person's session, where it is there.
std::vector<std::string> sharedPaths() {
  const std::string runFolder = textOf(g_get_user_runtime_dir());
  const std::string bus = pathAfter("unix:path=", valueOf("DBUS_SESSION_BUS_ADDRESS"));
  std::vector<std::string> paths{
      runFolder + "/pulse", runFolder + "/pipewire-0", valueOf("PULSE_CLIENTCONFIG"),
      pathAfter("unix:", valueOf("PULSE_SERVER")),
      bus.empty() ? bus : std::filesystem::path{bus}.parent_path().string()};
  if (isX11()) {
    const std::string named = valueOf("XAUTHORITY");
    paths.push_back(named.empty() ? textOf(g_get_home_dir()) + "/.Xauthority" : named);
  } else {
    const std::filesystem::path socket{valueOf("WAYLAND_DISPLAY")};
    paths.push_back(std::filesystem::path{runFolder} / socket);
  }
  std::erase_if(paths, [](const std::string& path) { return !path.starts_with('/'); });
  return paths;
}

// Whether a process that inherits this one's environment opens the display, as the toolkit has
// done: an authority file that is named and not there keeps it out.
bool displayOpensAgain() {
  if (!isX11()) return true;
  void* const library = dlopen("libX11.so.6", RTLD_LAZY | RTLD_NOLOAD);
  if (library == nullptr) return true;
  const auto open = reinterpret_cast<void* (*)(const char*)>(dlsym(library, "XOpenDisplay"));
  const auto close = reinterpret_cast<int (*)(void*)>(dlsym(library, "XCloseDisplay"));
  void* const display = open == nullptr || close == nullptr
                            ? nullptr
                            : open(gdk_display_get_name(gdk_display_get_default()));
  if (display != nullptr) close(display);
  dlclose(library);
  return display != nullptr;
}

std::vector<std::string> sandboxedProgram() {
  std::vector<std::string> arguments{TAVO_BWRAP,
                                     "--die-with-parent",
                                     "--unshare-pid",
                                     "--unshare-uts",
                                     "--unshare-ipc",
                                     "--unshare-net",
                                     "--ro-bind",
                                     "/",
                                     "/",
                                     "--proc",
                                     "/proc",
                                     "--dev",
                                     "/dev"};
  // Nothing there is fine; there and out of reach is not.
  for (const auto& path : sharedPaths()) {
    arguments.insert(arguments.end(), {"--ro-bind-try", path, path});
  }
  arguments.insert(arguments.end(), {"--", "/bin/true"});
  return arguments;
}

}  // namespace

SandboxProbe::SandboxProbe()
    : available_{std::async(std::launch::async,
                            [opens = displayOpensAgain(), program = sandboxedProgram()] {
                              constexpr Seconds deadline{5};
                              return opens && runHelperProgram(program, deadline).has_value();
                            })} {}

}  // namespace tavo::gtk
