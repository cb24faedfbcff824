#pragma once

#include <fstream>
#include <string>

#include "Support/WebProcesses.h"

namespace tavo::benchmark {

// The proportional set size of one process in megabytes: what it shares with others counts in
// parts.
inline double proportionalMegabytes(int process) {
  std::ifstream file{"/proc/" + std::to_string(process) + "/smaps_rollup"};
  std::string word;
  while (file >> word) {
    double kilobytes = 0;
    if (word == "Pss:" && file >> kilobytes) return kilobytes / 1024;
  }
  return 0;
}

// This process and all that it has started.
inline double familyMegabytes() {
  double sum = proportionalMegabytes(getpid());
  for (const int process : test::descendants()) sum += proportionalMegabytes(process);
  return sum;
}

}  // namespace tavo::benchmark
