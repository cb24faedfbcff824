#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>
#include <map>
#include <string>

namespace {

// Our way beside the bare one. `bound` is what the ratio ours/bare may be at most.
struct Pair {
  const char* what;
  const char* ours;
  const char* bare;
  double bound;
};

constexpr std::array comparisons{
    Pair{"request URL / GLib strings with GUri", "requestUrl", "glibUrl", 1.0 / 6},
    Pair{"request URL, a keyword repeated / the same", "requestUrlWithRepetition",
         "glibUrlWithRepetition", 1.0 / 6},
    Pair{"answer of 4 KB to record / parse and copy", "answerToAdInfo", "simdjsonParseAndCopy",
         1.2},
};

// Prints as usual and keeps the best time of each benchmark: the rest is other people's load.
class KeepingReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const auto& run : runs) {
      if (run.run_type != Run::RT_Iteration) continue;
      const double time = run.GetAdjustedCPUTime();
      const auto [place, isNew] = best_.emplace(run.run_name.function_name, time);
      if (!isNew) place->second = std::min(place->second, time);
    }
    ConsoleReporter::ReportRuns(runs);
  }

  void printRatios() const {
    std::printf("\n%-46s %10s %10s %8s %8s\n", "", "ours", "bare", "ratio", "bound");
    for (const auto& pair : comparisons) {
      const auto ours = best_.find(pair.ours);
      const auto bare = best_.find(pair.bare);
      if (ours == best_.end() || bare == best_.end()) continue;
      const double ratio = ours->second / bare->second;
      std::printf("%-46s %7.0f ns %7.0f ns %8.3f %8.3f %s\n", pair.what, ours->second, bare->second,
                  ratio, pair.bound, ratio <= pair.bound ? "met" : "MISSED");
    }
  }

 private:
  std::map<std::string, double> best_;
};

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  KeepingReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.printRatios();
  return 0;
}
