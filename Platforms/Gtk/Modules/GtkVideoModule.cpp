#include "Gtk/Modules/GtkVideoModule.h"

#include <utility>

#include "Gtk/Modules/UnavailableMoviePlayer.h"
#include "Gtk/Video/VideoModule.h"

namespace tavo::gtk {

std::shared_ptr<MoviePlayer> GtkVideoModule::create(const Rect& frame) {
  if (auto* made = factory()) return made->create(frame);
  return std::make_shared<UnavailableMoviePlayer>(frame, services_.runLoop);
}

// Mapping the framework's libraries may take longer than a frame, so a thread does it. Whoever
// needs a player sooner loads the module itself and ends the wait. The thread holds the loop
// weakly: whoever lets go of it last waits for the threads.
void GtkVideoModule::warmUp() {
  if (triedToLoad_) {
    if (factory_) factory_->warmUp();
    return;
  }
  if (std::exchange(mapping_, true)) return;
  services_.runLoop->background(
      [file = moduleFile(), loop = std::weak_ptr{services_.runLoop}, self = std::weak_ptr{self_}] {
        std::string failure;  // told by the attempt that counts, on the main thread
        static_cast<void>(moduleEntry(file, createMoviePlayerFactoryName, failure));
        const auto runLoop = loop.lock();
        if (!runLoop) return;
        runLoop->post([self] {
          const auto still = self.lock();
          if (!still) return;
          if (auto* made = (*still)->factory()) made->warmUp();
        });
      });
}

MoviePlayerFactory* GtkVideoModule::factory() {
  if (!triedToLoad_) load();
  return factory_.get();
}

void GtkVideoModule::load() {
  triedToLoad_ = true;
  std::string failure;
  void* const entry = moduleEntry(moduleFile(), createMoviePlayerFactoryName, failure);
  if (entry == nullptr) return note("No video ads: " + failure);
  const VideoModuleServices services{services_.runLoop, services_.log, services_.userAgent,
                                     services_.limits};
  factory_.reset(reinterpret_cast<CreateMoviePlayerFactory>(entry)(services));
}

void GtkVideoModule::note(const std::string& message) const {
  if (services_.log) services_.log->write(message);
}

}  // namespace tavo::gtk
