#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include <tavo/Date.h>

namespace tavo {

// How many pings may be on their way to one server at a time. Where an answer takes less than five
// milliseconds this machine is the bottleneck, and two connections keep it busy. Farther away the
// road is empty most of the time, so the window grows with the shortest round trip seen: as many as
// can be made and read within it. The first few answers do not count for that: a busy machine makes
// a near server look far for a moment, and connections once opened stay. A long queue is worth more
// connections wherever the server is, before its first answer.
class PingWindow {
 public:
  // Takes note of one answered ping.
  void answered(Seconds roundTrip) {
    shortest_ = std::min(shortest_, roundTrip);
    ++answers_;
  }

  // At least one, at most `most`. `waiting`: how many more there are.
  [[nodiscard]] int size(int most, std::size_t waiting) const {
    constexpr Seconds near{0.005};
    constexpr Seconds work{0.0005};  // of this machine, for one ping
    constexpr int enough = 4;
    const bool isFar = answers_ >= enough && shortest_ >= near;
    constexpr std::size_t worthOne = 32;  // waiting pings
    const double wanted = isFar ? std::min(std::ceil(shortest_ / work), 1000.0) : 2.0;
    const auto forQueue = static_cast<int>(std::min<std::size_t>(2 + waiting / worthOne, 1000));
    return std::clamp(std::max(static_cast<int>(wanted), forQueue), 1, std::max(most, 1));
  }

 private:
  Seconds shortest_{INFINITY};
  std::uint64_t answers_ = 0;
};

}  // namespace tavo
