#include "Gtk/Video/GtkMoviePlayerFactory.h"

#include "Gtk/Video/GtkMoviePlayer.h"
#include "Gtk/Video/PlayableTypes.h"

namespace tavo::gtk {

std::shared_ptr<MoviePlayer> GtkMoviePlayerFactory::create(const Rect& frame) {
  engine_->start();
  return std::make_shared<GtkMoviePlayer>(frame, engine_);
}

void GtkMoviePlayerFactory::findPlayable(
    std::vector<std::string> types, std::function<void(const std::vector<std::string>&)> found) {
  engine_->whenReady([types = std::move(types), found = std::move(found)](bool usable) mutable {
    std::erase_if(types, [usable](const auto& type) { return !usable || !isPlayable(type); });
    found(types);
  });
}

}  // namespace tavo::gtk

extern "C" __attribute__((visibility("default"))) tavo::MoviePlayerFactory*
tavo_create_movie_player_factory(const tavo::gtk::VideoModuleServices& services) {
  return std::make_unique<tavo::gtk::GtkMoviePlayerFactory>(services).release();
}
