#include "Gtk/Modules/ModuleFile.h"

#include <gmodule.h>

#include <string_view>
#include <utility>

#include "Gtk/ForeignText.h"

namespace tavo::gtk {

OpenModule::OpenModule(const std::filesystem::path& file, std::string& failure)
    : module_{g_module_open(file.c_str(),
                            static_cast<GModuleFlags>(G_MODULE_BIND_LAZY | G_MODULE_BIND_LOCAL))} {
  if (module_ == nullptr) {
    failure = textOf(g_module_error());
  } else {
    g_module_make_resident(static_cast<GModule*>(module_));
  }
}

void* OpenModule::find(const std::string& name) const {
  gpointer address = nullptr;
  if (module_ != nullptr) {
    g_module_symbol(static_cast<GModule*>(module_), name.c_str(), &address);
  }
  return address;
}

void* moduleEntry(const std::filesystem::path& file, const char* entry, std::string& failure) {
  const OpenModule module{file, failure};
  if (!module) return nullptr;
  using Version = const char* (*)();
  const auto version = reinterpret_cast<Version>(module.find("tavo_module_version"));
  void* const address = module.find(entry);
  if (version == nullptr || address == nullptr) {
    failure = file.string() + " is no module of this library.";
    return nullptr;
  }
  if (std::string_view{version()} != TAVO_MODULE_VERSION) {
    failure = file.string() + " belongs to version " + version() +
              " of this library, and the program to version " TAVO_MODULE_VERSION
              ": start the program anew.";
    return nullptr;
  }
  return address;
}

// Mapping a hundred libraries takes longer than a frame, which is why a thread does it. It holds
// the loop weakly: whoever lets go of the loop last waits for its threads.
void openInBackground(const std::filesystem::path& file, const std::shared_ptr<RunLoop>& runLoop,
                      std::function<void()> opened) {
  runLoop->background([file, loop = std::weak_ptr{runLoop}, opened = std::move(opened)] {
    std::string failure;  // told by the attempt that counts, on the main thread
    const OpenModule module{file, failure};
    if (const auto still = loop.lock()) still->post(opened);
  });
}

}  // namespace tavo::gtk
