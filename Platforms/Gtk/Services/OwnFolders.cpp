#include "Gtk/Services/OwnFolders.h"

#include <dlfcn.h>
#include <link.h>
#include <sys/auxv.h>

#include <system_error>

#include "Gtk/Services/EnvironmentPath.h"

namespace tavo::gtk {
namespace {

struct Place {
  const char* variable;
  const char* beside;  // from the folder of the library's file; empty: nowhere
  const char* builtIn;
};

constexpr Place modules{"TAVO_MODULE_DIR", TAVO_MODULES_BESIDE, TAVO_MODULE_FOLDER};
constexpr Place resources{"TAVO_RESOURCE_DIR", TAVO_RESOURCES_BESIDE, TAVO_RESOURCE_FOLDER};

// The file that holds this code: the library, or the program or plug-in that it is part of.
std::filesystem::path ownFile() {
  Dl_info information{};
  link_map* object = nullptr;
  void* const here = reinterpret_cast<void*>(&ownFile);
  if (dladdr1(here, &information, reinterpret_cast<void**>(&object), RTLD_DL_LINKMAP) == 0 ||
      object == nullptr) {
    return {};
  }
  std::error_code failure;
  // A program is known by the name under which it was started, which need not lead to it.
  const bool isProgram = *object->l_name == '\0';
  return std::filesystem::canonical(isProgram ? "/proc/self/exe" : object->l_name, failure);
}

// Nowhere in a program with more rights than whoever started it: that person may have made a second
// name for its file, in a folder of their own.
std::filesystem::path besideOwnFile(const char* relative) {
  if (*relative == '\0' || getauxval(AT_SECURE) != 0) return {};
  const auto file = ownFile();
  if (file.empty()) return {};
  const auto folder = (file.parent_path() / relative).lexically_normal();
  std::error_code failure;
  return std::filesystem::is_directory(folder, failure) ? folder : std::filesystem::path{};
}

std::filesystem::path folderOf(const Place& place, const std::string& chosen) {
  if (std::filesystem::path{chosen}.is_absolute()) return chosen;
  if (const auto named = pathOfEnvironment(place.variable); !named.empty()) return named;
  if (auto beside = besideOwnFile(place.beside); !beside.empty()) return beside;
  return place.builtIn;
}

}  // namespace

std::filesystem::path moduleFolder(const std::string& chosen) { return folderOf(modules, chosen); }

std::filesystem::path resourceFolder(const std::string& chosen) {
  return folderOf(resources, chosen);
}

}  // namespace tavo::gtk
