#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Report.h"

namespace tavo::benchmark {

// What is about the whole of a process, or about its first page, is measured in one of its own: the
// program starts itself with the name of a measurement and reads the number that is printed.
struct Measurement {
  const char* name;
  std::function<double()> measure;
};

// The number that a program prints, called with one argument; 0 where it prints none.
[[nodiscard]] double numberOf(std::string program, std::string argument);

// 0 where it could not be measured.
[[nodiscard]] double measuredAlone(const std::string& name);

// A row of numbers measured alone, in turns.
void compareAlone(benchmarks::Report& report, const char* what, const std::string& ours,
                  const std::string& bare, const char* unit, std::optional<benchmarks::Bound> bound,
                  int rounds);

// Of `main`: prints one number when the program was started so, or has `reportAll` make the report.
[[nodiscard]] int measureOrReport(int argc, char** argv, const std::vector<Measurement>& all,
                                  const std::function<int()>& reportAll);

}  // namespace tavo::benchmark
