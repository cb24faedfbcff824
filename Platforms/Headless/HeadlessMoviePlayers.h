#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "Services/MoviePlayers.h"

namespace tavo::headless {

// Movie players that play nothing and count.
class HeadlessMoviePlayers : public MoviePlayers {
 public:
  class Controller : public MoviePlayerController {
   public:
    void play() override { ++plays; }
    int plays = 0;
  };

  [[nodiscard]] std::shared_ptr<MoviePlayerController> moviePlayer(const Url& url,
                                                                   const Rect& frame) override {
    made.emplace_back(url, frame);
    auto controller = std::make_shared<Controller>();
    last_ = controller;
    return controller;
  }

  std::vector<std::pair<Url, Rect>> made;
  // The newest one that is still alive, or null.
  [[nodiscard]] std::shared_ptr<Controller> last() const { return last_.lock(); }

 private:
  std::weak_ptr<Controller> last_;
};

}  // namespace tavo::headless
