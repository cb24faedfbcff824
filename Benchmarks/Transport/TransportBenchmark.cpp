// The transport's own work, each part beside the same done with bare libraries.
#include <benchmark/benchmark.h>

#include <array>

#include "KeptTimes.h"
#include "Report.h"

namespace tavo::benchmarks {
namespace {

struct Pair {
  const char* what;
  const char* ours;
  const char* bare;
  double bound;
};

constexpr std::array comparisons{
    Pair{"request URL, beside GLib strings with GUri", "requestUrl", "glibUrl", 1.0 / 6},
    Pair{"request URL, a keyword repeated", "requestUrlWithRepetition", "glibUrlWithRepetition",
         1.0 / 6},
    Pair{"answer of 4 KB to record, beside parse and copy", "answerToAdInfo",
         "simdjsonParseAndCopy", 1.2},
};

}  // namespace
}  // namespace tavo::benchmarks

int main(int argc, char** argv) {
  using namespace tavo::benchmarks;
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  Report report{"TransportBenchmark"};
  KeptTimes times;
  benchmark::RunSpecifiedBenchmarks(&times);
  for (const auto& pair : comparisons) {
    if (times.of(pair.ours).empty()) continue;  // left out by an argument
    report.ratio(pair.what, times.of(pair.ours), times.of(pair.bare), "ns", atMost(pair.bound));
  }
  return report.finish();
}
