#include "Gtk/Video/GtkMoviePlayer.h"

#include <utility>

#include "Gtk/Video/Playback.h"

namespace tavo::gtk {

GtkMoviePlayer::GtkMoviePlayer(const Rect& frame, std::shared_ptr<MediaEngine> engine)
    : MediaMoviePlayer{frame, engine->services().runLoop, engine->services().limits},
      engine_{std::move(engine)},
      overlay_{GPtr<GtkWidget>::sink(gtk_overlay_new())},
      picture_{gtk_picture_new_for_paintable(frame_.paintable())},
      controls_{{.playOrPause =
                     [this] { playbackState() == MoviePlaybackState::playing ? pause() : play(); },
                 .seek = [this](double seconds) { seekByHand(seconds); },
                 .fullscreen = [this] { setFullscreen(!isFullscreen()); }}},
      taps_{picture_, [this] { recognizeTap(*this); }} {
  setBackgroundColor(colors::black);
  gtk_picture_set_can_shrink(GTK_PICTURE(picture_), TRUE);
  gtk_overlay_set_child(GTK_OVERLAY(overlay_.get()), picture_);
  gtk_overlay_add_overlay(GTK_OVERLAY(overlay_.get()), controls_.widget());
}

// The media goes before what it shows its pictures in.
GtkMoviePlayer::~GtkMoviePlayer() {
  closeMedia();
  frame_.show(nullptr);
}

void GtkMoviePlayer::whenUsable(std::function<void(bool)> ready) {
  engine_->whenReady(std::move(ready));
}

std::unique_ptr<Media> GtkMoviePlayer::open(const Url& url, Media::Events events) {
  const auto show = [this](GdkTexture* picture) { frame_.show(picture); };
  return std::make_unique<Playback>(*engine_, url.text(), show, std::move(events));
}

void GtkMoviePlayer::note(const std::string& why) {
  engine_->services().log->write(LogLevel::warning, "Video: " + why);
}

void GtkMoviePlayer::stateChanged(MoviePlaybackState state) {
  controls_.showPlaying(state == MoviePlaybackState::playing);
}

// What the bar says of the former content is not true of the next.
void GtkMoviePlayer::contentCleared() {
  frame_.show(nullptr);
  controls_.showPosition(0, 0);
}

void GtkMoviePlayer::positionChanged(double position, double duration) {
  controls_.showPosition(position, duration);
}

void GtkMoviePlayer::controlStyleChanged() {
  controls_.setVisible(controlStyle() != MovieControlStyle::none);
}

void GtkMoviePlayer::fullscreenChanged() {
  controls_.showFullscreen(isFullscreen());
  GtkRoot* root = gtk_widget_get_root(overlay_.get());
  if (root == nullptr || !GTK_IS_WINDOW(root)) return;
  if (isFullscreen()) {
    gtk_window_fullscreen(GTK_WINDOW(root));
  } else {
    gtk_window_unfullscreen(GTK_WINDOW(root));
  }
}

}  // namespace tavo::gtk
