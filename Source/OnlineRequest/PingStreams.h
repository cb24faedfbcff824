#pragma once

#include <algorithm>
#include <limits>

#include <tavo/Date.h>

namespace tavo {

// How many pings may be on their way to one host at a time where they share a connection (HTTP/2).
// They cost the server no connections, so the number follows what it grants: as long as they come
// back about as fast as a single one, more are let out; where they have to wait for each other, at
// the server or in the transport, fewer are, so that none of them passes its deadline waiting.
class PingStreams {
 public:
  // Takes note of one answered ping.
  void answered(Seconds roundTrip) {
    shortest_ = std::min(shortest_, roundTrip);
    total_ += roundTrip;
    if (++answers_ < size_) return;
    decide(total_ / answers_);
    total_ = Seconds{0};
    answers_ = 0;
  }

  [[nodiscard]] int size() const { return size_; }

 private:
  static constexpr int fewest = 6;  // what connections of their own would allow
  static constexpr int first = 32;
  static constexpr int most = 256;
  static constexpr Seconds work{0.005};  // of this machine and the server's, for a handful

  void decide(Seconds mean) {
    if (mean <= std::max(1.5 * shortest_, shortest_ + work)) {
      size_ = std::min(2 * size_, most);
    } else if (mean > std::max(2.5 * shortest_, shortest_ + 2 * work)) {
      size_ = std::max(size_ / 2, fewest);
    }
  }

  Seconds shortest_{std::numeric_limits<double>::infinity()};
  Seconds total_{0};
  int answers_ = 0;  // since the last decision
  int size_ = first;
};

}  // namespace tavo
