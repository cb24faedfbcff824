#pragma once

#include <string>

namespace tavo::benchmarks {

// What a figure was measured on. Empty where this machine does not tell.
struct Machine {
  std::string processor;
  unsigned cores = 0;
  std::string kernel;
  std::string compiler;
  std::string engines;  // the foreign libraries with their versions
  std::string date;     // ISO 8601, UTC
  double load = 0;      // runnable threads over the last minute, before anything was measured
};

[[nodiscard]] Machine thisMachine();

}  // namespace tavo::benchmarks
