#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <tavo/Limits.h>
#include <tavo/MoviePlayerFactory.h>

#include "Gtk/Modules/ModuleFile.h"
#include "Gtk/Services/OwnFolders.h"
#include "Services/Log.h"
#include "Services/RunLoop.h"

namespace tavo::gtk {

// Makes movie players by way of the video module, which is loaded when the first one is asked for.
// Where it cannot be loaded it hands out players whose contents finish with an error; that is
// decided once per process.
class GtkVideoModule : public MoviePlayerFactory {
 public:
  struct Services {
    std::shared_ptr<RunLoop> runLoop;
    std::shared_ptr<Log> log;
    std::function<std::string()> userAgent;  // asked for each video; empty: the framework's own
    Limits limits;
  };

  explicit GtkVideoModule(Services services, std::filesystem::path folder = moduleFolder())
      : services_{std::move(services)}, folder_{std::move(folder)} {}
  GtkVideoModule(const GtkVideoModule&) = delete;
  GtkVideoModule& operator=(const GtkVideoModule&) = delete;

  [[nodiscard]] std::shared_ptr<MoviePlayer> create(const Rect& frame) override;
  void findPlayable(std::vector<std::string> types,
                    std::function<void(const std::vector<std::string>&)> found) override;
  void warmUp() override;

  [[nodiscard]] bool isLoaded() const { return factory_ != nullptr; }

 private:
  // The module's factory, or null when there is none to be had.
  [[nodiscard]] MoviePlayerFactory* factory();
  void load();
  [[nodiscard]] std::filesystem::path moduleFile() const { return folder_ / "TavoGtkVideo.so"; }

  Services services_;
  std::filesystem::path folder_;
  std::shared_ptr<GtkVideoModule*> self_ = std::make_shared<GtkVideoModule*>(this);
  bool mapping_ = false;
  bool triedToLoad_ = false;
  std::unique_ptr<MoviePlayerFactory> factory_;
};

}  // namespace tavo::gtk
