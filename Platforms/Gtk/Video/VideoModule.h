#pragma once

#include <functional>
#include <memory>
#include <string>

#include <tavo/Limits.h>
#include <tavo/MoviePlayerFactory.h>

#include "Services/Log.h"
#include "Services/RunLoop.h"

namespace tavo::gtk {

// What the video module is given when it starts. It has no runtime of its own to look things up in:
// the module carries its own copy of the platform's code.
struct VideoModuleServices {
  std::shared_ptr<RunLoop> runLoop;
  std::shared_ptr<Log> log;
  std::function<std::string()> userAgent;  // what requests for videos say of themselves
  Limits limits;
};

// The one function that the module exports. Returns a factory that the caller owns. Called once, on
// the main thread, with the toolkit set up.
using CreateMoviePlayerFactory = MoviePlayerFactory* (*)(const VideoModuleServices& services);
inline constexpr const char* createMoviePlayerFactoryName = "tavo_create_movie_player_factory";

}  // namespace tavo::gtk
