#pragma once

#include <memory>
#include <optional>
#include <string>

#include <tavo/MoviePlayer.h>

#include "Gtk/GPtr.h"
#include "Gtk/ModuleSide/TapWatcher.h"
#include "Gtk/Scene/NativeView.h"
#include "Gtk/Video/FramePaintable.h"
#include "Gtk/Video/MediaEngine.h"
#include "Gtk/Video/Playback.h"
#include "Gtk/Video/PlayerControls.h"

namespace tavo::gtk {

// A movie player whose pictures GTK draws. Main thread only.
class GtkMoviePlayer : public MoviePlayer, public NativeView {
 public:
  GtkMoviePlayer(const Rect& frame, std::shared_ptr<MediaEngine> engine);
  ~GtkMoviePlayer() override;

  void setContentUrl(const Url& url) override;
  [[nodiscard]] const Url& contentUrl() const override { return contentUrl_; }
  void prepareToPlay() override;
  [[nodiscard]] bool isPreparedToPlay() const override { return stage_ == Stage::prepared; }
  void play() override;
  void pause() override;
  void stop() override;
  [[nodiscard]] MoviePlaybackState playbackState() const override { return state_; }
  [[nodiscard]] double currentPlaybackTime() const override;
  void setCurrentPlaybackTime(double seconds) override;
  [[nodiscard]] double duration() const override { return duration_; }

  // NativeView
  [[nodiscard]] GtkWidget* widget() override { return overlay_.get(); }
  [[nodiscard]] bool isReadyToShow() const override { return true; }

 protected:
  void later(std::function<void()> task) override;
  void controlStyleChanged() override;
  void fullscreenChanged() override;

 private:
  enum class Stage { idle, preparing, prepared };

  void reset();
  void begin(bool usable);
  [[nodiscard]] Playback::Events events();
  void showPicture(GdkTexture* picture);
  void engineState(GstPlayState state);
  void prepared();
  void moved();
  void sought();
  void ended();
  void brokeOff(const std::string& why);
  void failed(MovieError code, const std::string& why);
  void finish(MovieFinishReason reason, std::optional<Error> error);
  void setState(MoviePlaybackState state);
  void watch(Seconds patience, const char* complaint);
  void watchForStall();
  void beginAgain();
  void retire(std::unique_ptr<Playback> playback);
  void seek(double seconds);
  void seekByHand(double seconds);
  [[nodiscard]] bool isDragged() const;
  [[nodiscard]] double playedTo(double position) const;

  std::shared_ptr<MediaEngine> engine_;
  std::unique_ptr<Playback> playback_;
  GPtr<GtkWidget> overlay_;  // outlives what listens to its children
  FramePaintable frame_;
  GtkWidget* picture_;
  PlayerControls controls_;
  TapWatcher taps_;

  Url contentUrl_;
  Stage stage_ = Stage::idle;
  MoviePlaybackState state_ = MoviePlaybackState::stopped;
  bool wantsToPlay_ = false;
  bool hasPicture_ = false;
  bool ended_ = false;
  bool canSeek_ = true;            // until its server has refused
  std::optional<double> seeking_;  // where to, while that is under way
  MoviePlaybackState beforeDrag_ = MoviePlaybackState::stopped;
  double duration_ = 0;
  double start_ = 0;         // where a content that is not prepared will start
  double lastPosition_ = 0;  // where it last was,
  Seconds lastSeen_{0};      // and when that was
  Timer watchdog_;
  int drag_ = 0;     // counts moves of a dragged position: the last one ends the state of seeking
  int content_ = 0;  // counts contents, so that a late report of a replaced one is dropped
};

}  // namespace tavo::gtk
