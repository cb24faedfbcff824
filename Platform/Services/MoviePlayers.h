#pragma once

#include <memory>

#include "Scene/ViewController.h"
#include "Values/Geometry.h"
#include "Values/Url.h"

namespace tavo {

// Shows one video with the system's own controls. The user ends it; it then dismisses itself.
class MoviePlayerController : public ViewController {
 public:
  // Starts the video from where it stands.
  virtual void play() = 0;
};

// Makes full-screen movie players. Main thread only.
class MoviePlayers {
 public:
  virtual ~MoviePlayers() = default;

  // Null for what the platform cannot play at all. `frame` is where the video comes from.
  [[nodiscard]] virtual std::shared_ptr<MoviePlayerController> moviePlayer(const Url& url,
                                                                           const Rect& frame) = 0;
};

}  // namespace tavo
