#include "Gtk/Modules/ModuleFile.h"

#include <gmodule.h>

#include <cstdlib>

namespace tavo::gtk {

std::filesystem::path moduleFolder() {
  const char* chosen = std::getenv("TAVO_MODULE_DIR");
  return chosen != nullptr && *chosen != '\0' ? chosen : TAVO_MODULE_FOLDER;
}

void* moduleEntry(const std::filesystem::path& file, const char* entry, std::string& failure) {
  GModule* const module = g_module_open(
      file.c_str(), static_cast<GModuleFlags>(G_MODULE_BIND_LAZY | G_MODULE_BIND_LOCAL));
  if (module == nullptr) {
    failure = g_module_error();
    return nullptr;
  }
  g_module_make_resident(module);
  gpointer address = nullptr;
  if (g_module_symbol(module, entry, &address) == FALSE || address == nullptr) {
    failure = file.string() + " is no module of this library.";
    return nullptr;
  }
  return address;
}

}  // namespace tavo::gtk
