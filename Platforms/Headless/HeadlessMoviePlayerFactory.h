#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <tavo/MoviePlayerFactory.h>

#include "Headless/HeadlessMoviePlayer.h"

namespace tavo::headless {

// Makes scripted movie players and keeps track of the last one.
class HeadlessMoviePlayerFactory : public MoviePlayerFactory {
 public:
  HeadlessMoviePlayerFactory(std::shared_ptr<RunLoop> runLoop, const Limits& limits)
      : runLoop_{std::move(runLoop)}, limits_{limits} {}

  [[nodiscard]] std::shared_ptr<MoviePlayer> create(const Rect& frame) override {
    auto player = std::make_shared<HeadlessMoviePlayer>(frame, runLoop_, movies, limits_);
    last_ = player;
    return player;
  }
  void findPlayable(std::vector<std::string> types,
                    std::function<void(const std::vector<std::string>&)> found) override {
    std::erase_if(types, [this](const std::string& type) { return !playableTypes.contains(type); });
    found(types);
  }
  void warmUp() override { ++warmUps; }

  // The newest player that is still alive, or null.
  [[nodiscard]] std::shared_ptr<HeadlessMoviePlayer> last() const { return last_.lock(); }
  // What every player of this factory can play.
  std::shared_ptr<ScriptedMovies> movies = std::make_shared<ScriptedMovies>();
  std::set<std::string> playableTypes{"video/mp4", "video/webm"};
  int warmUps = 0;

 private:
  std::shared_ptr<RunLoop> runLoop_;
  Limits limits_;
  std::weak_ptr<HeadlessMoviePlayer> last_;
};

}  // namespace tavo::headless
