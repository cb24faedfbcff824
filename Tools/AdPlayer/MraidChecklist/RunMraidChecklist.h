#pragma once

#include <string>

namespace tavo::adplayer {

struct MraidChecklistOptions {
  bool standards = false;       // the slots' standards mode
  std::string creatives;        // the folder of the checklist's creatives
  std::string only{};           // the one creative to play; empty: all
  std::string pictureFolder{};  // empty: no pictures; else one for each creative that asks
  std::string resultFolder{};   // empty: none; else a result as `run` writes it, with pictures
};

// The whole command: plays the checklist in a window on the screen that there is, and prints each
// point as met or not met. 0: every point is met; 1: some are not; 2: it could not be played, and
// standard error says why. Makes the toolkit's application and the runtime itself.
int runMraidChecklist(const MraidChecklistOptions& options);

// The name and the title of the result of one creative.
[[nodiscard]] std::string mraidResultName(const MraidChecklistOptions& options);

}  // namespace tavo::adplayer
