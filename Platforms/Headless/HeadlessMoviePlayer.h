#pragma once

#include <memory>

#include "Headless/ScriptedMedia.h"
#include "Rules/MediaMoviePlayer.h"

namespace tavo::headless {

// A movie player without pictures.
class HeadlessMoviePlayer : public MediaMoviePlayer {
 public:
  HeadlessMoviePlayer(const Rect& frame, std::shared_ptr<RunLoop> runLoop,
                      std::shared_ptr<const ScriptedMovies> movies, const Limits& limits);

 protected:
  void whenUsable(std::function<void(bool usable)> ready) override { ready(true); }
  [[nodiscard]] std::unique_ptr<Media> open(const Url& url, Media::Events events) override;

 private:
  std::shared_ptr<RunLoop> runLoop_;
  std::shared_ptr<const ScriptedMovies> movies_;
};

}  // namespace tavo::headless
