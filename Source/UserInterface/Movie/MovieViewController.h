#pragma once

#include <memory>
#include <optional>

#include <tavo/MoviePlayer.h>
#include <tavo/Url.h>
#include <tavo/ViewController.h>

#include "UserInterface/Movie/SkipControl.h"

namespace tavo {

// Shows one video over the whole window, with the player's own controls and a button that ends it.
// Whoever makes it presents it; it takes itself away when the user closes it, when the video is
// over, and when the video cannot be played. Dropping it ends the video. Main thread only.
class MovieViewController : public ViewController, public MoviePlayerClient {
 public:
  // `frame`, in points, is the place that the video comes from.
  [[nodiscard]] static std::shared_ptr<MovieViewController> create(
      std::shared_ptr<Environment> environment, const Url& url, const Rect& frame);
  ~MovieViewController() override;

  // Starts the video. Before that its first picture is shown, and the user may start it.
  void play() { player_->play(); }

  // Never null.
  [[nodiscard]] const std::shared_ptr<MoviePlayer>& player() const { return player_; }

  // ViewController
  bool cancelOperation() override;

  // MoviePlayerClient
  void movieDurationAvailable(MoviePlayer& /*player*/) override {}
  void moviePlaybackStateDidChange(MoviePlayer& /*player*/) override {}
  void moviePlaybackDidFinish(MoviePlayer& player, MovieFinishReason reason,
                              const std::optional<Error>& error) override;
  void movieDidEnterFullscreen(MoviePlayer& /*player*/) override {}
  void movieDidExitFullscreen(MoviePlayer& /*player*/) override {}

 protected:
  void viewDidLoad() override;
  void viewDidAppear(Animated animated) override;
  void viewDidDisappear(Animated animated) override;

 private:
  MovieViewController(std::shared_ptr<Environment> environment, const Rect& frame);

  void close();

  std::shared_ptr<MoviePlayer> player_;
  SkipControl closeButton_;
};

}  // namespace tavo
