#include "Gtk/Services/GtkAdNetworkLibrary.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace tavo::gtk {

std::string GtkAdNetworkLibrary::pathOfEnvironment() {
  const char* chosen = std::getenv("TAVO_AD_NETWORK");
  return chosen != nullptr ? chosen : "";
}

void* GtkAdNetworkLibrary::find(const std::string& name) {
  if (!triedToLoad_ && !path_.empty()) load();
  if (module_ == nullptr) return nullptr;
  gpointer address = nullptr;
  if (g_module_symbol(module_, name.c_str(), &address) == FALSE || address == nullptr) {
    note("The ad network's library " + path_ + " exports no " + name + ".");
    return nullptr;
  }
  return address;
}

void GtkAdNetworkLibrary::load() {
  triedToLoad_ = true;
  std::error_code failure;
  const auto file = std::filesystem::absolute(path_, failure);
  if (failure || !std::filesystem::is_regular_file(file, failure)) {
    return note("There is no ad network's library " + path_ + ".");
  }
  module_ = g_module_open(file.c_str(),
                          static_cast<GModuleFlags>(G_MODULE_BIND_LAZY | G_MODULE_BIND_LOCAL));
  if (module_ == nullptr) return note("No ad network: " + std::string{g_module_error()});
  // Its ads may outlive everybody's interest in them, and so may its threads.
  g_module_make_resident(module_);
}

void GtkAdNetworkLibrary::note(const std::string& message) const {
  if (log_) log_->write(message);
}

}  // namespace tavo::gtk
