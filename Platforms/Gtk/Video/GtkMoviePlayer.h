#pragma once

#include <memory>
#include <string>

#include "Gtk/GPtr.h"
#include "Gtk/ModuleSide/TapWatcher.h"
#include "Gtk/Scene/NativeView.h"
#include "Gtk/Video/FramePaintable.h"
#include "Gtk/Video/MediaEngine.h"
#include "Gtk/Video/PlayerControls.h"
#include "Rules/MediaMoviePlayer.h"

namespace tavo::gtk {

// A movie player whose pictures GTK draws. Main thread only.
class GtkMoviePlayer : public MediaMoviePlayer, public NativeView {
 public:
  GtkMoviePlayer(const Rect& frame, std::shared_ptr<MediaEngine> engine);
  ~GtkMoviePlayer() override;

  // NativeView
  [[nodiscard]] GtkWidget* widget() override { return overlay_.get(); }
  [[nodiscard]] bool isReadyToShow() const override { return true; }

 protected:
  void whenUsable(std::function<void(bool usable)> ready) override;
  [[nodiscard]] std::unique_ptr<Media> open(const Url& url, Media::Events events) override;
  void note(const std::string& why) override;
  void contentCleared() override;
  void stateChanged(MoviePlaybackState state) override;
  void positionChanged(double position, double duration) override;
  void controlStyleChanged() override;
  void fullscreenChanged() override;

 private:
  std::shared_ptr<MediaEngine> engine_;
  GPtr<GtkWidget> overlay_;  // outlives what listens to its children
  FramePaintable frame_;
  GtkWidget* picture_;
  PlayerControls controls_;
  TapWatcher taps_;
};

}  // namespace tavo::gtk
