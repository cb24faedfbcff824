#pragma once

#include <functional>
#include <string>
#include <vector>

#include "AdPlayer/Scan/ScanReport.h"
#include "AdPlayer/Source/Opening.h"

namespace tavo::adplayer {

struct ScanOptions {
  OpeningOptions opening{};
  Seconds watching{3};     // after the load; films are watched to their end
  bool variations = true;  // play again under another clock, language and size
  std::string adNetwork{};
};

// Plays and checks what a person named, one after the other, on the screen that there is. Each scan
// begins without cookies. `progress` hears of each as it is done.
[[nodiscard]] std::vector<Scanned> scanAll(
    const std::vector<std::string>& sources, const ScanOptions& options,
    const std::function<void(const Scanned&, std::size_t done, std::size_t all)>& progress);

}  // namespace tavo::adplayer
