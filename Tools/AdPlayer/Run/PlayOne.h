#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "AdPlayer/Run/Scenario.h"
#include "AdPlayer/Source/Opening.h"
#include "AdPlayer/Stage/Stage.h"

namespace tavo::adplayer {

struct PlayOneOptions {
  std::string source{};
  std::string name{};            // of the result
  std::filesystem::path folder;  // where events, pictures and the result are written
  OpeningOptions opening{};
  std::vector<Step> steps{};  // empty: those that belong to what is played, or the usual ones
  std::string adNetwork{};
  std::string film{};  // file of the host's own film; empty: none
  int screenWidth = 360;
  int screenHeight = 640;
  XAdSlotConfiguration settings{};
  // JavaScript that runs in each page ahead of its own; what it tells arrives as "probe".
  std::string pageProbe{};
  bool givesAddress = false;  // to pages that have none, for the texts of their errors
};

// Plays one creative in this process, in a window the size of a phone on the screen that there is,
// and writes down what came of it. Returns 0 when a result was written, whatever it says.
int playOne(const PlayOneOptions& options);

}  // namespace tavo::adplayer
