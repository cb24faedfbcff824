#include "Gtk/Modules/GtkVideoModule.h"

#include <utility>

#include "Gtk/Modules/UnavailableMoviePlayer.h"
#include "Gtk/Video/VideoModule.h"

namespace tavo::gtk {

std::shared_ptr<MoviePlayer> GtkVideoModule::create(const Rect& frame) {
  if (auto* made = factory()) return made->create(frame);
  return std::make_shared<UnavailableMoviePlayer>(frame, services_.runLoop);
}

void GtkVideoModule::findPlayable(std::vector<std::string> types,
                                  std::function<void(const std::vector<std::string>&)> found) {
  if (auto* made = factory()) return made->findPlayable(std::move(types), std::move(found));
  found({});
}

// Whoever needs a player sooner loads the module itself and ends the wait.
void GtkVideoModule::warmUp() {
  if (triedToLoad_) {
    if (factory_) factory_->warmUp();
    return;
  }
  if (std::exchange(mapping_, true)) return;
  openInBackground(moduleFile(), services_.runLoop, [self = std::weak_ptr{self_}] {
    const auto still = self.lock();
    if (!still) return;
    if (auto* made = (*still)->factory()) made->warmUp();
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
  if (entry == nullptr) return services_.log->write(LogLevel::error, "No video ads: " + failure);
  const VideoModuleServices services{.runLoop = services_.runLoop,
                                     .log = services_.log,
                                     .userAgent = services_.userAgent,
                                     .limits = services_.limits};
  factory_.reset(reinterpret_cast<CreateMoviePlayerFactory>(entry)(services));
}

}  // namespace tavo::gtk
