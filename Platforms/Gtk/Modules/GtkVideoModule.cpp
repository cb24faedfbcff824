#include "Gtk/Modules/GtkVideoModule.h"

#include <gmodule.h>

#include <cstdlib>

#include "Gtk/Modules/UnavailableMoviePlayer.h"
#include "Gtk/Video/VideoModule.h"

namespace tavo::gtk {

std::filesystem::path GtkVideoModule::moduleFolder() {
  const char* chosen = std::getenv("TAVO_MODULE_DIR");
  return chosen != nullptr && *chosen != '\0' ? chosen : TAVO_VIDEO_MODULE_FOLDER;
}

std::shared_ptr<MoviePlayer> GtkVideoModule::create(const Rect& frame) {
  if (auto* made = factory()) return made->create(frame);
  return std::make_shared<UnavailableMoviePlayer>(frame, services_.runLoop);
}

void GtkVideoModule::warmUp() {
  if (auto* made = factory()) made->warmUp();
}

MoviePlayerFactory* GtkVideoModule::factory() {
  if (!triedToLoad_) load();
  return factory_.get();
}

void GtkVideoModule::load() {
  triedToLoad_ = true;
  const std::string file = (folder_ / TAVO_VIDEO_MODULE).string();
  GModule* module = g_module_open(
      file.c_str(), static_cast<GModuleFlags>(G_MODULE_BIND_LAZY | G_MODULE_BIND_LOCAL));
  if (module == nullptr) return note("No video ads: " + std::string{g_module_error()});
  // The framework leaves threads and type registrations behind that no unloading can take back.
  g_module_make_resident(module);

  gpointer entry = nullptr;
  if (g_module_symbol(module, createMoviePlayerFactoryName, &entry) == FALSE || entry == nullptr) {
    return note("No video ads: " + file + " is not the video module of this library.");
  }
  const VideoModuleServices services{services_.runLoop, services_.log, services_.userAgent,
                                     services_.limits};
  factory_.reset(reinterpret_cast<CreateMoviePlayerFactory>(entry)(services));
}

void GtkVideoModule::note(const std::string& message) const {
  if (services_.log) services_.log->write(message);
}

}  // namespace tavo::gtk
