#include "OwnProcess.h"

#include <glib.h>

#include <cstdio>
#include <cstdlib>

namespace tavo::benchmark {

double numberOf(std::string program, std::string argument) {
  char* output = nullptr;
  char* arguments[] = {program.data(), argument.data(), nullptr};
  double number = 0;
  if (g_spawn_sync(nullptr, arguments, nullptr, G_SPAWN_STDERR_TO_DEV_NULL, nullptr, nullptr,
                   &output, nullptr, nullptr, nullptr) != FALSE) {
    number = std::strtod(output, nullptr);
  }
  g_free(output);
  return number;
}

double measuredAlone(const std::string& name) { return numberOf("/proc/self/exe", name); }

void compareAlone(benchmarks::Report& report, const char* what, const std::string& ours,
                  const std::string& bare, const char* unit, std::optional<benchmarks::Bound> bound,
                  int rounds) {
  std::vector<double> ourNumbers;
  std::vector<double> bareNumbers;
  for (int round = 0; round < rounds; ++round) {
    ourNumbers.push_back(measuredAlone(ours));
    bareNumbers.push_back(measuredAlone(bare));
  }
  report.ratio(what, ourNumbers, bareNumbers, unit, bound);
}

int measureOrReport(int argc, char** argv, const std::vector<Measurement>& all,
                    const std::function<int()>& reportAll) {
  if (argc < 2) return reportAll();
  for (const auto& [name, measure] : all) {
    if (std::string{argv[1]} == name) {
      std::printf("%f\n", measure());
      return 0;
    }
  }
  return 2;
}

}  // namespace tavo::benchmark
