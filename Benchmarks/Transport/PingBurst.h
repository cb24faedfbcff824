#pragma once

#include <string>
#include <vector>

#include "PingServer.h"

namespace tavo::benchmarks {

// What a burst of pings cost.
struct Cost {
  double seconds = 0;
  double longestStall = 0;  // of the main loop, in seconds
  double cpu = 0;           // of this process, in seconds
  double turn = 0;          // CPU time of the turn that handed all of them over, in seconds
  double longestTurn = 0;   // CPU time of one turn of the loop, whatever else the machine does
};

// `count` addresses of the server, on so many of its hosts in turns.
[[nodiscard]] std::vector<std::string> burst(const PingServer& server, int count, int hosts,
                                             const std::string& path);

// All of them handed to the library at once, until the last is answered. At most `connections` to a
// host, if that is more than the library's own limit. Pings that fail are printed.
[[nodiscard]] Cost ours(const std::vector<std::string>& urls, int connections);

// The same with a session of libsoup and nothing else; 0 stands for the connections to a host that
// it has of itself.
[[nodiscard]] Cost bare(const std::vector<std::string>& urls, int connections = 0);

// The floor: libsoup again, by a hand that knows how many connections there are and sends on each
// as soon as it has an answer.
[[nodiscard]] Cost byHand(const std::vector<std::string>& urls, int connections);

// Rounds of one burst, ours and bare in turns.
struct Bursts {
  Bursts(const std::vector<std::string>& urls, int connections);

  [[nodiscard]] static std::vector<double> each(const std::vector<Cost>& costs,
                                                double Cost::*part) {
    std::vector<double> values;
    for (const auto& cost : costs) values.push_back(cost.*part);
    return values;
  }
  [[nodiscard]] std::vector<double> ofOurs(double Cost::*part) const { return each(ours, part); }
  [[nodiscard]] std::vector<double> ofBare(double Cost::*part) const { return each(bare, part); }

  std::vector<Cost> ours;
  std::vector<Cost> bare;
};

}  // namespace tavo::benchmarks
