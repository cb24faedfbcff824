#pragma once

#include <map>

namespace tavo::adplayer {

// The seconds of processor time that each process of the web engine below this program has used, by
// its id. Linux tells them in /proc; without it the map is empty.
[[nodiscard]] std::map<int, double> engineProcessorSeconds();

}  // namespace tavo::adplayer
