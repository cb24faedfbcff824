#include "Headless/HeadlessMoviePlayer.h"

#include <utility>

namespace tavo::headless {

HeadlessMoviePlayer::HeadlessMoviePlayer(const Rect& frame, std::shared_ptr<RunLoop> runLoop,
                                         std::shared_ptr<const ScriptedMovies> movies,
                                         const Limits& limits)
    : MediaMoviePlayer{frame, runLoop, limits},
      runLoop_{std::move(runLoop)},
      movies_{std::move(movies)} {}

std::unique_ptr<Media> HeadlessMoviePlayer::open(const Url& url, Media::Events events) {
  static const ScriptedMovie nothing{.hasVideo = false, .arrival = Seconds{0}};
  const auto known = movies_->find(url.text());
  return std::make_unique<ScriptedMedia>(
      runLoop_, known == movies_->end() ? nothing : known->second, std::move(events));
}

}  // namespace tavo::headless
