#include "Ratio.h"

#include <algorithm>
#include <cstdio>

namespace tavo::benchmark {

double median(std::vector<double> values) {
  if (values.empty()) return 0;
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

void printRatio(const std::string& what, const std::vector<double>& ours,
                const std::vector<double>& bare, const char* unit, double bound) {
  const double left = median(ours);
  const double right = median(bare);
  const double ratio = left / right;
  std::printf("%-48s %9.2f %9.2f %-3s %7.3f %7.3f  %s\n", what.c_str(), left, right, unit, ratio,
              bound, ratio <= bound ? "met" : "MISSED");
}

}  // namespace tavo::benchmark
