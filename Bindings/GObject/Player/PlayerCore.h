#pragma once

#include <gtk/gtk.h>

#include <memory>
#include <string>

#include <tavo/MoviePlayer.h>
#include <tavo/gtk/MovieSlot.h>

#include "Support/Pointers.h"

namespace tavo::gobject {

// A movie player inside a widget, made when it is first used. What was set before is kept for it.
class PlayerCore : public MoviePlayerClient {
 public:
  PlayerCore(GtkWidget* widget, guint finishedSignal);
  ~PlayerCore() override;
  PlayerCore(const PlayerCore&) = delete;
  PlayerCore& operator=(const PlayerCore&) = delete;

  // Null until it was made.
  [[nodiscard]] const std::shared_ptr<MoviePlayer>& player() const { return player_; }
  // The library must be usable.
  [[nodiscard]] const std::shared_ptr<MoviePlayer>& makePlayer();
  [[nodiscard]] GtkWidget* child() const;
  // The object is being disposed of.
  void retire();

  [[nodiscard]] const std::string& uri() const { return uri_; }
  void setUri(const std::string& uri);
  [[nodiscard]] bool autoplays() const { return autoplay_; }
  void setAutoplay(bool autoplay);
  [[nodiscard]] bool hasControls() const { return controls_; }
  void setControls(bool controls);
  [[nodiscard]] const Size& size() const { return size_; }
  void setSize(const Size& size);

  // MoviePlayerClient
  void movieDurationAvailable(MoviePlayer& player) override;
  void moviePlaybackStateDidChange(MoviePlayer& player) override;
  void moviePlaybackDidFinish(MoviePlayer& player, MovieFinishReason reason,
                              const std::optional<Error>& error) override;
  void movieDidEnterFullscreen(MoviePlayer& player) override;
  void movieDidExitFullscreen(MoviePlayer& player) override;

 private:
  void notify(std::initializer_list<const char*> properties);
  [[nodiscard]] Ref<GObject> owner() const;

  GtkWidget* const widget_;  // the owner
  mutable GWeakRef owner_;
  const guint finishedSignal_;
  std::string uri_;
  bool autoplay_ = true;
  bool controls_ = true;
  bool retired_ = false;
  Size size_{320, 180};
  std::shared_ptr<MoviePlayer> player_;
  std::unique_ptr<gtk::MovieSlot> slot_;
  std::shared_ptr<MoviePlayerClient> client_;  // this, as the player knows it
};

}  // namespace tavo::gobject
