#pragma once

#include <unistd.h>

#include <fstream>
#include <string>
#include <string_view>

#include "Support/WebProcesses.h"

namespace tavo::benchmark {

// How often the loop of a process has waited for something, and been woken. Its other threads come
// and go, and take their counts along.
inline double wakeUps(int process) {
  const std::string id = std::to_string(process);
  std::ifstream file{"/proc/" + id + "/task/" + id + "/status"};
  double count = 0;
  for (std::string word; file >> word;) {
    if (word == "voluntary_ctxt_switches:" && file >> count) return count;
  }
  return 0;
}

// Milliseconds of the processor that a process has used.
inline double processorTime(int process) {
  constexpr int skipped = 11;  // fields between the name and the times
  std::ifstream file{"/proc/" + std::to_string(process) + "/stat"};
  std::string word;
  while (file >> word && !word.ends_with(')')) continue;
  for (int field = 0; field < skipped; ++field) file >> word;
  double user = 0;
  double system = 0;
  file >> user >> system;
  return (user + system) * 1000 / static_cast<double>(sysconf(_SC_CLK_TCK));
}

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

// Of this process and all that it has started.
template <typename Use>
double ofFamily(const Use& use) {
  double sum = use(getpid());
  for (const int process : test::descendants()) sum += use(process);
  return sum;
}

inline double familyMegabytes(std::string_view kind = "Pss:") {
  return ofFamily([kind](int process) { return proportionalMegabytes(process, kind); });
}

}  // namespace tavo::benchmark
