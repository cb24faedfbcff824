#pragma once

#include <vector>

#include <tavo/Date.h>

namespace tavo::gtk {

// One of the engine's web processes, as the system sees it.
struct WebProcess {
  int id = 0;
  double megabytes = 0;  // of its own, without what it maps from files
  Seconds processor{};   // used so far, by all its threads
};

// Those that this program has started, whatever sandbox they are in.
[[nodiscard]] std::vector<WebProcess> webProcessesOfThisProgram();

}  // namespace tavo::gtk
