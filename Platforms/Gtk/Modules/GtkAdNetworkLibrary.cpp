#include "Gtk/Modules/GtkAdNetworkLibrary.h"

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
  void* const address = module_.find(name);
  if (module_ && address == nullptr) {
    log_->write("The ad network's library " + path_ + " exports no " + name + ".");
  }
  return address;
}

void GtkAdNetworkLibrary::load() {
  triedToLoad_ = true;
  std::error_code failure;
  const auto file = std::filesystem::absolute(path_, failure);
  if (failure || !std::filesystem::is_regular_file(file, failure)) {
    return log_->write("There is no ad network's library " + path_ + ".");
  }
  std::string reason;
  module_ = OpenModule{file, reason};
  if (!module_) log_->write("No ad network: " + reason);
}

}  // namespace tavo::gtk
