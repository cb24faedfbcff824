#pragma once

#include <fstream>
#include <string>
#include <string_view>

#include "Support/WebProcesses.h"

namespace tavo::benchmark {

// The proportional set size of one process in megabytes: what it shares with others counts in
// parts. "Pss_Anon:" leaves out files, whose parts change with the other programs of the machine.
inline double proportionalMegabytes(int process, std::string_view kind = "Pss:") {
  std::ifstream file{"/proc/" + std::to_string(process) + "/smaps_rollup"};
  std::string word;
  while (file >> word) {
    double kilobytes = 0;
    if (word == kind && file >> kilobytes) return kilobytes / 1024;
  }
  return 0;
}

// This process and all that it has started.
inline double familyMegabytes(std::string_view kind = "Pss:") {
  double sum = proportionalMegabytes(getpid(), kind);
  for (const int process : test::descendants()) sum += proportionalMegabytes(process, kind);
  return sum;
}

}  // namespace tavo::benchmark
