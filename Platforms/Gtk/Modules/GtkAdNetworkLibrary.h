#pragma once

#include <memory>
#include <string>

#include "Gtk/Modules/ModuleFile.h"
#include "Services/AdNetworkLibrary.h"
#include "Services/Log.h"

namespace tavo::gtk {

// Loads the library of an external ad network from one file. Neither the linker's search path nor
// the working directory plays a part: what is loaded is what the absolute path says.
class GtkAdNetworkLibrary : public AdNetworkLibrary {
 public:
  // An empty path: no library is configured.
  GtkAdNetworkLibrary(std::string path, std::shared_ptr<Log> log)
      : path_{std::move(path)}, log_{std::move(log)} {}

  [[nodiscard]] void* find(const std::string& name) override;

 private:
  void load();

  std::string path_;
  std::shared_ptr<Log> log_;
  bool triedToLoad_ = false;
  OpenModule module_;
};

}  // namespace tavo::gtk
