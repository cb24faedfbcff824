#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "Gtk/Video/MediaEngine.h"
#include "Gtk/Video/Playback.h"
#include "Rules/MediaMoviePlayer.h"

namespace tavo::fuzz {

// The player's rules over the real framework, without a widget to show the pictures in.
class FuzzedFilm : public MediaMoviePlayer {
 public:
  explicit FuzzedFilm(std::shared_ptr<gtk::MediaEngine> engine)
      : MediaMoviePlayer{{0, 0, 64, 36}, engine->services().runLoop, engine->services().limits},
        engine_{std::move(engine)} {}
  ~FuzzedFilm() override { closeMedia(); }

 protected:
  void whenUsable(std::function<void(bool usable)> ready) override {
    engine_->whenReady(std::move(ready));
  }
  [[nodiscard]] std::unique_ptr<Media> open(const Url& url, Media::Events events) override {
    const auto dropPicture = [](GdkTexture*) { /* its making was the point */ };
    return std::make_unique<gtk::Playback>(*engine_, url.text(), dropPicture, std::move(events));
  }

 private:
  std::shared_ptr<gtk::MediaEngine> engine_;
};

}  // namespace tavo::fuzz
