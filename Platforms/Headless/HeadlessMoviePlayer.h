#pragma once

#include <limits>
#include <map>
#include <memory>
#include <string>

#include <tavo/Limits.h>
#include <tavo/MoviePlayer.h>

#include "Services/RunLoop.h"

namespace tavo::headless {

// A video that a test scripts.
struct ScriptedMovie {
  double duration = 30;  // seconds; what its header says
  bool hasVideo = true;  // false: a picture or a sound that was sent as a video
  Seconds arrival{0.1};  // until the first picture is there
  bool arrives = true;   // false: the server stays silent
  double cutAt = std::numeric_limits<double>::infinity();    // seconds of it that were sent
  double stallAt = std::numeric_limits<double>::infinity();  // where nothing more arrives
};

// The videos by URL; any other cannot be played.
using ScriptedMovies = std::map<std::string, ScriptedMovie>;

// A movie player without pictures: its time is the run loop's.
class HeadlessMoviePlayer : public MoviePlayer {
 public:
  HeadlessMoviePlayer(Rect frame, std::shared_ptr<RunLoop> runLoop,
                      std::shared_ptr<const ScriptedMovies> movies, const Limits& limits);

  void setContentUrl(const Url& url) override;
  [[nodiscard]] const Url& contentUrl() const override { return contentUrl_; }
  void prepareToPlay() override;
  [[nodiscard]] bool isPreparedToPlay() const override { return prepared_; }
  void play() override;
  void pause() override;
  void stop() override;
  [[nodiscard]] MoviePlaybackState playbackState() const override { return state_; }
  [[nodiscard]] double currentPlaybackTime() const override;
  void setCurrentPlaybackTime(double seconds) override;
  [[nodiscard]] double duration() const override;

  // Plays a person who drags the position: a state of seeking, then the one before.
  void seek(double seconds);

 protected:
  void later(std::function<void()> task) override { runLoop_->post(std::move(task)); }

 private:
  void reset();
  void arrived();
  [[nodiscard]] bool isDragged() const;
  void setState(MoviePlaybackState state);
  void scheduleEnd();
  void dataEnded();
  void failed(MovieError code, std::string_view why);
  void finish(MovieFinishReason reason, std::optional<Error> error);

  std::shared_ptr<RunLoop> runLoop_;
  std::shared_ptr<const ScriptedMovies> movies_;
  Limits limits_;
  Url contentUrl_;
  ScriptedMovie movie_;
  bool preparing_ = false;
  bool prepared_ = false;
  bool playsWhenPrepared_ = false;
  bool ended_ = false;
  MoviePlaybackState state_ = MoviePlaybackState::stopped;
  MoviePlaybackState beforeDrag_ = MoviePlaybackState::stopped;
  double position_ = 0;  // at `since_`
  Seconds since_{0};
  Timer next_;       // the arrival, the end or the stall that comes next
  int drag_ = 0;     // counts moves of a dragged position: the last one ends the state of seeking
  int content_ = 0;  // counts contents, so that a late report of a replaced one is dropped
};

}  // namespace tavo::headless
