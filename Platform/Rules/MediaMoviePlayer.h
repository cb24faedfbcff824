#pragma once

#include <memory>
#include <optional>
#include <string>

#include <tavo/Limits.h>
#include <tavo/MoviePlayer.h>

#include "Rules/Media.h"
#include "Rules/Playhead.h"
#include "Services/RunLoop.h"

namespace tavo {

// A movie player over some media framework: everything that every platform's player does alike. A
// platform opens the media and shows what comes of it. Main thread only.
class MediaMoviePlayer : public MoviePlayer {
 public:
  MediaMoviePlayer(const Rect& frame, std::shared_ptr<RunLoop> runLoop, const Limits& limits);

  void setContentUrl(const Url& url) final;
  [[nodiscard]] const Url& contentUrl() const final { return contentUrl_; }
  void prepareToPlay() final;
  [[nodiscard]] bool isPreparedToPlay() const final { return stage_ == Stage::prepared; }
  void play() final;
  void pause() final;
  void stop() final;
  [[nodiscard]] MoviePlaybackState playbackState() const final { return state_; }
  [[nodiscard]] double currentPlaybackTime() const final;
  void setCurrentPlaybackTime(double seconds) final;
  [[nodiscard]] double duration() const final { return playhead_.duration(); }

  // A person has moved the position: a state of seeking is passed through.
  void seekByHand(double seconds);

 protected:
  // Calls `ready` with whether media can be opened here: at once when that is known, else when it
  // is.
  virtual void whenUsable(std::function<void(bool usable)> ready) = 0;
  // Opens the media at `url`, an http or https one, in pause.
  [[nodiscard]] virtual std::unique_ptr<Media> open(const Url& url, Media::Events events) = 0;
  // For the destructor of a class whose events need what it is about to take down.
  void closeMedia();
  // The video broke off and somebody should know why.
  virtual void note(const std::string& /*why*/) {}

  void soundSwitched() override {
    if (media_) media_->setMuted(isMuted());
  }

  // What a player shows besides its pictures.
  virtual void contentCleared() {}
  virtual void stateChanged(MoviePlaybackState /*state*/) {}
  virtual void positionChanged(double /*position*/, double /*duration*/) {}

  void later(std::function<void()> task) final { runLoop_->post(std::move(task)); }

 private:
  enum class Stage { idle, preparing, prepared };

  void reset();
  void begin(bool usable);
  void openMedia();
  [[nodiscard]] Media::Events events();
  void picture();
  void becomePrepared();
  void mediaPlays();
  void mediaPauses();
  void moved();
  void sought();
  void ended();
  void brokeOff(const std::string& why);
  void failed(MovieError code, std::string_view why);
  void finish(MovieFinishReason reason, std::optional<Error> error);
  void setState(MoviePlaybackState state);
  void watch(Seconds patience, const char* complaint);
  void watchForStall();
  void beginAgain();
  void retire(std::unique_ptr<Media> media);
  void seekMedia(double seconds);
  [[nodiscard]] bool isSoughtByHand() const;
  [[nodiscard]] MoviePlaybackState stateAfterSeek() const;

  std::shared_ptr<RunLoop> runLoop_;
  Limits limits_;
  std::unique_ptr<Media> media_;
  Playhead playhead_;

  Url contentUrl_;
  Stage stage_ = Stage::idle;
  MoviePlaybackState state_ = MoviePlaybackState::stopped;
  MoviePlaybackState beforeSeek_ = MoviePlaybackState::stopped;
  bool wantsToPlay_ = false;
  bool hasPicture_ = false;
  bool canSeek_ = true;  // until its server has refused
  Timer watchdog_;
  int seekByHand_ = 0;  // counts: the last one ends the state of seeking
  int content_ = 0;     // counts contents, so that a late report of a replaced one is dropped
};

}  // namespace tavo
