#include "Gtk/Modules/GtkAdNetworkLibrary.h"

#include <filesystem>
#include <system_error>

namespace tavo::gtk {

void* GtkAdNetworkLibrary::find(const std::string& name) {
  if (!triedToLoad_ && !path_.empty()) load();
  void* const address = module_.find(name);
  if (module_ && address == nullptr) {
    log_->write(LogLevel::error, "The ad network's library " + path_ + " exports no " + name + ".");
  }
  return address;
}

void GtkAdNetworkLibrary::load() {
  triedToLoad_ = true;
  const std::filesystem::path file{path_};
  std::error_code failure;
  if (!file.is_absolute()) {
    return log_->write(LogLevel::error,
                       "The path of the ad network's library is not absolute: " + path_ + ".");
  }
  if (!std::filesystem::is_regular_file(file, failure)) {
    return log_->write(LogLevel::error, "There is no ad network's library " + path_ + ".");
  }
  std::string reason;
  module_ = OpenModule{file, reason};
  if (!module_) log_->write(LogLevel::error, "No ad network: " + reason);
}

}  // namespace tavo::gtk
