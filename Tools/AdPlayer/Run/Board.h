#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "AdPlayer/Run/Result.h"

namespace tavo::adplayer {

// One creative to play, by a process of its own.
struct Job {
  std::string name;    // of its folder
  std::string source;  // as the person gave it
  std::filesystem::path folder;
  std::vector<std::string> command;  // the program and its arguments
};

struct BoardOptions {
  int jobs = 1;            // at the same time
  double timeout = 180;    // seconds for one creative; then its process is ended
  bool ownScreens = true;  // virtual ones; else the screen that there is
  // Hears of each end, in the order of the ends.
  std::function<void(const Result&, std::size_t done, std::size_t all)> progress{};
};

// Plays all, each in a process of its own: one that hangs or dies is an entry in the report and
// nothing more. The results stand in the order of the jobs. Blocks; throws std::runtime_error when
// no screen can be had. An interrupt (Ctrl-C) or SIGTERM ends what runs and leaves the results so
// far.
[[nodiscard]] std::vector<Result> playAll(const std::vector<Job>& jobs,
                                          const BoardOptions& options);

}  // namespace tavo::adplayer
