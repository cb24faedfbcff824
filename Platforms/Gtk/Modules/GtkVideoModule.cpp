#include "Gtk/Modules/GtkVideoModule.h"

#include "Gtk/Modules/UnavailableMoviePlayer.h"
#include "Gtk/Video/VideoModule.h"

namespace tavo::gtk {

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
  std::string failure;
  void* const entry =
      moduleEntry(folder_ / "TavoGtkVideo.so", createMoviePlayerFactoryName, failure);
  if (entry == nullptr) return note("No video ads: " + failure);
  const VideoModuleServices services{services_.runLoop, services_.log, services_.userAgent,
                                     services_.limits};
  factory_.reset(reinterpret_cast<CreateMoviePlayerFactory>(entry)(services));
}

void GtkVideoModule::note(const std::string& message) const {
  if (services_.log) services_.log->write(message);
}

}  // namespace tavo::gtk
