#pragma once

#include <memory>

#include <tavo/MoviePlayer.h>

#include "Services/RunLoop.h"

namespace tavo::gtk {

// Stands in for a player where no video can be played: every content finishes in the next turn with
// MovieError::unavailable.
class UnavailableMoviePlayer : public MoviePlayer {
 public:
  UnavailableMoviePlayer(const Rect& frame, std::shared_ptr<RunLoop> runLoop)
      : MoviePlayer{frame}, runLoop_{std::move(runLoop)} {}

  void setContentUrl(const Url& url) override { contentUrl_ = url; }
  [[nodiscard]] const Url& contentUrl() const override { return contentUrl_; }
  void prepareToPlay() override;
  [[nodiscard]] bool isPreparedToPlay() const override { return false; }
  void play() override { prepareToPlay(); }
  void pause() override {}
  void stop() override {}
  [[nodiscard]] MoviePlaybackState playbackState() const override {
    return MoviePlaybackState::stopped;
  }
  [[nodiscard]] double currentPlaybackTime() const override { return 0; }
  void setCurrentPlaybackTime(double /*seconds*/) override {}
  [[nodiscard]] double duration() const override { return 0; }

 protected:
  void later(std::function<void()> task) override { runLoop_->post(std::move(task)); }

 private:
  std::shared_ptr<RunLoop> runLoop_;
  Url contentUrl_;
};

}  // namespace tavo::gtk
