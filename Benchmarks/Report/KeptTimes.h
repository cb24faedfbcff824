#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace tavo::benchmarks {

// Prints as Google Benchmark does, and keeps the best time of each benchmark for the rows of a
// report: the rest is other people's load.
class KeptTimes : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const auto& run : runs) {
      if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
      const double time = run.GetAdjustedCPUTime();
      const auto [place, isNew] = best_.emplace(run.run_name.function_name, time);
      if (!isNew) place->second = std::min(place->second, time);
    }
    ConsoleReporter::ReportRuns(runs);
  }

  // In the benchmark's unit; none where it did not run.
  [[nodiscard]] std::vector<double> of(const std::string& name) const {
    const auto kept = best_.find(name);
    return kept != best_.end() ? std::vector{kept->second} : std::vector<double>{};
  }

 private:
  std::map<std::string, double> best_;
};

}  // namespace tavo::benchmarks
