#pragma once

#include <memory>
#include <string>

#include "Gtk/Modules/ModuleFile.h"
#include "Services/AdNetworkLibrary.h"
#include "Services/Log.h"

namespace tavo::gtk {

// Loads the library of an external ad network from one file. The linker's search path plays no
// part: what is loaded is what the path says, relative to the working directory if it is not
// absolute.
class GtkAdNetworkLibrary : public AdNetworkLibrary {
 public:
  // What the environment variable TAVO_AD_NETWORK says; empty when it is not set.
  [[nodiscard]] static std::string pathOfEnvironment();

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
