#include "Gtk/Video/GtkMoviePlayerFactory.h"

#include "Gtk/Video/GtkMoviePlayer.h"

namespace tavo::gtk {

std::shared_ptr<MoviePlayer> GtkMoviePlayerFactory::create(const Rect& frame) {
  engine_->start();
  return std::make_shared<GtkMoviePlayer>(frame, engine_);
}

}  // namespace tavo::gtk

extern "C" __attribute__((visibility("default"))) tavo::MoviePlayerFactory*
tavo_create_movie_player_factory(const tavo::gtk::VideoModuleServices& services) {
  return std::make_unique<tavo::gtk::GtkMoviePlayerFactory>(services).release();
}
